#include "formats/bgr_file.h"
#include "formats/replace_by_temp.h"
#include "frame/run_context.h"
#include "geometry/node_table.h"
#include "tools/commands.h"

namespace bgr {

int BgrPurge(RunContext& ctx, std::string_view name) {
  constexpr double kTolerance = 5.0;  // feet on each axis within which nodes join
  NodeTable whole("BgrPurge cannot allocate points");
  KeptNodes kept(kTolerance);
  TempEdit edit(ctx, "BgrPurge");
  BgrFile in, temp;
  int result = OpenSourceAndTemp(ctx, edit, in, temp, name, "BgrPurge");
  OriginRecord origin;
  in.ReadOrigin(origin);
  temp.WriteOrigin(origin);
  NodeRecord node;
  while (result == 1 && in.ReadNode(node)) insert_double_points(whole, node.x, node.y, node.z);
  // node 0 of the new file is the origin itself
  kept.Append({0.0, 0.0, 0.0});
  long edgesStart = in.Tell();
  EdgeRecord edge;
  while (result == 1 && in.ReadEdge(edge)) {
    kept.RenumberNode(edge.from, whole);
    kept.RenumberNode(edge.to, whole);
  }
  for (std::int32_t i = 0; i < kept.table().count(); ++i) {
    const DoublePoint& p = kept.table()[i];
    temp.WriteNode({p.x, p.y, p.z});
  }
  in.Seek(edgesStart);
  while (result == 1 && in.ReadEdge(edge)) {
    EdgeRecord renumbered = edge;
    renumbered.from = kept.RenumberNode(edge.from, whole);
    renumbered.to = kept.RenumberNode(edge.to, whole);
    temp.WriteEdge(renumbered);
  }
  in.Abandon();
  bool written = temp.Close();
  return edit.Finish(result != 0 && written, name) ? 1 : 0;
}

}  // namespace bgr
