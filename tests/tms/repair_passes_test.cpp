#include "tms/repair_passes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "support/test_run.h"
#include "tms/tms_job.h"

namespace bgr {
namespace {

// A job on a network given in feet, prepared as the driver prepares it.
struct Job {
  Job(std::initializer_list<TEXPOINT> points, std::initializer_list<TaxiwayEdge> edges) {
    for (const TEXPOINT& p : points) job.network.points.Add(p.x, p.y, p.z, -1);
    for (const TaxiwayEdge& e : edges) job.Edge(job.network.edgeCount++) = e;
    job.PrepareNetwork();
  }
  TEXPOINT Feet(std::int32_t n) const {
    TEXPOINT p = job.network.points[n];
    return {p.x / 256, p.y / 256, p.z / 256};
  }
  bgrtest::TestRun run;
  TmsJob job{run.ctx};
};

constexpr std::int32_t kFlags = 15;

// A runway from (-2000, 0) to (2000, 0) ft, 150 ft wide, and one taxiway to it.
Job Square(std::int32_t nearEnd, std::int32_t farEnd) {
  return Job({{-2000, 0, 0}, {2000, 0, 0}, {0, 0, farEnd}, {0, 0, nearEnd}},
             {{0, 1, 150, kRunway, kFlags}, {2, 3, 75, kTaxiway, kFlags}});
}

TEST(RepairPasses, NearMeansWithin150FeetInclusive) {
  for (std::int32_t off : {150, 151}) {
    Job j = Square(off, -570);
    SnapEndPointsToRunways(j.job.network, j.job.marks, j.job.runwayList);
    EXPECT_EQ(j.Feet(3).z, off == 150 ? 0 : 151) << off;
  }
}

TEST(RepairPasses, ARunwayOf1000FeetOrLessGetsNoStubs) {
  Job j({{-500, 0, 0}, {500, 0, 0}, {0, 0, -570}, {0, 0, 30}},
        {{0, 1, 150, kRunway, kFlags}, {2, 3, 75, kTaxiway, kFlags}});
  SnapEndPointsToRunways(j.job.network, j.job.marks, j.job.runwayList);
  MakeRunwayExitStubs(j.job.network, j.job.marks, j.job.runwayList);
  EXPECT_TRUE(j.Feet(3).Equals(0, 0, 0));
  EXPECT_EQ(j.job.EdgeCount(), 2);
}

TEST(RepairPasses, AngledTaxiwaysSnapFromTwentyDegreesAndGetOneStub) {
  for (double degrees : {25.0, 15.0}) {
    double a = degrees * 3.14159265358979 / 180;
    auto x = static_cast<std::int32_t>(-600 * std::cos(a)), z = static_cast<std::int32_t>(-600 * std::sin(a));
    Job j({{-4000, 0, 0}, {4000, 0, 0}, {x, 0, z}, {0, 0, 20}},
          {{0, 1, 150, kRunway, kFlags}, {2, 3, 75, kTaxiway, kFlags}});
    SnapEndPointsToRunways(j.job.network, j.job.marks, j.job.runwayList);
    MakeRunwayExitStubs(j.job.network, j.job.marks, j.job.runwayList);
    if (degrees == 25.0) {
      EXPECT_EQ(j.Feet(3).z, 0);
      ASSERT_EQ(j.job.EdgeCount(), 3);  // only the stub on the side of the sharp turn
      EXPECT_GT(j.Feet(4).x, j.Feet(3).x);
    } else {
      EXPECT_EQ(j.Feet(3).z, 20);
      EXPECT_EQ(j.job.EdgeCount(), 2);
    }
  }
}

TEST(RepairPasses, EndPointsSnapOnToTaxiwaysFromEitherSide) {
  // one stops 100 ft short of the long taxiway, one overshoots it by 100 ft,
  // one stops 151 ft short and stays
  Job j({{-3000, 0, 0}, {3000, 0, 0}, {-1000, 0, -800}, {-1000, 0, -100}, {0, 0, 800}, {0, 0, -100},
         {1000, 0, -800}, {1000, 0, -151}},
        {{0, 1, 75, kTaxiway, kFlags}, {2, 3, 75, kTaxiway, kFlags}, {4, 5, 75, kTaxiway, kFlags},
         {6, 7, 75, kTaxiway, kFlags}});
  SnapEndPointsToTaxiways(j.job.network, j.job.marks);
  EXPECT_TRUE(j.Feet(3).Equals(-1000, 0, 0));
  EXPECT_TRUE(j.Feet(5).Equals(0, 0, 0));
  EXPECT_TRUE(j.Feet(7).Equals(1000, 0, -151));
  EXPECT_EQ(j.job.EdgeCount(), 6);
  EXPECT_EQ(j.job.marks.Of(3), 3);
  EXPECT_EQ(j.job.Edge(0).end, 3);  // the long taxiway ends at the first split, its rest goes on
  EXPECT_EQ(j.job.Edge(4).start, 3);
}

// The pass as plain walks over all pairs: what the indexed pass must agree with.
void PlainSnapEndPointsToTaxiways(TmsJob& job) {
  for (std::int32_t a = 0; a < job.EdgeCount(); ++a) {
    if (job.Edge(a).type != kTaxiway) continue;
    for (std::int32_t b = 0; b < job.EdgeCount(); ++b) SnapEndPointsToTaxiway(job.network, job.marks, a, b);
  }
}

// Taxiways of all lengths among each other, many with an end just beside
// another; some point at themselves or at points that don't exist.
void RandomNetwork(TmsJob& job, std::uint32_t seed, std::int32_t points, std::int32_t edges) {
  auto next = [&seed](std::uint32_t n) {
    seed = seed * 1664525u + 1013904223u;
    return static_cast<std::int32_t>((seed >> 8) % n);
  };
  for (std::int32_t i = 0; i < points; ++i) job.network.points.Add(next(3000), 0, next(3000), -1);
  for (std::int32_t i = 0; i < edges; ++i) {
    std::int32_t a = next(static_cast<std::uint32_t>(points)), b = next(static_cast<std::uint32_t>(points) + 3);
    if (next(30) == 0) b = a;
    job.Edge(job.network.edgeCount++) = {a, b, 50, next(12) == 0 ? kRunway : kTaxiway, next(6) == 0 ? 8 : 15};
  }
  job.PrepareNetwork();
}

TEST(RepairPasses, SnappingOnToTaxiwaysMatchesThePlainWalk) {
  std::int32_t splits = 0;
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    bgrtest::TestRun run;
    auto fast = std::make_unique<TmsJob>(run.ctx);
    auto plain = std::make_unique<TmsJob>(run.ctx);
    std::int32_t points = 30 + static_cast<std::int32_t>(seed * 11), edges = 20 + static_cast<std::int32_t>(seed * 7);
    RandomNetwork(*fast, seed, points, edges);
    RandomNetwork(*plain, seed, points, edges);
    SnapEndPointsToTaxiways(fast->network, fast->marks);
    PlainSnapEndPointsToTaxiways(*plain);
    ASSERT_EQ(fast->EdgeCount(), plain->EdgeCount()) << seed;
    splits += fast->EdgeCount() - edges;
    for (std::int32_t i = 0; i < fast->EdgeCount(); ++i) {
      const TaxiwayEdge &f = fast->Edge(i), &p = plain->Edge(i);
      ASSERT_TRUE(f.start == p.start && f.end == p.end && f.type == p.type) << seed << " edge " << i;
    }
    for (std::int32_t i = 0; i < points; ++i) {
      ASSERT_TRUE(fast->network.points[i].Equals(plain->network.points[i].x, 0, plain->network.points[i].z))
          << seed << " point " << i;
      ASSERT_EQ(fast->marks.Of(i), plain->marks.Of(i));
    }
  }
  EXPECT_GT(splits, 40);  // the networks do snap, often
}

}  // namespace
}  // namespace bgr
