#include "tms/generate_is_yellow.h"

#include "formats/edge_kinds.h"
#include "formats/taxiway_list.h"
#include "geometry/planar.h"
#include "tms/taxi_polygons.h"
#include "tms/tile_grid.h"

namespace bgr {

void GenerateIsYellow(const TaxiwayList& network, TileGrid& grid) {
  // a point number outside the table reads as the origin, as its unused places hold
  auto point = [&](std::int32_t n) { return n >= 0 && n < network.points.count() ? network.points[n] : TEXPOINT{}; };
  for (std::int32_t i = 0; i < network.edgeCount; ++i) {
    const TaxiwayEdge& e = network.edges[static_cast<std::size_t>(i)];
    if (e.type != kYellowLine) continue;
    TEXPOINT a = point(e.start), b = point(e.end);
    GenerateYellowLine(grid, a.x, a.z, b.x, b.z);
  }
}

void GenerateYellowLine(TileGrid& grid, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2) {
  if (x1 == x2 && z1 == z2) return;
  PlaneLine line;
  line.Set(x1, z1, x2, z2);
  PlaneLine plus = line, minus = line;
  plus.Shift(kLineWidth / 2);
  minus.Shift(-kLineWidth / 2);
  TEXPOINT ps, pe, ms, me;
  plus.GetEndsLong(&ps.x, &ps.z, &pe.x, &pe.z);
  minus.GetEndsLong(&ms.x, &ms.z, &me.x, &me.z);
  grid.ClipQuad(kCentreLayer, ms.x, ms.z, ps.x, ps.z, pe.x, pe.z, me.x, me.z);
}

}  // namespace bgr
