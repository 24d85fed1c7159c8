#include "script/script_network.h"

#include <gtest/gtest.h>

#include <random>

#include "script/airport_database.h"
#include "script/exclusion_list.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

struct Pen {
  Pen() { net.state = NetState::kOpen; }
  bgrtest::TestRun run;
  TaxiwayList net{run.ctx};
  AirportDatabase db{run.ctx};
  ScriptNetwork pen{run.ctx, net, db};
};

TEST(ScriptNetwork, NoMoreThan5999EdgesAndTheLastRecordStaysThePen) {
  Pen p;
  p.pen.MoveTo(0, 0, 0, 0, 0);
  for (int i = 1; i <= 6100; ++i) p.pen.LineTo(i * 10 % 3000, 0, i * 10 / 3000 * 10, 30, 15, 1);
  EXPECT_EQ(p.net.edgeCount, TaxiwayList::kMaxEdges - 1);
  EXPECT_EQ(p.pen.MoveTo(0, 0, 0, 0, 0), 0);
  EXPECT_EQ(p.pen.LineTo(1, 0, 1, 0, 0, 1), 0);
}

// The edge index must find what the walk over the edges in use finds, also
// after runways replaced others and with a pen on a deleted edge's -1.
TEST(ScriptNetwork, TheEdgeIndexAgreesWithThePlainWalk) {
  std::mt19937 rng(5);
  std::uniform_int_distribution<int> coord(0, 40), type(0, 2), pick(0, 9);
  Pen p;
  p.pen.MoveTo(0, 0, 0, 0, 0);
  for (int i = 0; i < 4000; ++i) {
    double x = coord(rng) * 100, z = coord(rng) * 100;
    if (pick(rng) == 0) {
      p.pen.MoveTo(x, 0, z, 0, 0);
    } else {
      p.pen.LineTo(x, 0, z, 30 + pick(rng), 15, type(rng));
    }
    if (i % 97 == 0 && p.net.edgeCount > 0) {
      // what AddRunway does to a runway it replaces
      std::int32_t e = static_cast<std::int32_t>(rng() % static_cast<unsigned>(p.net.edgeCount));
      if (p.net.edges[static_cast<std::size_t>(e)].type == 0) {
        double lat = 0, lon = 0;
        p.pen.AddRunway(lat, lon, lat, lon, 100, 0);  // too short: changes nothing
      }
    }
    for (int k = 0; k < 3; ++k) {
      std::int32_t s = static_cast<std::int32_t>(rng() % 60) - 1, t = static_cast<std::int32_t>(rng() % 60) - 1;
      std::int32_t ty = type(rng);
      ASSERT_EQ(p.pen.FindEdge(s, t, ty), p.pen.FindEdgeByWalk(s, t, ty)) << i;
    }
  }
}

}  // namespace
}  // namespace bgr
