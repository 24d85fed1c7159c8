#include <bit>
#include <cstdio>
#include <string>

#include "formats/tms_file.h"
#include "frame/report.h"
#include "geometry/geo_angle.h"
#include "tools/commands.h"

namespace bgr {
namespace {

struct Range {
  std::int32_t lowX = 9999999, lowZ = 9999999, highX = -9999999, highZ = -9999999;
};

void PrintPoint(const TEXPOINT& p, Range& range) {
  std::printf(" %d %d %d (%d %d %d ft)\n", p.x, p.y, p.z, p.x / 256, p.y / 256, p.z / 256);
  if (p.x < range.lowX) range.lowX = p.x;
  if (p.x > range.highX) range.highX = p.x;
  if (p.z < range.lowZ) range.lowZ = p.z;
  if (p.z > range.highZ) range.highZ = p.z;
}

}  // namespace

int TmsList(std::string_view name) {
  // the range is process-wide: it starts once per run
  static Range range;
  TmsFile tms;
  if (!FileExists(name) || !tms.OpenRead(name)) return 1;
  double lat = 0, lon = 0, third = 0;
  tms.ReadOrigin(&lat, &lon, &third);
  tms.ReadHeader();
  GeoAngle a, b;
  a.SetLatitude(lat);
  b.SetLongitude(lon);
  std::printf("%s (%s %s)\n", "<orgn>", a.Format().c_str(), b.Format().c_str());
  std::printf("%s %d %d\n", "<tlxz>", tms.tilesX, tms.tilesZ);
  auto bits = std::bit_cast<std::uint32_t>(tms.tileFeet);
  std::printf("%s %d (0x%08x %f)\n", "<feet>", static_cast<std::int32_t>(bits), bits,
              static_cast<double>(tms.tileFeet));
  std::printf("%s %lf %lf %lf\n", "<lowl>", tms.lowl[0], tms.lowl[1], tms.lowl[2]);
  while (tms.ReadTile()) {
    std::printf("\n%s %d %d\n", "<indx>", tms.tileX, tms.tileZ);
    for (;;) {
      const char* section = tms.ReadPave() ? "<pave>" : tms.ReadEdmk() ? "<edmk>" : tms.ReadCntr() ? "<cntr>" : nullptr;
      if (section) {
        std::printf("%s %d\n", section, tms.polygon.count);
        for (std::int32_t i = 0; i < tms.polygon.count; ++i) {
          std::int32_t number = tms.polygon.verts[i].point;
          std::printf("%3d:", number);
          // a damaged file may name points the section doesn't hold
          TEXPOINT p = number >= 0 && number < tms.points.capacity() ? tms.points[number] : TEXPOINT{};
          PrintPoint(p, range);
        }
        continue;
      }
      if (!tms.ReadLite()) {
        tms.ReadTileEnd();
        break;
      }
      std::printf("%s %d, type %d, step_ft %f\n", "<lite>", tms.points.count(), tms.lightType,
                  static_cast<double>(tms.lightStep));
      for (std::int32_t i = 0; i < tms.points.count(); ++i) {
        std::printf("%3d:", i);
        PrintPoint(tms.points[i], range);
      }
    }
  }
  std::printf("Range X: %d %d, Z: %d %d\n", range.lowX, range.highX, range.lowZ, range.highZ);
  long tell = tms.file.Tell();
  long length = tms.file.Length();
  std::printf("Tell= %08lX, len= %08lX\n", static_cast<unsigned long>(tell), static_cast<unsigned long>(length));
  tms.Close();
  return 1;
}

}  // namespace bgr
