#include <string>

#include "formats/bgr_file.h"
#include "formats/little_endian.h"
#include "formats/network_content.h"
#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "geometry/node_table.h"
#include "platform/platform.h"
#include "tools/commands.h"

namespace bgr {
namespace {

// Every edge of a TXD file has no height and the default width of 75 ft at both ends.
constexpr double kEdgeHeight = 0.0;
constexpr double kEdgeWidth = 75.0;

}  // namespace

int BgrTxd(RunContext& ctx, std::string_view file) {
  int ok = 1;
  std::int32_t edgeCount = 0;
  NodeTable nodes("BgrTxd cannot allocate points");
  BgrFile in;
  if (!in.OpenRead(ctx, file)) {
    ok = 0;
    ctx.Report("BgrTxd source file '%s' not found", file);
    TellWhatStandsInstead(ctx, file);
  }
  std::string dest(file);
  SetExtension(dest, "txd");
  OutputFile out;
  // a source named like its export would be replaced by it
  if (!OpenDestination(ctx, "BgrTxd", file, dest, out, ok)) return 0;
  std::FILE* f = out.get();
  OriginRecord origin;
  in.ReadOrigin(origin);
  NodeRecord node;
  while (in.ReadNode(node)) {
    if (nodes.count() >= kNodeTableSize) {
      ok = 0;
      ctx.Report("BgrTxd too many nodes in %s", dest);
    } else {
      insert_double_points(nodes, node.x, node.y, node.z);
    }
  }
  WriteI32(f, 0);  // the edge count, written when it is known
  EdgeRecord edge;
  while (in.ReadEdge(edge)) {
    WriteI32(f, edge.from);
    WriteI32(f, edge.to);
    WriteF64(f, kEdgeHeight);
    WriteF64(f, kEdgeWidth);
    WriteF64(f, kEdgeWidth);
    edgeCount = WrapAdd(edgeCount, 1);
  }
  WriteI32(f, nodes.count());
  for (std::int32_t i = 0; i < nodes.count(); ++i) {
    WriteF64(f, nodes[i].x);
    WriteF64(f, nodes[i].z);
    WriteF64(f, 0.0);
    WriteF64(f, 0.0);
  }
  if (f && std::fseek(f, 0, SEEK_SET) == 0) WriteI32(f, edgeCount);
  in.Abandon();
  return out.Finish(ctx, ok != 0, "BgrTxd") ? 1 : 0;
}

}  // namespace bgr
