// Chain and ring thinning, checked by what it promises on seeded random shapes:
// ends and marked points stay, order is kept, and every dropped point lies
// within the tolerance of the kept segment over it.
#include "geometry/simplify.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace bgr {
namespace {

std::vector<PlanePoint> Wander(std::mt19937& rng, std::size_t n) {
  std::normal_distribution<double> step(0, 20);
  std::vector<PlanePoint> out{{0, 0}};
  double heading = 0;
  for (std::size_t i = 1; i < n; ++i) {
    heading += step(rng) / 100;
    out.push_back({out.back().x + 30 * std::cos(heading) + step(rng) / 10, out.back().z + 30 * std::sin(heading)});
  }
  return out;
}

// Every point between two kept ones lies within 'tolerance' of their segment.
void ExpectWithin(const std::vector<PlanePoint>& points, const std::vector<std::size_t>& kept, double tolerance,
                  bool closed) {
  for (std::size_t k = 0; k < kept.size(); ++k) {
    if (!closed && k + 1 == kept.size()) break;
    std::size_t a = kept[k], b = kept[(k + 1) % kept.size()];
    for (std::size_t i = (a + 1) % points.size(); i != b; i = (i + 1) % points.size())
      EXPECT_LE(SegmentPointDistance(points[a], points[b], points[i]), tolerance + 1e-9) << i;
  }
}

TEST(Simplify, ChainsKeepEndsJunctionsAndTolerance) {
  std::mt19937 rng(7);
  for (int shape = 0; shape < 300; ++shape) {
    std::vector<PlanePoint> chain = Wander(rng, 2 + rng() % 400);
    std::vector<bool> keep(chain.size());
    for (std::size_t i = 0; i < keep.size(); ++i) keep[i] = rng() % 17 == 0;
    double tolerance = 0.5 * (1 + rng() % 40);
    std::vector<std::size_t> kept = SimplifyChain(chain, keep, tolerance);
    ASSERT_GE(kept.size(), 2u);
    EXPECT_EQ(kept.front(), 0u);
    EXPECT_EQ(kept.back(), chain.size() - 1);
    EXPECT_TRUE(std::is_sorted(kept.begin(), kept.end()));
    EXPECT_EQ(std::adjacent_find(kept.begin(), kept.end()), kept.end());
    for (std::size_t i = 0; i < keep.size(); ++i)
      EXPECT_TRUE(!keep[i] || std::binary_search(kept.begin(), kept.end(), i)) << "marked point " << i;
    ExpectWithin(chain, kept, tolerance, false);
  }
}

TEST(Simplify, AStraightLineKeepsItsEndsAlone) {
  std::vector<PlanePoint> line;
  for (int i = 0; i <= 100; ++i) line.push_back({i * 3.0, i * 4.0});
  EXPECT_EQ(SimplifyChain(line, {}, 0.01), (std::vector<std::size_t>{0, 100}));
}

// Rings of up to ten thousand corners: at most the corners asked for, each
// dropped corner within the stated tolerance, and the area about kept.
TEST(Simplify, RingsFitTheirCornerLimit) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> wobble(0.8, 1.2);
  for (std::size_t n : {3u, 4u, 127u, 128u, 300u, 2000u, 10000u}) {
    std::vector<PlanePoint> ring;
    for (std::size_t i = 0; i < n; ++i) {
      double a = 2 * 3.14159265358979 * static_cast<double>(i) / static_cast<double>(n);
      double r = 1000 * (n > 8 ? wobble(rng) : 1.0);
      ring.push_back({r * std::cos(a), r * std::sin(a)});
    }
    RingFit fit = FitRing(ring, 127, 0.5);
    ASSERT_GE(fit.kept.size(), 3u) << n;
    EXPECT_LE(fit.kept.size(), 127u) << n;
    EXPECT_EQ(fit.tolerance == 0, n <= 127) << n;
    EXPECT_TRUE(std::is_sorted(fit.kept.begin(), fit.kept.end()));
    ExpectWithin(ring, fit.kept, fit.tolerance, true);
    std::vector<PlanePoint> thinned;
    for (std::size_t k : fit.kept) thinned.push_back(ring[k]);
    // what a corner within the tolerance can change of the area
    double perimeter = 0;
    for (std::size_t k = 0; k < thinned.size(); ++k) {
      const PlanePoint& p = thinned[k];
      const PlanePoint& q = thinned[(k + 1) % thinned.size()];
      perimeter += std::hypot(q.x - p.x, q.z - p.z);
    }
    EXPECT_NEAR(RingArea2(thinned) / 2, RingArea2(ring) / 2, perimeter * fit.tolerance + 1e-6) << n;
  }
}

TEST(Simplify, ARingOnOneLineKeepsNoThirdCorner) {
  std::vector<PlanePoint> flat{{0, 0}, {10, 0}, {20, 0}, {30, 0}, {20, 0}};
  EXPECT_EQ(SimplifyRing(flat, 1).size(), 2u);
  EXPECT_EQ(RingArea2(flat), 0);
}

}  // namespace
}  // namespace bgr
