// A whole BGR network read as it stands in the file, every node and edge, with
// no table limits: for the programs that show or check a network rather than
// build tiles from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/bgr_file.h"

namespace bgr {

class RunContext;

struct NetworkContent {
  bool read = false;      // the file opened and began as a network
  bool complete = false;  // the records ran up to the closing tag at the end of the file
  long stoppedAt = 0;     // where the reading stopped
  long length = 0;
  OriginRecord origin;
  std::vector<NodeRecord> nodes;
  std::vector<EdgeRecord> edges;

  // An edge's end may name a point that the file doesn't hold.
  bool HasNode(std::int32_t p) const { return p >= 0 && static_cast<std::size_t>(p) < nodes.size(); }
  const NodeRecord& Node(std::int32_t p) const { return nodes[static_cast<std::size_t>(p)]; }
};

// Reads through the library's BGR reader; a failed open is reported as every
// open is.
NetworkContent ReadNetworkContent(RunContext& ctx, std::string_view path);

// What stands at 'path' instead of a network, in words for the user: why it
// can't be read, a folder, an empty file, a tile file, no BGR record at its
// start, its first record cut short. Empty when it begins as a network.
std::string WhatStandsInstead(std::string_view path);
// The file begins as a tile file: the BGR framing with the tile grid behind the origin.
bool IsTileFile(std::string_view path);
// The same on standard error, behind the program's name and the path.
void TellWhatStandsInstead(RunContext& ctx, std::string_view path);

}  // namespace bgr
