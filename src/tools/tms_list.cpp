#include <bit>
#include <string>

#include "formats/tms_file.h"
#include "formats/working_units.h"
#include "frame/file_access.h"
#include "frame/run_context.h"
#include "geometry/geo_angle.h"
#include "tools/commands.h"

namespace bgr {
namespace {

// The point range of the listing, over all tiles.
struct Range {
  std::int32_t lowX = 9999999, lowZ = 9999999, highX = -9999999, highZ = -9999999;
};

void PrintPoint(OutputSink& out, const TEXPOINT& p, Range& range) {
  out.Printf(" %d %d %d (%d %d %d ft)\n", p.x, p.y, p.z, p.x / kUnitsPerFoot, p.y / kUnitsPerFoot, p.z / kUnitsPerFoot);
  if (p.x < range.lowX) range.lowX = p.x;
  if (p.x > range.highX) range.highX = p.x;
  if (p.z < range.lowZ) range.lowZ = p.z;
  if (p.z > range.highZ) range.highZ = p.z;
}

void PrintHeader(OutputSink& out, TmsFile& tms) {
  OriginRecord origin;
  tms.ReadOrigin(origin);
  tms.ReadHeader();
  GeoAngle a, b;
  a.SetLatitude(origin.latitude);
  b.SetLongitude(origin.longitude);
  out.Printf("%s (%s %s)\n", "<orgn>", a.Format().c_str(), b.Format().c_str());
  out.Printf("%s %d %d\n", "<tlxz>", tms.tilesX, tms.tilesZ);
  auto bits = std::bit_cast<std::uint32_t>(tms.tileFeet);
  out.Printf("%s %d (0x%08x %f)\n", "<feet>", static_cast<std::int32_t>(bits), bits,
             static_cast<double>(tms.tileFeet));
  out.Printf("%s %lf %lf %lf\n", "<lowl>", tms.lowl[0], tms.lowl[1], tms.lowl[2]);
}

// The sections of the current tile, until its end or a section that can't be read.
void PrintTile(OutputSink& out, TmsFile& tms, Range& range) {
  out.Printf("\n%s %d %d\n", "<indx>", tms.tileX, tms.tileZ);
  for (;;) {
    int layer = tms.ReadPolygonLayer();
    if (layer >= 0) {
      out.Printf("%s %d\n", TmsFile::kPolygonTags[layer], tms.polygon.count);
      for (std::int32_t i = 0; i < tms.polygon.count; ++i) {
        std::int32_t number = tms.polygon.verts[i].point;
        out.Printf("%3d:", number);
        // a damaged file may name points the section doesn't hold
        TEXPOINT p = number >= 0 && number < tms.points.capacity() ? tms.points[number] : TEXPOINT{};
        PrintPoint(out, p, range);
      }
      continue;
    }
    if (!tms.ReadLite()) {
      tms.ReadTileEnd();
      return;
    }
    out.Printf("%s %d, type %d, step_ft %f\n", "<lite>", tms.points.count(), tms.lightType,
               static_cast<double>(tms.lightStep));
    for (std::int32_t i = 0; i < tms.points.count(); ++i) {
      out.Printf("%3d:", i);
      PrintPoint(out, tms.points[i], range);
    }
  }
}

}  // namespace

int TmsList(RunContext& ctx, std::string_view name) {
  OutputSink& out = ctx.console();
  TmsFile tms;
  if (!FileExists(ctx, name) || !tms.OpenRead(ctx, name)) return 1;
  PrintHeader(out, tms);
  Range range;
  while (tms.ReadTile()) PrintTile(out, tms, range);
  out.Printf("Range X: %d %d, Z: %d %d\n", range.lowX, range.highX, range.lowZ, range.highZ);
  long tell = tms.file.Tell();
  long length = tms.file.Length();
  out.Printf("Tell= %08lX, len= %08lX\n", static_cast<unsigned long>(tell), static_cast<unsigned long>(length));
  tms.file.Abandon();
  return 1;
}

}  // namespace bgr
