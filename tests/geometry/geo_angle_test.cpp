#include "geometry/geo_angle.h"

#include <gtest/gtest.h>

namespace bgr {
namespace {

TEST(GeoAngle, LatitudesPeelAndFormat) {
  GeoAngle a;
  a.SetLatitude(-1.5);
  EXPECT_EQ(a.Format(), "0 0'01.5000\"S");
  a.SetLatitude(171000.5);
  EXPECT_EQ(a.Format(), "47 30'00.5000\"N");
}

TEST(GeoAngle, LongitudesWrapAndMirrorOneTickShort) {
  GeoAngle a;
  a.SetLongitudeTicks(-1);
  EXPECT_EQ(a.hemisphere, 'W');
  EXPECT_EQ(a.degrees + a.minutes + a.seconds + a.ticks, 0);
  a.SetLongitudeTicks(6480000000.0);
  EXPECT_EQ(a.hemisphere, 'E');
  EXPECT_EQ(a.degrees, 180);
  a.SetLongitude(-3600.0);  // one degree west shows one tick short
  EXPECT_EQ(a.Format(), "0 59'59.9999\"W");
}

}  // namespace
}  // namespace bgr
