#include "tms/tms_job.h"

#include <gtest/gtest.h>

#include "support/airport_gen.h"
#include "support/temp_dir.h"
#include "formats/tms_content.h"
#include "support/test_run.h"

namespace bgr {
namespace {

class TmsJobTest : public ::testing::Test {
 protected:
  // A network in feet, as Load leaves it.
  void Net(std::initializer_list<TEXPOINT> points, std::initializer_list<TaxiwayEdge> edges) {
    for (const TEXPOINT& p : points) job.network.points.Add(p.x, p.y, p.z, -1);
    for (const TaxiwayEdge& e : edges) job.Edge(job.network.edgeCount++) = e;
  }
  bgrtest::TestRun run;
  TmsJob job{run.ctx};
};

TEST_F(TmsJobTest, TileFeetAreCutToWholeFeet) {
  job.GrowBounds(0, 0);
  job.GrowBounds(1600008 - 256000, 10);
  job.SizeTileGrid();
  EXPECT_EQ(job.grid.TileSize, 200001);
  EXPECT_EQ(job.tms.tileFeet, 781.0f);
  EXPECT_EQ(job.grid.TileOriginX, -128000);
}

TEST_F(TmsJobTest, LoneLinksUpTo500FeetAreDropped) {
  // start, end, width, type, flags
  Net({{0, 0, 0}, {500, 0, 0}, {0, 0, 100}, {501, 0, 100}, {0, 0, 200}, {10, 0, 200}, {20, 0, 200}, {9, 0, 9}},
      {{0, 1, 75, 1, 1}, {2, 3, 75, 1, 1}, {4, 5, 75, 1, 1}, {5, 6, 75, 1, 1}, {7, 7, 75, 1, 0}});
  job.PrepareNetwork();
  EXPECT_EQ(job.Edge(0).type, kShortLink);  // exactly 128000 units
  EXPECT_EQ(job.Edge(1).type, kTaxiway);
  EXPECT_EQ(job.Edge(2).type, kTaxiway);  // point 5 is a way through
  EXPECT_EQ(job.Mark(5), 2);
  EXPECT_EQ(job.Mark(7), 2);  // the last edge has no flags stored: all of them, so it is paved
  EXPECT_EQ(job.Mark(12000), 0);
  EXPECT_EQ(job.network.points[1].x, 128000);
  EXPECT_EQ(job.Edge(0).width, 75 * 256);
}

TEST_F(TmsJobTest, WorkingUnitsGoBackToFeetTowardZero) {
  Net({{0, 0, 0}}, {});
  job.network.points.SetPoint(0, {-257, 511, 0});
  job.RestoreNetwork();
  EXPECT_TRUE(job.network.points[0].Equals(-1, 1, 0));
}

TEST_F(TmsJobTest, ARunwayPastThe32ndIsReportedOnceAndStillWidensTheBox) {
  Net({{0, 0, 0}, {10, 0, 0}, {4000, 0, 3000}}, {});
  for (int i = 0; i < 34; ++i) job.Edge(job.network.edgeCount++) = {0, i < 33 ? 1 : 2, 100, 0, 15};
  job.PrepareNetwork();
  EXPECT_EQ(job.runwayList.count(), 32);
  EXPECT_EQ(job.runwayList.At(32), nullptr);
  EXPECT_EQ(job.runwayList.At(31)->edge, 31u);
  EXPECT_EQ(job.boundsMaxX, 4000.0 * 256);
  EXPECT_EQ(run.console.Take(), "ERROR: SegmentList::Add - too many edges\n");
}

}  // namespace
}  // namespace bgr

namespace bgr {
namespace {

// The largest network the tables hold, with aprons and lights: the job runs
// through, keeps every point in its table and writes 64 tiles.
TEST(TmsJobFull, AFullSizeAirportRunsThrough) {
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in(dir.path());
  bgrtest::AirportSize size;  // 6000 edges, 12000 points
  bgrtest::Airport airport = bgrtest::MakeAirport(size);
  ASSERT_EQ(airport.edgeCount, TaxiwayList::kMaxEdges);
  ASSERT_EQ(airport.pointCount, TaxiwayList::kMaxPoints);
  dir.Write("big.bgr", airport.bgr);
  dir.Write("big.PLY", airport.ply);
  bgrtest::TestRun run;
  auto job = std::make_unique<TmsJob>(run.ctx);
  EXPECT_EQ(job->Run("big.bgr"), 1);
  std::string out = run.console.Take();
  EXPECT_EQ(out.rfind("Load(big.bgr) points=12000 edges=6000\n", 0), 0u) << out.substr(0, 200);
  EXPECT_NE(out.find("GenerateOutputFile(big.TMS)\n"), std::string::npos);
  // aprons of 128 corners and more are reported, and the busiest tiles fill
  // their point tables: each said once, nothing else goes wrong
  std::size_t errors = 0;
  for (std::size_t at = out.find("ERROR: "); at != std::string::npos; at = out.find("ERROR: ", at + 1)) {
    std::string line = out.substr(at, out.find('\n', at) - at);
    EXPECT_TRUE(line == "ERROR: TaxiwayList::ReadPly - too many points 0 0" ||
                line == "ERROR: TEXPOINTS::Add() table full 0 2000")
        << line;
    ++errors;
  }
  EXPECT_LE(errors, 2u);
  bgrtest::TestRun reader;
  bgr::TmsContent tiles = bgr::ReadTmsContent(reader.ctx, dir.path() + "/big.TMS");
  ASSERT_TRUE(tiles.read);
  EXPECT_GT(tiles.Count(0), 10000u);
  EXPECT_GT(tiles.Count(3), 1000u);
  // the grid covers the whole airport: no tile is left without pavement in the middle
  EXPECT_FALSE(tiles.tiles[4][4][0].empty());
}

}  // namespace
}  // namespace bgr
