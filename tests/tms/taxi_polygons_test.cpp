#include "tms/taxi_polygons.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "support/test_run.h"
#include "tms/tms_job.h"

namespace bgr {
namespace {

using Corner = std::pair<std::int32_t, std::int32_t>;  // x, z

// A polygon of a tile as a plain shape: its corners and its attribute word.
struct Shape {
  std::vector<Corner> corners;
  std::int32_t attr = 0;
};

// One tile that takes everything: a test of shapes needs no cutting.
void OneTile(TileGrid& grid) {
  grid.TileSize = 1 << 30;
  grid.TileOriginX = -(1 << 29);
  grid.TileOriginZ = -(1 << 29);
}

// What a layer of tile (0, 0) holds, in order of arrival (the list gives the last first).
std::vector<Shape> ShapesOf(TileGrid& grid, std::int32_t layer) {
  TileRecord& tile = grid.Tile(0, 0);
  const TEXPOINTS& points = tile.points[static_cast<std::size_t>(layer)];
  TextureList& list = tile.polygons[static_cast<std::size_t>(layer)];
  std::vector<Shape> shapes;
  for (const TEXTURE* t = list.First(); t != nullptr; t = list.Next()) {
    Shape s{{}, t->attr};
    for (std::int32_t v = 0; v < t->count; ++v) {
      const TEXPOINT& p = points[t->verts[static_cast<std::size_t>(v)].point];
      s.corners.emplace_back(p.x, p.z);
    }
    shapes.push_back(std::move(s));
  }
  std::reverse(shapes.begin(), shapes.end());
  return shapes;
}

// A network in feet, made ready for its taxiway polygons, all in one tile.
void Prepare(TmsJob& job) {
  job.PrepareNetwork();
  job.FillTaxiList();
  OneTile(job.grid);
}

enum class Joint { kNothing, kStraight, kFillet };

// Two edges of 3000 ft that meet at (3000, 0) ft, the second turned by the angle.
Joint JointAtTurn(double degrees) {
  double a = degrees * kPi / 180;
  bgrtest::TestRun run;
  TmsJob job{run.ctx};
  job.network.points.Add(0, 0, 0, -1);
  job.network.points.Add(3000, 0, 0, -1);
  job.network.points.Add(static_cast<std::int32_t>(std::lround(3000 + 3000 * std::cos(a))), 0,
                         static_cast<std::int32_t>(std::lround(3000 * std::sin(a))), -1);
  job.Edge(job.network.edgeCount++) = {0, 1, 20, kTaxiway, 1};
  job.Edge(job.network.edgeCount++) = {1, 2, 20, kTaxiway, 1};
  Prepare(job);
  TaxiPolygons(job.network, job.marks, job.taxiList, job.grid).Generate();
  std::size_t joint = ShapesOf(job.grid, 0).size() - 2;
  return joint == 0 ? Joint::kNothing : joint == 1 ? Joint::kStraight : Joint::kFillet;
}

TEST(TaxiPolygons, TheTurnDecidesTheJoint) {
  struct Case {
    double degrees;
    Joint joint;
  } cases[] = {
      {0, Joint::kStraight},
      {19.9, Joint::kStraight},
      {21, Joint::kStraight},  // the ribbon sides cross at less than 30 degrees
      {45, Joint::kFillet},
      {-45, Joint::kFillet},
      {102, Joint::kFillet},  // a bend of two edges
      {149.5, Joint::kFillet},
      {150.5, Joint::kNothing},  // a hairpin stays open
      {-150.5, Joint::kNothing},
  };
  for (const Case& c : cases) EXPECT_EQ(JointAtTurn(c.degrees), c.joint) << c.degrees;
}

TEST(DrawFillet, StepsAndEdgeLightsFollowTheCurveLength) {
  struct Case {
    double length;
    std::size_t quads;
    std::size_t edgeLights;
  } cases[] = {
      {44799.0, 6, 0},   // a short fillet has no edge lights
      {44800.0, 7, 6},   // lights on quads 2, 4 and 6, both sides
      {159999.0, 24, 24},
      {160000.0, 25, 24},
      {300000.0, 25, 24},  // at most 25 steps
      {100.0, 1, 0},       // at least one
  };
  for (const Case& c : cases) {
    TileGrid grid;
    OneTile(grid);
    QuadStyle style{true, 0, true, true, true, 0};
    double h = c.length / 2;
    DrawFillet(grid, style, {0, 0}, {h, 0}, {c.length, 0}, {0, 5000}, {h, 5000}, {c.length, 5000});
    EXPECT_EQ(ShapesOf(grid, 0).size(), c.quads) << c.length;
    EXPECT_EQ(ShapesOf(grid, 3).size(), c.edgeLights) << c.length;
  }
}

// The walk as plain recursion over all segments, and the pair table as a plain
// array: what the indexed versions must agree with.
struct PlainWalk {
  void Visit(std::int32_t i) {
    if (polygons.Visited(i)) return;
    polygons.GenerateRibbon(i);
    polygons.SetVisited(i);
    const TaxiwayEdge& e = job.Edge(static_cast<std::int32_t>(job.taxiList.At(i)->edge));
    for (std::int32_t j = 0; j < job.taxiList.count(); ++j) {
      if (j == i) continue;
      const TaxiwayEdge& o = job.Edge(static_cast<std::int32_t>(job.taxiList.At(j)->edge));
      if (e.end == o.start || e.end == o.end) {
        Visit(j);
        polygons.GenerateJoint(i, j, false, e.end == o.start);
      }
      if (e.start == o.start || e.start == o.end) {
        Visit(j);
        polygons.GenerateJoint(i, j, true, e.start == o.start);
      }
    }
  }
  TmsJob& job;
  TaxiPolygons& polygons;
};

struct PlainPairs {
  bool Remember(std::int32_t a, std::int32_t b) {
    for (auto& entry : table) {
      if (entry.first == 0 && entry.second == 0) {
        entry = {a, b};
        return true;
      }
      if (entry == std::pair{a, b} || entry == std::pair{b, a}) return false;
    }
    return true;
  }
  std::vector<std::pair<std::int32_t, std::int32_t>> table = std::vector<std::pair<std::int32_t, std::int32_t>>(
      JoinedPairs::kCapacity);
};

TEST(JoinedPairs, AgreesWithThePlainTable) {
  std::uint32_t seed = 7;
  auto next = [&seed](std::uint32_t n) {
    seed = seed * 1103515245u + 12345u;
    return static_cast<std::int32_t>((seed >> 8) % n);
  };
  JoinedPairs fast;
  PlainPairs plain;
  for (int i = 0; i < 20000; ++i) {
    std::int32_t a = next(300), b = next(300);
    if (a == b) continue;
    ASSERT_EQ(fast.Remember(a, b), plain.Remember(a, b)) << i;
  }
  // the pair whose key has every bit set is a pair like any other
  JoinedPairs edge;
  EXPECT_TRUE(edge.Remember(-1, -1));
  EXPECT_FALSE(edge.Remember(-1, -1));
  EXPECT_TRUE(edge.Remember(-1, 0));
  EXPECT_FALSE(edge.Remember(0, -1));
}

// A random network in feet: points on a small grid so that edges share them,
// some edges from a point to itself or to points that don't exist.
void RandomNetwork(TmsJob& job, std::uint32_t seed, std::int32_t points, std::int32_t edges) {
  auto next = [&seed](std::uint32_t n) {
    seed = seed * 1664525u + 1013904223u;
    return static_cast<std::int32_t>((seed >> 8) % n);
  };
  for (std::int32_t i = 0; i < points; ++i) job.network.points.Add(next(40) * 300, 0, next(40) * 300, -1);
  for (std::int32_t i = 0; i < edges; ++i) {
    std::int32_t a = next(static_cast<std::uint32_t>(points)), b = next(static_cast<std::uint32_t>(points) + 2);
    if (next(20) == 0) b = a;
    std::int32_t flags = next(16), type = next(10) == 0 ? kExitStub : kTaxiway;
    job.Edge(job.network.edgeCount++) = {a, b, 20 + next(200), type, flags};
  }
  Prepare(job);
}

TEST(TaxiPolygons, TheWalkMatchesThePlainRecursion) {
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    bgrtest::TestRun run;
    auto fast = std::make_unique<TmsJob>(run.ctx);
    auto plain = std::make_unique<TmsJob>(run.ctx);
    std::int32_t points = 20 + static_cast<std::int32_t>(seed * 7), edges = 30 + static_cast<std::int32_t>(seed * 9);
    RandomNetwork(*fast, seed, points, edges);
    RandomNetwork(*plain, seed, points, edges);
    // the step's two walks at once, each laying its own layers, against one plain walk
    GenerateTaxiPolygons(fast->network, fast->marks, fast->taxiList, fast->grid, 0);
    TaxiPolygons polygons(plain->network, plain->marks, plain->taxiList, plain->grid);
    polygons.Reset();
    PlainWalk walk{*plain, polygons};
    for (std::int32_t i = 0; i < plain->taxiList.count(); ++i) walk.Visit(i);
    for (std::int32_t layer = 0; layer < kLayers; ++layer) {
      std::vector<Shape> a = ShapesOf(fast->grid, layer), b = ShapesOf(plain->grid, layer);
      ASSERT_EQ(a.size(), b.size()) << "seed " << seed << " layer " << layer;
      for (std::size_t k = 0; k < a.size(); ++k) {
        ASSERT_EQ(a[k].corners, b[k].corners) << "seed " << seed << " layer " << layer << " shape " << k;
        ASSERT_EQ(a[k].attr, b[k].attr);
      }
    }
  }
}

}  // namespace
}  // namespace bgr
