#include "geometry/triangulate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "geometry/planar.h"

namespace bgr {
namespace {

struct XZ {
  std::int32_t x, z;
};

// A polygon whose vertex i is point i, as the apron reader sets it up.
void Make(TEXPOINTS& pts, TEXTURE& tex, const std::vector<XZ>& corners) {
  pts.SetCount(0);
  for (const XZ& c : corners) pts.Add(c.x, 0, c.z, -1);
  tex.SetFlat(static_cast<std::int32_t>(corners.size()), 0);
  for (std::size_t i = 0; i < corners.size(); ++i) tex.verts[i].point = static_cast<std::int32_t>(i);
}

std::vector<Triple> All(TEXTURE& tex, const TEXPOINTS& pts, std::int32_t fan = 0) {
  std::vector<Triple> out;
  for (std::int32_t i = 0;; ++i) {
    const Triple* t = tex.Triangle(pts, i, fan);
    if (!t) break;
    out.push_back(*t);
  }
  return out;
}

double Cross(const TEXPOINTS& p, const Triple& t) {
  const TEXPOINT &a = p[t[0]], &b = p[t[1]], &c = p[t[2]];
  return (double(b.x) - a.x) * (double(c.z) - a.z) - (double(b.z) - a.z) * (double(c.x) - a.x);
}

TEST(Triangulate, ConvexShapesFanFromCornerZero) {
  TEXPOINTS pts;
  TEXTURE tex;
  Make(pts, tex, {{0, 0}, {0, 100}, {50, 150}, {100, 100}, {100, 0}});  // clockwise
  EXPECT_EQ(All(tex, pts), (std::vector<Triple>{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
}

TEST(Triangulate, SelfCrossingFailsUnlessFanned) {
  TEXPOINTS pts;
  TEXTURE tex;
  Make(pts, tex, {{0, 0}, {100, 100}, {200, 0}, {200, 100}, {100, 0}, {0, 100}});
  EXPECT_EQ(tex.Triangle(pts, 0, 0), nullptr);
  EXPECT_EQ(tex.triangles, nullptr);
  EXPECT_EQ(All(tex, pts, 1).size(), 4u);
}

// Star-shaped polygons are simple: their triangles must cover them exactly.
TEST(Triangulate, RandomSimplePolygonsAreCoveredExactly) {
  std::mt19937 rng(1123);
  std::uniform_real_distribution<double> unit(0, 1);
  TEXPOINTS pts(256);
  TEXTURE tex;
  for (int round = 0; round < 3000; ++round) {
    // a quadrilateral is fanned from corner 0 even when concave, so the
    // covering holds from five corners on
    int n = 5 + static_cast<int>(unit(rng) * 251);
    // jittered even angles keep every gap below a half turn: the polygon is
    // star-shaped around the origin, so simple
    std::vector<double> angles;
    for (int i = 0; i < n; ++i) angles.push_back((i + 0.8 * unit(rng)) / n * 2 * kPi);
    std::vector<XZ> corners;
    for (double a : angles) {
      double r = 1000 + unit(rng) * 100000;
      corners.push_back({static_cast<std::int32_t>(r * std::cos(a)), static_cast<std::int32_t>(r * std::sin(a))});
    }
    if (round % 2) std::reverse(corners.begin(), corners.end());
    Make(pts, tex, corners);
    double area = 0;
    for (int i = 0; i < n; ++i) {
      const XZ &a = corners[static_cast<std::size_t>(i)], &b = corners[static_cast<std::size_t>((i + 1) % n)];
      area += double(a.x) * b.z - double(b.x) * a.z;
    }
    bool fanned = n <= 4 || tex.IsConvex(pts);
    auto triples = All(tex, pts);
    ASSERT_EQ(triples.size(), static_cast<std::size_t>(n - 2)) << "round " << round;
    double sum = 0;
    for (const Triple& t : triples) {
      if (!fanned) {
        ASSERT_GT(Cross(pts, t), 0) << "round " << round;
      }
      sum += std::fabs(Cross(pts, t));
    }
    ASSERT_NEAR(sum, std::fabs(area), 1e-6 * std::fabs(area) + 1) << "round " << round;
  }
}

}  // namespace
}  // namespace bgr
