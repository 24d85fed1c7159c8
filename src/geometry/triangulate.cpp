// Triangulation of flat polygons: a fan for convex shapes, ear clipping for the
// rest, and the winding test that the tile store relies on.
#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <new>
#include <vector>

#include "frame/int32_math.h"
#include "geometry/planar.h"
#include "geometry/texpoints.h"
#include "geometry/triangulate.h"

namespace bgr {
namespace {

// A point by number; numbers outside the table read as the origin.
TEXPOINT PointAt(const TEXPOINTS& points, std::int32_t n) {
  return n >= 0 && n < points.capacity() ? points[n] : TEXPOINT{};
}

std::unique_ptr<Triple[]> AllocateTriples(std::int32_t n) {
  return std::unique_ptr<Triple[]>(new (std::nothrow) Triple[static_cast<std::size_t>(n > 0 ? n : 1)]);
}

}  // namespace

bool InsideTriangle(double ax, double ay, double bx, double by, double cx, double cy, double px, double py) {
  return (cx - bx) * (py - by) - (cy - by) * (px - bx) >= 0 && (ax - cx) * (py - cy) - (ay - cy) * (px - cx) >= 0 &&
         (bx - ax) * (py - ay) - (by - ay) * (px - ax) >= 0;
}

bool IsEar(const TEXPOINTS& points, std::int32_t u, std::int32_t v, std::int32_t w, std::int32_t nv,
           std::span<const std::int32_t> work) {
  TEXPOINT a = PointAt(points, work[u]), b = PointAt(points, work[v]), c = PointAt(points, work[w]);
  double ax = a.x, az = a.z, bx = b.x, bz = b.z, cx = c.x, cz = c.z;
  if ((bx - ax) * (cz - az) - (bz - az) * (cx - ax) < 0.0000000001) return false;
  for (std::int32_t p = 0; p < nv; ++p) {
    if (p == u || p == v || p == w) continue;
    TEXPOINT q = PointAt(points, work[p]);
    if (InsideTriangle(ax, az, bx, bz, cx, cz, q.x, q.z)) return false;
  }
  return true;
}

std::int32_t WholeDegreesOfAtan(double q) {
  // tan of 0 to 89 degrees: the whole degrees of atan(q) are the count of them
  // at or below |q| less one. Within a ten-millionth of one the rounding of atan
  // could tip the count, so there atan itself decides, as it does from 89 degrees on.
  static const std::array<double, 90> kTangents = [] {
    std::array<double, 90> t{};
    for (std::size_t k = 0; k < t.size(); ++k) t[k] = std::tan(static_cast<double>(k) * kRadiansPerDegree);
    return t;
  }();
  constexpr double kMargin = 1e-7;
  double size = std::fabs(q);
  if (!(size < kTangents.back() * (1 - kMargin))) return static_cast<std::int32_t>(std::atan(q) / kRadiansPerDegree);
  // a first guess within a tenth of a degree: atan(s) ~ 45 s - s (s - 1) (14.02 + 3.79 s) on 0..1
  auto guess = [](double s) { return 45 * s - s * (s - 1) * (14.02 + 3.79 * s); };
  double degrees = size <= 1 ? guess(size) : 90 - guess(1 / size);
  auto whole = static_cast<std::size_t>(std::clamp(degrees, 0.0, 88.0));
  while (whole > 0 && size < kTangents[whole]) --whole;
  while (whole + 1 < kTangents.size() && size >= kTangents[whole + 1]) ++whole;
  if ((whole > 0 && size < kTangents[whole] * (1 + kMargin)) || size > kTangents[whole + 1] * (1 - kMargin)) {
    return static_cast<std::int32_t>(std::atan(q) / kRadiansPerDegree);
  }
  return q < 0 ? -static_cast<std::int32_t>(whole) : static_cast<std::int32_t>(whole);
}

std::int32_t EdgeBearing(std::int32_t a1, std::int32_t b1, std::int32_t a2, std::int32_t b2) {
  std::int32_t da = WrapSub(a2, a1);
  std::int32_t db = WrapSub(b2, b1);
  if (db == 0) return da < 0 ? 180 : 0;
  if (da == 0) return db < 0 ? -90 : 90;
  bool back = da < 0;
  double size = std::fabs(static_cast<double>(da));
  std::int32_t r = WholeDegreesOfAtan(db / size);
  if (back) r = 180 - r;
  if (r > 180) r -= 360;
  return r;
}

std::int32_t BearingDifference(std::int32_t from, std::int32_t to) {
  std::int64_t d = static_cast<std::int64_t>(to) - from;
  d %= 360;  // what the loops of whole turns leave
  if (d > 180) d -= 360;
  if (d < -179) d += 360;
  return static_cast<std::int32_t>(d);
}

bool TEXTURE::MakeFan() {
  FreeTriangles();
  triangleCount = 0;
  std::int32_t n = count - 2;
  if (n < 1) return false;
  triangles = AllocateTriples(n);
  if (!triangles) return false;
  for (std::int32_t k = 0; k < n; ++k) triangles[k] = {0, k + 1, k + 2};
  triangleCount = n;
  return true;
}

bool TEXTURE::EarClip(const TEXPOINTS& points, std::int32_t direction, std::int32_t fan) {
  FreeTriangles();
  if (direction == 2 && fan != 0) return MakeFan();
  std::int32_t capacity = 4 * count;
  triangleCount = 0;
  triangles = AllocateTriples(capacity);
  if (!triangles) return false;
  std::vector<std::int32_t> work(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) work[static_cast<std::size_t>(i)] = direction == 0 ? i : count - 1 - i;
  std::int32_t nv = count;
  std::int32_t budget = 4 * nv;
  std::int32_t v = nv - 1;
  while (nv > 2) {
    if (triangleCount >= capacity || budget <= 0) {
      triangleCount = 0;
      return false;
    }
    --budget;
    std::int32_t u = v < nv ? v : 0;
    v = u + 1 < nv ? u + 1 : 0;
    std::int32_t w = v + 1 < nv ? v + 1 : 0;
    if (IsEar(points, u, v, w, nv, work)) {
      triangles[triangleCount++] = {work[static_cast<std::size_t>(u)], work[static_cast<std::size_t>(v)],
                                    work[static_cast<std::size_t>(w)]};
      work.erase(work.begin() + v);
      --nv;
      budget = 4 * nv;
    }
  }
  return true;
}

const Triple* TEXTURE::Triangle(const TEXPOINTS& points, std::int32_t index, std::int32_t fan) {
  if (count < 3 || index < 0) return nullptr;
  if (index == 0) {
    if (count <= 4 || IsConvex(points)) {
      MakeFan();
    } else if (!EarClip(points, 0, fan) && !EarClip(points, 1, fan)) {
      EarClip(points, 2, fan);
    }
  }
  if (triangles && index < triangleCount) return &triangles[index];
  FreeTriangles();
  return nullptr;
}

bool TEXTURE::IsConvex(const TEXPOINTS& points) const {
  std::int32_t n = count < kMaxVerts ? count : kMaxVerts;
  if (n < 1) return false;
  std::int32_t left = 0, right = 0;
  for (std::int32_t i = 0; i < n; ++i) {
    TEXPOINT a = PointAt(points, verts[i].point);
    TEXPOINT b = PointAt(points, verts[(i + 1) % n].point);
    TEXPOINT c = PointAt(points, verts[(i + 2) % n].point);
    if (a.y != 0 || b.y != 0 || c.y != 0) return false;
    if (TurnAngle(a.x, a.z, b.x, b.z, c.x, c.z) >= 0) {
      ++left;
    } else {
      ++right;
    }
  }
  return count >= 3 && (left == 0 || right == 0);
}

std::int32_t TEXTURE::VertexTurn(const TEXPOINTS& points, std::int32_t i) const {
  std::int32_t n = count < kMaxVerts ? count : kMaxVerts;
  if (n < 3) return 0;
  auto corner = [&](std::int32_t k) {
    return PointAt(points, WrapSub(verts[static_cast<std::size_t>(((i + k) % n + n) % n)].point, points.base));
  };
  TEXPOINT a = corner(0), b = corner(1), c = corner(2);
  return BearingDifference(EdgeBearing(a.z, a.x, b.z, b.x), EdgeBearing(b.z, b.x, c.z, c.x));
}

// The sum of the signs of every VertexTurn. Whole-degree bearings are each
// less than a degree off the true direction, so a corner that turns by 5 to
// 175 degrees either way votes as its cross product says; only the others
// take their edges' bearings, each edge's once.
bool TEXTURE::IsReversed(const TEXPOINTS& points) const {
  if (count < 3) return false;
  std::int32_t n = count < kMaxVerts ? count : kMaxVerts;
  // plain arrays, not TEXPOINTs, which would be cleared all 256 first
  std::array<std::int32_t, kMaxVerts + 2> xs, zs;
  for (std::int32_t k = 0; k < n + 2; ++k) {
    std::int32_t from = k < n ? k : k - n;
    TEXPOINT p = PointAt(points, WrapSub(verts[static_cast<std::size_t>(from)].point, points.base));
    xs[static_cast<std::size_t>(k)] = p.x;
    zs[static_cast<std::size_t>(k)] = p.z;
  }
  return RingIsReversed(std::span(xs).first(static_cast<std::size_t>(n) + 2),
                        std::span(zs).first(static_cast<std::size_t>(n) + 2));
}

bool RingIsReversed(std::span<const std::int32_t> xs, std::span<const std::int32_t> zs) {
  auto n = static_cast<std::int32_t>(xs.size()) - 2;
  constexpr double kClearTurn = 0.0076;  // sin^2 of a little over 5 degrees
  constexpr std::int32_t kUnknown = INT32_MIN;
  std::array<std::int32_t, TEXTURE::kMaxVerts> bearings;
  std::fill_n(bearings.begin(), n, kUnknown);
  auto x = [&](std::int32_t k) { return xs[static_cast<std::size_t>(k)]; };
  auto z = [&](std::int32_t k) { return zs[static_cast<std::size_t>(k)]; };
  auto bearing = [&](std::int32_t k) {
    std::int32_t& b = bearings[static_cast<std::size_t>(k < n ? k : k - n)];
    if (b == kUnknown) b = EdgeBearing(z(k), x(k), z(k + 1), x(k + 1));
    return b;
  };
  std::int32_t sum = 0;
  for (std::int32_t i = 0; i < n; ++i) {
    double uz = WrapSub(z(i + 1), z(i)), ux = WrapSub(x(i + 1), x(i));
    double vz = WrapSub(z(i + 2), z(i + 1)), vx = WrapSub(x(i + 2), x(i + 1));
    double cross = uz * vx - ux * vz;
    if (cross != 0 && cross * cross >= kClearTurn * (uz * uz + ux * ux) * (vz * vz + vx * vx)) {
      sum += cross > 0 ? 1 : -1;
      continue;
    }
    std::int32_t turn = BearingDifference(bearing(i), bearing(i + 1));
    sum += turn > 0 ? 1 : (turn < 0 ? -1 : 0);
  }
  return sum < 0;
}

}  // namespace bgr
