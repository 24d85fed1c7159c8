#include "tms/apron.h"

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

void GenerateApron(TmsJob& job, ApronPass pass) {
  job.ctx().console().Printf("GenerateApron(%d)\n", static_cast<int>(pass));
  TEXTURE polygon;
  TEXPOINTS points;
  points.Attach(&job.ctx());
  std::int32_t lastHash = 0;
  job.network.RewindPly();
  for (;;) {
    points.SetCount(0);
    if (!job.network.ReadPly(points, polygon, -1)) break;
    // a ring that closes on its first point
    if (polygon.count > 0 && polygon.verts[0].point == polygon.verts[static_cast<std::size_t>(polygon.count - 1)].point)
      --polygon.count;
    std::int32_t hash = ApronHash(points, polygon);
    if (polygon.count < 3 || hash == lastHash) continue;  // a repeat of the one before is made once
    if (polygon.count != points.count()) {
      // corners that fell on corners of the same polygon: a self-touching outline or holes
      if (!job.ctx().once.apronComplex) {
        job.ctx().once.apronComplex = true;
        job.ctx().Report(">WARNING:%sGenerateApron complex/holes in PLY %d %ld");
      }
      continue;
    }
    lastHash = hash;
    ScalePointsUp(points);
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
  polygon.SetFlat(polygon.count, 0);
  bool any = false;
  for (std::int32_t index = 0;; ++index) {
    const Triple* triple = polygon.Triangle(points, index, 0);
    if (triple == nullptr) break;
    any = true;
    auto corner = [&](std::int32_t n) { return n >= 0 && n < points.count() ? points[n] : TEXPOINT{}; };
    TEXPOINT a = corner((*triple)[0]), b = corner((*triple)[1]), c = corner((*triple)[2]);
    job.grid.ClipTriangle(kPaveLayer, a.x, a.z, b.x, b.z, c.x, c.z);
  }
  if (!any && !job.ctx().once.apronTriangulationFailed) {
    job.ctx().once.apronTriangulationFailed = true;
    job.ctx().Report("%sGenerateApronPolygons - triangulation failed %d %ld");
  }
}

}  // namespace bgr
