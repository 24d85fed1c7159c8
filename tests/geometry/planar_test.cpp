#include "geometry/planar.h"

#include <gtest/gtest.h>

namespace bgr {
namespace {

TEST(Planar, RoundCoordCutsNegatives) {
  EXPECT_EQ(RoundCoord(1.5), 2);
  EXPECT_EQ(RoundCoord(0.4), 0);
  EXPECT_EQ(RoundCoord(-0.5), 0);
  EXPECT_EQ(RoundCoord(-1.9), -1);
  EXPECT_EQ(RoundCoord(-10.5), -10);
}

TEST(Planar, IntersectRefusesNearlyParallelLinesWithMinAngle) {
  const double fiveDegrees = 5 * kPi / 180;
  PlaneLine a, b;
  a.Set(0, 0, 100, 0);
  b.SetFromAngle(0, 10, kPi + 3 * kPi / 180);  // the opposite way, 3 degrees off
  double x = 0, y = 0;
  EXPECT_FALSE(a.Intersect(b, &x, &y, fiveDegrees));
  EXPECT_FALSE(b.Intersect(a, &x, &y, fiveDegrees));
  EXPECT_TRUE(a.Intersect(b, &x, &y, 0));
  PlaneLine c;
  c.Set(50, -10, 50, 10);
  EXPECT_TRUE(a.Intersect(c, &x, &y, fiveDegrees));
  EXPECT_EQ(x, 50);
}

TEST(Planar, SegmentDistanceDecidesOnTheLongerAxis) {
  PlaneLine l;
  l.Set(0, 0, 100, 50);  // flat: x decides
  EXPECT_NEAR(l.SegmentDistance(100, 60), l.LineDistance(100, 60), 1e-9);  // level with an end
  EXPECT_DOUBLE_EQ(l.SegmentDistance(-3, -4), 5);
  EXPECT_DOUBLE_EQ(l.SegmentDistance(103, 54), 5);
  EXPECT_TRUE(l.IsNear(103, 54, 5));
  EXPECT_FALSE(l.IsNear(103, 54, 4.9));
}

}  // namespace
}  // namespace bgr
