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

}  // namespace
}  // namespace bgr
