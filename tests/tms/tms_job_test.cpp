#include "tms/tms_job.h"

#include <gtest/gtest.h>

#include "support/test_run.h"
#include "tms/tms_steps.h"

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

TEST_F(TmsJobTest, LoneLinksUpTo500FeetAreDropped) {
  // start, end, width, type, flags
  Net({{0, 0, 0}, {500, 0, 0}, {0, 0, 100}, {501, 0, 100}, {0, 0, 200}, {10, 0, 200}, {20, 0, 200}, {9, 0, 9}},
      {{0, 1, 75, 1, 1}, {2, 3, 75, 1, 1}, {4, 5, 75, 1, 1}, {5, 6, 75, 1, 1}, {7, 7, 75, 1, 0}});
  job.PrepareNetwork();
  EXPECT_EQ(job.Edge(0).type, kShortLink);  // exactly 128000 units
  EXPECT_EQ(job.Edge(1).type, kTaxiway);
  EXPECT_EQ(job.Edge(2).type, kTaxiway);  // point 5 is a way through
  EXPECT_EQ(job.marks.Of(5), 2);
  EXPECT_EQ(job.marks.Of(7), 2);  // the last edge has no flags stored: all of them, so it is paved
  EXPECT_EQ(job.marks.Of(12000), 0);
  EXPECT_EQ(job.network.points[1].x, 128000);
  EXPECT_EQ(job.Edge(0).width, 75 * 256);
}

TEST_F(TmsJobTest, ARunwayPastThe32ndIsReportedOnceAndStillWidensTheBox) {
  Net({{0, 0, 0}, {10, 0, 0}, {4000, 0, 3000}}, {});
  for (int i = 0; i < 34; ++i) job.Edge(job.network.edgeCount++) = {0, i < 33 ? 1 : 2, 100, 0, 15};
  job.PrepareNetwork();
  EXPECT_EQ(job.runwayList.count(), 32);
  EXPECT_EQ(job.runwayList.At(32), nullptr);
  EXPECT_EQ(job.runwayList.At(31)->edge, 31u);
  EXPECT_EQ(job.bounds.maxX, 4000.0 * 256);
  EXPECT_EQ(run.console.Take(), "ERROR: SegmentList::Add - too many edges\n");
}

// The rules of the order: the marks before the repairs, the taxiway list after
// them, the bounds of network and aprons before the grid, the grid before the
// first polygon, the tiles written before the network is scaled back and saved.
TEST(TmsSteps, RunInTheOrderTheirRulesNeed) {
  auto at = [](std::string_view name) {
    auto steps = TmsSteps();
    for (std::size_t i = 0; i < steps.size(); ++i)
      if (steps[i].name == name) return i;
    ADD_FAILURE() << "no step " << name;
    return steps.size();
  };
  EXPECT_EQ(at("Load"), 0u);
  EXPECT_LT(at("PrepareNetwork"), at("SnapEndPointsToRunways"));
  EXPECT_LT(at("SnapEndPointsToRunways"), at("MakeRunwayExitStubs"));
  EXPECT_LT(at("MakeRunwayExitStubs"), at("MakeTaxiwayTaxiwayIntersections"));
  EXPECT_LT(at("MakeTaxiwayTaxiwayIntersections"), at("SnapEndPointsToTaxiways"));
  EXPECT_LT(at("SnapEndPointsToTaxiways"), at("FillTaxiList"));
  EXPECT_LT(at("FillTaxiList"), at("SizeTileGrid"));
  EXPECT_LT(at("MeasureAprons"), at("SizeTileGrid"));
  EXPECT_LT(at("SizeTileGrid"), at("GenerateTaxiPolygons"));
  EXPECT_LT(at("GenerateOutputFile"), at("RestoreNetwork"));
  EXPECT_EQ(at("SaveNetwork"), TmsSteps().size() - 1);
}

}  // namespace
}  // namespace bgr
