// A whole TMS file read into plain shapes, tile by tile and section by section
// in file order, for the programs that show or compare tiles rather than list them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formats/bgr_file.h"

namespace bgr {

class RunContext;

inline constexpr int kTmsSections = 4;  // pave, edmk, cntr, lite
inline constexpr int kTmsGrid = 8;

struct TmsShape {
  std::vector<std::pair<std::int32_t, std::int32_t>> corners;  // x, z in working units
  std::int32_t lightType = 0;  // light strings only
  float lightStep = 0;
};

struct TmsContent {
  bool read = false;      // the origin and the header were there
  bool complete = false;  // all 64 tiles and the end of the file came, in order
  std::int32_t tilesRead = 0;
  OriginRecord origin;
  float tileFeet = 0;
  std::array<double, 3> lowl{};
  // [x][z][section]
  std::array<std::array<std::array<std::vector<TmsShape>, kTmsSections>, kTmsGrid>, kTmsGrid> tiles;

  std::size_t Count(int section) const;
};

// Reads through the library's TMS reader; a failed open is reported as every
// open is. A tile index outside the grid ends the reading.
TmsContent ReadTmsContent(RunContext& ctx, std::string_view path);

}  // namespace bgr
