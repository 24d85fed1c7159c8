#include "script/airport_database.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "support/airport_db.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

struct Database {
  explicit Database(const std::vector<bgrtest::DbAirport>& airports) {
    for (const auto& [name, bytes] : bgrtest::DatabaseFiles(airports)) dir.Write(name, bytes);
  }
  std::int32_t Find(double* lat, double* lon, std::string& name) {
    bgrtest::ScopedChdir in(dir.path());
    return db.FindAirport(lat, lon, name);
  }
  bgrtest::TempDir dir;
  bgrtest::TestRun run;
  AirportDatabase db{run.ctx};
};

TEST(AirportDatabase, FieldsOutsideTheRecordReadAsNothing) {
  Database d({{"LMMX", 100, 100}});
  d.dir.Write("DATABASE/AIRPORT.dbt", "aica,999999999,8,C\nalat,-5,8,N\nalon,2147483647,8,N\n");
  double lat = 0, lon = 0;
  std::string name;
  EXPECT_EQ(d.Find(&lat, &lon, name), 0);  // found at (0, 0), but its code reads as empty
  EXPECT_EQ(name, "NONE");
}

// The index must give the record that the walk over all records gives: the
// first one at the smallest distance, across the 180th meridian too.
TEST(AirportDatabase, TheIndexAgreesWithThePlainWalk) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> lat(-3000, 3000), lon(-2000, 2000);
  std::vector<bgrtest::DbAirport> airports;
  for (int i = 0; i < 3000; ++i) {
    double a = std::round(lat(rng) / 50) * 50, o = std::round(lon(rng) / 50) * 50;  // many ties
    if (o < 0) o += 1296000;                                                        // near the meridian
    airports.push_back({"A" + std::to_string(i % 1000), a, o});
  }
  airports.push_back({"ODD1", 0, -100});  // outside the usual ranges: searched by the walk
  airports.push_back({"ODD2", std::numeric_limits<double>::quiet_NaN(), 0});
  airports.push_back({"ODD3", 0, 1296000 + 100});
  Database d(airports);
  double la = 0, lo = 0;
  std::string name;
  d.Find(&la, &lo, name);
  ASSERT_TRUE(d.db.IsOpen());
  int found = 0;
  for (int i = 0; i < 20000; ++i) {
    double a = lat(rng), o = lon(rng);
    if (i % 3 == 0) o = std::round(o / 25) * 25, a = std::round(a / 25) * 25;  // on the ties
    if (o < 0 && i % 2) o += 1296000;
    std::int32_t walk = d.db.NearestByWalk(a, o);
    ASSERT_EQ(d.db.NearestByIndex(a, o), walk) << a << " " << o;
    found += walk >= 0;
  }
  EXPECT_GT(found, 5000);
}

}  // namespace
}  // namespace bgr
