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

namespace {

// A network begins with <bgno>; a tile file has its grid tag behind the origin record.
constexpr char kBegin[] = "<bgno>";
constexpr char kOrigin[] = "<orgn>";
constexpr char kGrid[] = "<tlxz>";
constexpr std::size_t kTag = sizeof kBegin, kGridAt = kTag + 35;

struct Head {
  unsigned char bytes[kGridAt + kTag] = {};
  std::size_t got = 0;
  bool TagAt(std::size_t at, const char* tag) const {
    return got >= at + kTag && std::memcmp(bytes + at, tag, kTag) == 0;
  }
};

Head ReadHead(std::string_view path) {
  Head head;
  if (std::FILE* f = platform::OpenFile(SkipBlanks(path), "rb")) {
    head.got = std::fread(head.bytes, 1, sizeof head.bytes, f);
    std::fclose(f);
  }
  return head;
}

}  // namespace

bool IsTileFile(std::string_view path) {
  Head head = ReadHead(path);
  return head.TagAt(0, kBegin) && head.TagAt(kTag, kOrigin) && head.TagAt(kGridAt, kGrid);
}

std::string WhatStandsInstead(std::string_view path) {
  std::string why = WhyUnreadable(path);
  if (!why.empty()) return why;
  Head head = ReadHead(path);
  if (head.got == 0) return "it is an empty file";
  if (!head.TagAt(0, kBegin)) {
    if (head.got < kTag && std::memcmp(head.bytes, kBegin, head.got) == 0)
      return "it ends at byte " + std::to_string(head.got) + ", inside its first record";
    return "no BGR record at its start";
  }
  if (IsTileFile(path)) return "it is a tile file (TMS), not a network";
  return {};
}

void TellWhatStandsInstead(RunContext& ctx, std::string_view path) {
  std::string what = WhatStandsInstead(path);
  if (!what.empty())
    ctx.diagnostics().Printf("bgrtool: '%.*s': %s\n", static_cast<int>(path.size()), path.data(), what.c_str());
}

}  // namespace bgr
