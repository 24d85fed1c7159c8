// What bgrkit osm reads from tags: widths with their units and the names of a
// runway's two ends.
#include "kit/osm.h"

#include <gtest/gtest.h>

#include <cmath>

#include "script/geo_parse.h"

namespace bgr::kit {
namespace {

TEST(Osm, WidthsReadInMetresUnlessTheUnitSaysFeet) {
  struct {
    const char* tag;
    double feet;
  } cases[] = {
      {"45", 45 / 0.3048}, {"45 m", 45 / 0.3048}, {"22.5m", 22.5 / 0.3048}, {"150 ft", 150}, {"150'", 150},
      {"75 feet", 75},     {"", 0},               {"wide", 0},             {"-3", 0},       {"12 yards", 0},
      {"nan", 0},          {"1e999", 0},
  };
  for (const auto& c : cases) EXPECT_NEAR(WidthFeet(c.tag), c.feet, 1e-9) << c.tag;
}

// A runway is named from each end after the heading it is flown in: ten
// degrees to the number, 36 for north.
TEST(Osm, RunwayEndsFollowTheBearing) {
  struct {
    const char* ref;
    double bearing;
    const char* first;
    const char* second;
  } cases[] = {
      {"05/23", 50, "05", "23"},    {"05/23", 230, "23", "05"},   {"23/05", 48, "05", "23"},
      {"09L/27R", 268, "27R", "09L"}, {"18", 180, "18", "36"},     {"36", 2, "36", "18"},
      {"04R", 223, "22L", "04R"},   {"4L", 40, "4L", "22R"},   {"", 91, "09", "27"},         {"H1", 359, "36", "18"},
  };
  for (const auto& c : cases) {
    RunwayEnds ends = NameRunwayEnds(c.ref, c.bearing);
    EXPECT_EQ(ends.first, c.first) << c.ref << " " << c.bearing;
    EXPECT_EQ(ends.second, c.second) << c.ref << " " << c.bearing;
  }
}

// What a script is written with reads back within a tenth of a thousandth of
// an arc-second, in every quarter of the globe.
TEST(Osm, PositionsReadBackAsWritten) {
  for (double degrees : {0.0, 35.857498, -33.9461, 47.4490010, -122.308998, 179.99999999, -0.00001}) {
    double lat = 0, lon = 0;
    if (std::fabs(degrees) <= 90) {
      EXPECT_EQ(ParseLatitude(FormatLatitude(degrees), &lat), 1);
      EXPECT_NEAR(lat, degrees * 3600, 0.00005 + 1e-9) << FormatLatitude(degrees);
    }
    EXPECT_EQ(ParseLongitude(FormatLongitude(degrees), &lon), 1);
    EXPECT_NEAR(lon, degrees * 3600, 0.00005 + 1e-9) << FormatLongitude(degrees);
  }
}

}  // namespace
}  // namespace bgr::kit
