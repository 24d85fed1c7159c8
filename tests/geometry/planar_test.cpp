#include "geometry/planar.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/geo_angle.h"
#include "geometry/ref_cell.h"

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

TEST(RefCellTest, BandsAndColumns) {
  GeoAngle lat, lon;
  lat.SetLatitude(0);
  lon.SetLongitude(3600);
  RefCell c;
  ASSERT_EQ(c.Set(lat, lon), 1);
  EXPECT_EQ(c.band, 128);
  lat.SetLatitude(-1);
  ASSERT_EQ(c.Set(lat, lon), 1);
  EXPECT_EQ(c.band, 127);
  lat.SetLatitude(89 * 3600.0);
  EXPECT_EQ(c.Set(lat, lon), 0);
  lat.SetLatitude(0);
  lon.hemisphere = 'W';
  lon.degrees = 0;
  lon.minutes = 0;
  lon.seconds = 1;
  lon.ticks = 0;
  ASSERT_EQ(c.Set(lat, lon), 1);
  EXPECT_EQ(c.column, 256);
  EXPECT_NEAR(BandEdge(255), 85.079, 0.001);
  RefCell a{1, 5, 6}, b{2, 5, 6};
  EXPECT_TRUE(a.Matches(b));
}

}  // namespace
}  // namespace bgr
