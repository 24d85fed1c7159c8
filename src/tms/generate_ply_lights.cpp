#include "tms/generate_ply_lights.h"

#include "formats/ply_reader.h"
#include "formats/working_units.h"
#include "frame/int32_math.h"
#include "tms/taxi_polygons.h"
#include "tms/tile_grid.h"

namespace bgr {
namespace {

constexpr std::int32_t kPlyLightStep = 100;

}  // namespace

void GeneratePlyLights(PlyReader& ply, TileGrid& grid) {
  ply.Rewind();
  std::int32_t kind = 0, x1 = 0, z1 = 0, x2 = 0, z2 = 0, count = 0;
  while (ply.ReadLgt(&kind, &x1, &z1, &x2, &z2, &count)) {
    // a string is told by its ends and its step; count isn't needed
    grid.ClipLine(kLightLayer, WrapMul(x1, kUnitsPerFoot), WrapMul(z1, kUnitsPerFoot), WrapMul(x2, kUnitsPerFoot),
                  WrapMul(z2, kUnitsPerFoot), (kind & 255) * 256 + kPlyLightStep);
  }
}

}  // namespace bgr
