#include "tms/apron.h"

#include "formats/ply_reader.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "geometry/texpoints.h"
#include "tms/taxi_polygons.h"
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

void GenerateApron(TmsJob& job, ApronPass pass) {
  TEXTURE polygon;
  TEXPOINTS points;
  points.Attach(&job.ctx());
  std::int32_t lastHash = 0;
  job.ply.Rewind();
  for (ApronFate fate; (fate = NextApron(job.ply, points, polygon, lastHash)) != ApronFate::kEnd;) {
    if (fate == ApronFate::kComplex) job.ctx().ReportOnce(">WARNING:%sGenerateApron complex/holes in PLY %d %ld");
    if (fate != ApronFate::kMade) continue;
    if (pass == ApronPass::kMeasure) {
      for (std::int32_t v = 0; v < polygon.count; ++v) {
        TEXPOINT p = CornerOf(points, polygon, v);
        job.GrowBounds(p.x, p.z);
      }
    } else {
      GenerateApronPolygons(job, points, polygon);
    }
  }
}

void GenerateApronPolygons(TmsJob& job, TEXPOINTS& points, TEXTURE& polygon) {
  if (polygon.count < 3) return;
  bool any = ForEachApronTriangle(points, polygon, [&](const TEXPOINT& a, const TEXPOINT& b, const TEXPOINT& c) {
    job.grid.ClipTriangle(kPaveLayer, a.x, a.z, b.x, b.z, c.x, c.z);
  });
  if (!any) job.ctx().ReportOnce("%sGenerateApronPolygons - triangulation failed %d %ld");
}

}  // namespace bgr
