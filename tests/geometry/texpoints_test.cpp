#include "geometry/texpoints.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace bgr {
namespace {

TEST(TexPoints, ToleranceIsABoxPerAxis) {
  TEXPOINTS t;
  EXPECT_EQ(t.Add(100, 0, 100, 5), 0);
  EXPECT_EQ(t.Add(105, 0, 105, 5), 0);   // 5 away in x and z: merged
  EXPECT_EQ(t.Add(106, 0, 100, 5), 1);   // 6 in one axis: new
  EXPECT_EQ(t.Add(100, 0, 100, 0), 0);   // exact duplicate
  EXPECT_EQ(t.Add(100, 1, 100, 0), 2);
  EXPECT_EQ(t.Add(100, 0, 100, -1), 3);  // a negative tolerance never merges
  EXPECT_EQ(t.count(), 4);
}

TEST(TexPoints, FullTableReturnsMatchesAndZeroForNewcomers) {
  TEXPOINTS t(2);
  t.Add(1, 1, 1, 0);
  t.Add(2, 2, 2, 0);
  EXPECT_EQ(t.Add(2, 2, 2, 0), 1);
  EXPECT_EQ(t.Add(3, 3, 3, 0), 0);
  EXPECT_EQ(t.count(), 2);
}

TEST(TexPoints, DifferencesWrapAt32Bits) {
  TEXPOINTS t;
  t.Add(2147483647, 0, 0, 0);
  EXPECT_EQ(t.Add(-2147483647 - 1, 0, 0, 1), 0);  // 1 apart once wrapped
  EXPECT_EQ(t.Add(-2147483647 + 5, 0, 0, 5), 1);  // 7 apart
}

// Owners read the table up to its capacity: numbers never reached hold the
// origin, and points let go by a smaller count keep their values.
TEST(TexPoints, ThePlacesAboveTheCountKeepWhatTheyHeld) {
  TEXPOINTS t(10);
  t.Add(1, 2, 3, 0);
  t.Add(4, 5, 6, 0);
  EXPECT_TRUE(t[9].Equals(0, 0, 0));
  t.SetCount(0);
  EXPECT_TRUE(t[1].Equals(4, 5, 6));
  EXPECT_EQ(t.Add(7, 8, 9, 0), 0);
  t.SetCount(5);
  EXPECT_TRUE(t[0].Equals(7, 8, 9));
  EXPECT_TRUE(t[1].Equals(4, 5, 6));
  EXPECT_TRUE(t[4].Equals(0, 0, 0));
  EXPECT_EQ(t.EditAll().size(), 10u);
  t.SetSize(10);
  EXPECT_TRUE(t[1].Equals(0, 0, 0));
}

// The index must give what a walk from point 0 gives, whatever the history.
TEST(TexPoints, IndexAgreesWithAPlainWalk) {
  std::mt19937 rng(20261123);
  for (int round = 0; round < 40; ++round) {
    TEXPOINTS t(12000);
    std::vector<TEXPOINT> plain;
    // every fourth round asks for exact points only, as the tiles do, in a
    // space so small that most points come again
    bool exact = round % 4 == 3;
    int spread = exact ? 25 : round % 2 ? 200 : 3000;
    std::uniform_int_distribution<int> coord(-spread, spread);
    std::uniform_int_distribution<int> tol(0, 12);
    for (int i = 0; i < 3000; ++i) {
      int x = coord(rng), y = coord(rng) / 50, z = coord(rng), tolerance = exact ? 0 : i % 3 ? 5 : tol(rng);
      if (i % 500 == 499) {  // owners change points in place too
        auto all = t.EditAll();
        all[0].x += 3;
        plain[0].x += 3;
      }
      if (i % 37 == 20 && !plain.empty()) {
        // into and out of the middle of a cell's chain: next to a point added last, or on
        // to it, where the lowest of equal points must answer and hand its place on when it leaves
        std::size_t which = static_cast<std::size_t>(rng() % plain.size());
        TEXPOINT moved{plain.back().x + i % 3, plain.back().y, plain.back().z};
        t.SetPoint(static_cast<std::int32_t>(which), moved);
        plain[which] = moved;
      }
      std::int32_t expected = -1;
      for (std::size_t n = 0; n < plain.size(); ++n) {
        if (WithinTolerance(plain[n], x, y, z, tolerance)) {
          expected = static_cast<std::int32_t>(n);
          break;
        }
      }
      if (expected == -1) {
        expected = static_cast<std::int32_t>(plain.size());
        plain.push_back({x, y, z});
      }
      ASSERT_EQ(t.Add(x, y, z, tolerance), expected) << "round " << round << " add " << i;
    }
  }
}

// Every polygon comes back as it went in, last first, whatever its fields:
// flat ones of no attribute (kept short), lights, odd normals, counts outside
// the vertex table; over many blocks.
TEST(TextureListTest, ReadsBackEveryFieldLastFirst) {
  std::mt19937 rng(5);
  TextureList list;
  struct Kept {
    std::int32_t count, nx, ny, nz, attr;
    std::vector<std::int32_t> points;
  };
  std::vector<Kept> kept;
  TEXTURE t;
  for (int i = 0; i < 100000; ++i) {
    int kind = static_cast<int>(rng() % 6);
    std::int32_t count = kind == 4 ? 300 : (kind == 5 ? -1 : static_cast<std::int32_t>(2 + rng() % 5));
    t.SetFlat(count, kind == 1 ? static_cast<std::int32_t>(rng() % 65536) : 0);
    if (kind == 2) t.normalX = 1;
    if (kind == 3) t.normalY = -32767;
    Kept k{t.count, t.normalX, t.normalY, t.normalZ, t.attr, {}};
    for (std::int32_t v = 0; v < std::clamp(count, 0, TEXTURE::kMaxVerts); ++v) {
      t.verts[static_cast<std::size_t>(v)].point = static_cast<std::int32_t>(rng()) & 0x7FFFFFFF;
      k.points.push_back(t.verts[static_cast<std::size_t>(v)].point);
    }
    ASSERT_EQ(list.Add(t), 1);
    kept.push_back(std::move(k));
  }
  EXPECT_EQ(list.size(), kept.size());
  std::size_t at = kept.size();
  for (const TEXTURE* p = list.First(); p; p = list.Next()) {
    ASSERT_GT(at, 0u);
    const Kept& k = kept[--at];
    ASSERT_EQ(p->count, k.count) << at;
    ASSERT_EQ(p->normalX, k.nx) << at;
    ASSERT_EQ(p->normalY, k.ny) << at;
    ASSERT_EQ(p->normalZ, k.nz) << at;
    ASSERT_EQ(p->attr, k.attr) << at;
    for (std::size_t v = 0; v < k.points.size(); ++v) ASSERT_EQ(p->verts[v].point, k.points[v]) << at;
  }
  EXPECT_EQ(at, 0u);
}

}  // namespace
}  // namespace bgr
