#include "formats/bgr_file.h"
#include "formats/network_content.h"
#include "formats/replace_by_temp.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "geometry/texpoints.h"
#include "tools/commands.h"

namespace bgr {
namespace {

// Adds all nodes of a file to the table; returns how many the file had.
std::int32_t ReadNodes(RunContext& ctx, BgrFile& file, TEXPOINTS& points, std::string_view name, int& result) {
  std::int32_t seen = 0;
  NodeRecord node;
  while (file.ReadNode(node)) {
    if (points.count() >= points.capacity()) {
      result = 0;
      ctx.Report("BgrMerge too many nodes in %s", name);
    } else {
      // nodes in one place stay two
      points.Add(TruncToLong(node.x), TruncToLong(node.y), TruncToLong(node.z), -1);
    }
    seen = WrapAdd(seen, 1);
  }
  return seen;
}

void CopyEdges(BgrFile& from, BgrFile& to, std::int32_t offset) {
  EdgeRecord edge;
  while (from.ReadEdge(edge)) {
    EdgeRecord moved = edge;
    moved.from = WrapAdd(edge.from, offset);
    moved.to = WrapAdd(edge.to, offset);
    to.WriteEdge(moved);
  }
}

}  // namespace

int BgrMerge(RunContext& ctx, std::string_view source, std::string_view destination) {
  int result = 1;
  TempEdit edit(ctx, "BgrMerge");
  BgrFile src, dst, temp;
  if (!src.OpenRead(ctx, source)) {
    result = 0;
    ctx.Report("BgrMerge source file '%s' not found", source);
    TellWhatStandsInstead(ctx, source);
  }
  dst.OpenRead(ctx, destination);
  // a destination that is there but can't be read would be replaced by the source alone
  if (!dst.IsOpen() && platform::KindOf(destination) != platform::PathKind::kMissing) {
    result = 0;
    ctx.Report("BgrMerge dest file '%s' not readable", destination);
  }
  if (!edit.OpenTemp(temp, {source, destination})) result = 0;
  TEXPOINTS points;
  points.Attach(&ctx);
  OriginRecord origin, srcOrigin;
  bool haveOrigin = dst.ReadOrigin(origin);
  std::int32_t offset = ReadNodes(ctx, dst, points, destination, result);
  src.ReadOrigin(srcOrigin);
  // a merge into a file that isn't there yet takes the source's origin
  temp.WriteOrigin(haveOrigin ? origin : srcOrigin);
  ReadNodes(ctx, src, points, source, result);
  temp.WriteNodes(points, -1, -1);
  CopyEdges(dst, temp, 0);
  CopyEdges(src, temp, offset);
  src.Abandon();
  dst.Abandon();
  bool written = temp.Close();
  return edit.Finish(result != 0 && written, destination) ? 1 : 0;
}

}  // namespace bgr
