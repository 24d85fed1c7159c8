#include "formats/network_content.h"

#include <cstdio>
#include <cstring>

#include "frame/run_context.h"
#include "frame/text.h"
#include "platform/platform.h"

namespace bgr {

NetworkContent ReadNetworkContent(RunContext& ctx, std::string_view path) {
  NetworkContent content;
  BgrFile file;
  if (!file.OpenRead(ctx, path)) {
    file.Abandon();
    return content;
  }
  content.read = true;
  file.ReadOrigin(content.origin);
  NodeRecord node;
  while (file.ReadNode(node)) content.nodes.push_back(node);
  EdgeRecord edge;
  while (file.ReadEdge(edge)) content.edges.push_back(edge);
  bool closed = file.ReadTag("<endo>");
  content.stoppedAt = file.Tell();
  content.length = file.Length();
  content.complete = closed && content.stoppedAt == content.length;
  file.Abandon();
  return content;
}

std::string WhatStandsInstead(std::string_view path) {
  std::string why = WhyUnreadable(path);
  if (!why.empty()) return why;
  // a network begins with <bgno>; a tile file has its grid tag behind the origin record
  static constexpr char kBegin[] = "<bgno>";
  static constexpr char kOrigin[] = "<orgn>";
  static constexpr char kGrid[] = "<tlxz>";
  constexpr std::size_t kTag = sizeof kBegin, kGridAt = kTag + 35;
  unsigned char head[kGridAt + kTag] = {};
  std::size_t got = 0;
  if (std::FILE* f = platform::OpenFile(SkipBlanks(path), "rb")) {
    got = std::fread(head, 1, sizeof head, f);
    std::fclose(f);
  }
  auto tagAt = [&](std::size_t at, const char* tag) { return got >= at + kTag && std::memcmp(head + at, tag, kTag) == 0; };
  if (got == 0) return "it is an empty file";
  if (!tagAt(0, kBegin)) {
    if (got < kTag && std::memcmp(head, kBegin, got) == 0)
      return "it ends at byte " + std::to_string(got) + ", inside its first record";
    return "no BGR record at its start";
  }
  if (tagAt(kTag, kOrigin) && tagAt(kGridAt, kGrid)) return "it is a tile file (TMS), not a network";
  return {};
}

void TellWhatStandsInstead(RunContext& ctx, std::string_view path) {
  std::string what = WhatStandsInstead(path);
  if (!what.empty())
    ctx.diagnostics().Printf("bgrtool: '%.*s': %s\n", static_cast<int>(path.size()), path.data(), what.c_str());
}

}  // namespace bgr
