#include "tms/apron.h"

#include "formats/ply_reader.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "geometry/texpoints.h"
#include "tms/taxi_polygons.h"
#include "tms/tile_grid.h"
#include "tms/tms_job.h"

namespace bgr {
namespace {

constexpr std::int32_t kHashModulus = 398713;

TEXPOINT CornerOf(const TEXPOINTS& points, const TEXTURE& polygon, std::int32_t v) {
  std::int32_t n = polygon.verts[static_cast<std::size_t>(v)].point;
  return n >= 0 && n < points.count() ? points[n] : TEXPOINT{};
}

}  // namespace

std::int32_t ApronHash(const TEXPOINTS& points, const TEXTURE& polygon) {
  std::int32_t hash = 0;
  for (std::int32_t v = 0; v < polygon.count; ++v) {
    TEXPOINT p = CornerOf(points, polygon, v);
    // the remainder takes the sign of the dividend, as the home system's does
    hash = WrapAdd(WrapAdd(hash, p.x), WrapMul(p.z, 31)) % kHashModulus;
  }
  return hash;
}

ApronFate NextApron(PlyReader& ply, TEXPOINTS& points, TEXTURE& polygon, std::int32_t& lastHash) {
  points.SetCount(0);
  if (!ply.ReadPly(points, polygon, -1)) return ApronFate::kEnd;
  // a ring that closes on its first point
  if (polygon.count > 0 && polygon.verts[0].point == polygon.verts[static_cast<std::size_t>(polygon.count - 1)].point)
    --polygon.count;
  std::int32_t hash = ApronHash(points, polygon);
  if (polygon.count < 3) return ApronFate::kTooFew;
  if (hash == lastHash) return ApronFate::kRepeat;
  if (polygon.count != points.count()) return ApronFate::kComplex;
  lastHash = hash;
  ScalePointsUp(points);
  return ApronFate::kMade;
}

namespace {

// Each apron that both passes make, with its points in working units.
template <class Use>
void ForEachApron(RunContext& ctx, PlyReader& ply, Use&& use) {
  TEXTURE polygon;
  TEXPOINTS points;
  points.Attach(&ctx);
  std::int32_t lastHash = 0;
  ply.Rewind();
  for (ApronFate fate; (fate = NextApron(ply, points, polygon, lastHash)) != ApronFate::kEnd;) {
    if (fate == ApronFate::kComplex) ctx.ReportOnce(">WARNING:%sGenerateApron complex/holes in PLY %d %ld");
    if (fate == ApronFate::kMade) use(points, polygon);
  }
}

}  // namespace

void MeasureAprons(RunContext& ctx, PlyReader& ply, Bounds& bounds) {
  ForEachApron(ctx, ply, [&](TEXPOINTS& points, TEXTURE& polygon) {
    for (std::int32_t v = 0; v < polygon.count; ++v) {
      TEXPOINT p = CornerOf(points, polygon, v);
      bounds.Grow(p.x, p.z);
    }
  });
}

void GenerateApron(RunContext& ctx, PlyReader& ply, TileGrid& grid) {
  ForEachApron(ctx, ply,
               [&](TEXPOINTS& points, TEXTURE& polygon) { GenerateApronPolygons(ctx, grid, points, polygon); });
}

void GenerateApronPolygons(RunContext& ctx, TileGrid& grid, TEXPOINTS& points, TEXTURE& polygon) {
  if (polygon.count < 3) return;
  bool any = ForEachApronTriangle(points, polygon, [&](const TEXPOINT& a, const TEXPOINT& b, const TEXPOINT& c) {
    grid.ClipTriangle(kPaveLayer, a.x, a.z, b.x, b.z, c.x, c.z);
  });
  if (!any) ctx.ReportOnce("%sGenerateApronPolygons - triangulation failed %d %ld");
}

}  // namespace bgr
