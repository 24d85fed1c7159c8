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

class Triangulate : public ::testing::Test {
 protected:
  TEXPOINTS pts;
  TEXTURE tex;
};

TEST_F(Triangulate, ConvexShapesFanFromCornerZero) {
  Make(pts, tex, {{0, 0}, {0, 100}, {50, 150}, {100, 100}, {100, 0}});  // clockwise
  EXPECT_EQ(All(tex, pts), (std::vector<Triple>{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
}

TEST_F(Triangulate, SelfCrossingFailsUnlessFanned) {
  Make(pts, tex, {{0, 0}, {100, 100}, {200, 0}, {200, 100}, {100, 0}, {0, 100}});
  EXPECT_EQ(tex.Triangle(pts, 0, 0), nullptr);
  EXPECT_EQ(tex.triangles, nullptr);
  EXPECT_EQ(All(tex, pts, 1).size(), 4u);
}

// Star-shaped polygons are simple: their triangles must cover them exactly.
TEST_F(Triangulate, RandomSimplePolygonsAreCoveredExactly) {
  std::mt19937 rng(1123);
  std::uniform_real_distribution<double> unit(0, 1);
  pts.SetSize(256);
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

// Bearings as the plain formula gives them: atan itself, cut to whole degrees.
TEST_F(Triangulate, WholeDegreesAgreeWithAtan) {
  auto plain = [](double q) { return static_cast<std::int32_t>(std::atan(q) / 0.017453292519943295); };
  std::vector<double> qs = {0.0, -0.0, 1.0, -1.0, 1e-300, 57.28996163075943, 57.29, 1e9, -1e9, 2147483647.0};
  for (int k = 0; k <= 90; ++k) {
    // the tangent of each whole degree and the doubles around it, where the cut flips
    double t = std::tan(k * 0.017453292519943295);
    double below = t, above = t;
    for (int step = 0; step < 40; ++step) {
      below = std::nextafter(below, 0.0);
      above = std::nextafter(above, 1e300);
      for (double q : {t, below, above, t * (1 + 1e-7), t * (1 - 1e-7), t * (1 + 2e-7)}) {
        qs.push_back(q);
        qs.push_back(-q);
      }
    }
  }
  std::mt19937 rng(7);
  std::uniform_int_distribution<std::int32_t> any(-2147483647, 2147483647), small(-3000, 3000);
  for (int i = 0; i < 200000; ++i) {
    std::int32_t db = i % 2 ? any(rng) : small(rng), da = i % 2 ? any(rng) : small(rng);
    if (da != 0) qs.push_back(db / std::fabs(static_cast<double>(da)));
  }
  for (double q : qs) ASSERT_EQ(WholeDegreesOfAtan(q), plain(q)) << q;
}

// The winding vote with every edge's bearing taken once is the plain sum of the
// signs of each corner's VertexTurn.
TEST_F(Triangulate, ReversedIsTheVoteOfTheCornerTurns) {
  std::mt19937 rng(11);
  std::uniform_int_distribution<std::int32_t> coord(-400000, 400000), size(3, 12);
  for (int round = 0; round < 30000; ++round) {
    std::vector<XZ> corners(static_cast<std::size_t>(size(rng)));
    for (std::size_t k = 0; k < corners.size(); ++k) {
      XZ& c = corners[k];
      c = {coord(rng), coord(rng)};
      if (round % 3 == 0) c = {c.x / 100000 * 100000, c.z / 100000 * 100000};  // edges along the axes, corners in line
      if (round % 3 == 1) {
        // nearly in line, or folding back on itself: turns within a few degrees of 0 and 180
        std::int32_t along = static_cast<std::int32_t>(k % 2 ? k : corners.size() - k) * 20000;
        c = {along + coord(rng) / 400, along / 3 + coord(rng) / 400};
      }
    }
    Make(pts, tex, corners);
    if (round % 5 == 0) pts.base = 1;  // numbers shifted: the corner out of the table reads as the origin
    std::int32_t sum = 0;
    for (std::int32_t i = 0; i < tex.count; ++i) {
      std::int32_t turn = tex.VertexTurn(pts, i);
      sum += turn > 0 ? 1 : (turn < 0 ? -1 : 0);
    }
    ASSERT_EQ(tex.IsReversed(pts), sum < 0) << "round " << round;
    pts.base = 0;
  }
}

}  // namespace
}  // namespace bgr
