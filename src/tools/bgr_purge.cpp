#include "formats/bgr_file.h"
#include "frame/report.h"
#include "tools/commands.h"
#include "tools/node_table.h"
#include "tools/replace_by_temp.h"

namespace bgr {

int BgrPurge(std::string_view name) {
  constexpr double kTolerance = 5.0;
  NodeTable whole("BgrPurge cannot allocate points");
  KeptNodes kept(kTolerance);
  BgrFile in, temp;
  int result = OpenSourceAndTemp(in, temp, name, "BgrPurge");
  double lat = 0, lon = 0, third = 0;
  in.ReadOrigin(&lat, &lon, &third);
  temp.WriteOrigin(lat, lon, third);
  double x, y, z;
  while (result == 1 && in.ReadNode(&x, &y, &z)) insert_double_points(whole, x, y, z);
  // node 0 of the new file is the origin itself
  kept.Append({0.0, 0.0, 0.0});
  long edgesStart = in.Tell();
  std::int32_t from, to, width, type, packed, flags;
  while (result == 1 && in.ReadEdge(&from, &to, &width, &type, &packed, &flags)) {
    kept.RenumberNode(from, whole);
    kept.RenumberNode(to, whole);
  }
  for (std::int32_t i = 0; i < kept.table().count(); ++i) {
    const DoublePoint& p = kept.table()[i];
    temp.WriteNode(p.x, p.y, p.z, false, false);
  }
  in.Seek(edgesStart);
  while (result == 1 && in.ReadEdge(&from, &to, &width, &type, &packed, &flags)) {
    std::int32_t a = kept.RenumberNode(from, whole);
    std::int32_t b = kept.RenumberNode(to, whole);
    temp.WriteEdge(a, b, width, type, packed, flags);
  }
  in.Close();
  temp.Close();
  ReplaceByTemp(result != 0, name);
  return result;
}

}  // namespace bgr
