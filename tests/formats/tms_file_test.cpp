#include "formats/tms_file.h"

#include <gtest/gtest.h>

#include "support/bgr_builder.h"
#include "support/tms_sample.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

using bgrtest::SampleBytes;

void SetPoints(TEXPOINTS& t, std::initializer_list<TEXPOINT> pts) {
  t.SetCount(0);
  for (const TEXPOINT& p : pts) t.Add(p.x, p.y, p.z, -1);
}

void SetPolygon(TEXTURE& t, std::initializer_list<std::int32_t> verts) {
  t.count = static_cast<std::int32_t>(verts.size());
  int i = 0;
  for (std::int32_t v : verts) t.verts[i++].point = v;
}

void WriteSample(RunContext& ctx, const std::string& path) {
  TmsFile t;
  ASSERT_TRUE(t.OpenReplace(ctx, path));
  t.WriteOrigin({1, 2, 0});
  t.tileFeet = 500;
  t.lowl = {-100, 0, -200};
  t.WriteHeader();
  t.tileX = 0;
  t.tileZ = 0;
  t.WriteTile();
  SetPoints(t.points, {{2560, 0, 5120}, {0, 0, 0}, {256, 0, 0}});
  SetPolygon(t.polygon, {0, 1, 2});
  EXPECT_TRUE(t.WritePave());
  SetPolygon(t.polygon, {0, 1});
  EXPECT_FALSE(t.WriteEdmk());  // refused, but the section and its points are there
  t.lightType = 3;
  t.lightStep = 5;
  SetPoints(t.points, {{600, 0, -600}});
  EXPECT_TRUE(t.WriteLite());  // one light: no step
  t.lightStep = 7.5f;
  SetPoints(t.points, {{600, 0, 0}, {-600, 0, 512}});
  EXPECT_TRUE(t.WriteLite());
  EXPECT_TRUE(t.WriteTileEnd());
  t.tileX = 1;
  t.WriteTile();
  t.WriteTileEnd();
  t.tileX = 2;
  t.WriteTile();
  SetPoints(t.points, {});
  SetPolygon(t.polygon, {});
  EXPECT_FALSE(t.WritePave());
  t.WriteTileEnd();
  EXPECT_TRUE(t.Close());
}

class TmsFileTest : public ::testing::Test {
 protected:
  bgrtest::TempDir dir;
  bgrtest::TestRun run;
};

TEST_F(TmsFileTest, WritesTheLayoutWithBackPatchedLengths) {
  WriteSample(run.ctx, dir / "s.tms");
  EXPECT_EQ(dir.Read("s.tms"), SampleBytes());
}

TEST_F(TmsFileTest, PolygonSizeLimits) {
  TmsFile t;
  ASSERT_TRUE(t.OpenReplace(run.ctx, dir / "p.tms"));
  t.WriteTile();
  SetPoints(t.points, {{1, 0, 1}});
  t.polygon.count = 256;
  for (int i = 0; i < 256; ++i) t.polygon.verts[i].point = 0;
  EXPECT_TRUE(t.WriteCntr());
  t.polygon.count = 257;
  EXPECT_FALSE(t.WriteCntr());
  t.WriteTileEnd();
  EXPECT_TRUE(t.Close());
  std::string bytes = dir.Read("p.tms");
  // a record of 257 vertices on read fails: patch the count of the stored one
  std::size_t at = bytes.find(std::string("\x05\0\0\0\0\x01\0\0", 8));
  ASSERT_NE(at, std::string::npos);
  bytes[at + 4] = 1;
  bytes[at + 5] = 1;  // 257
  dir.Write("q.tms", bytes);
  TmsFile r;
  ASSERT_TRUE(r.OpenRead(run.ctx, dir / "q.tms"));
  ASSERT_TRUE(r.ReadTile());
  EXPECT_FALSE(r.ReadCntr());
}

// A section longer than the writer keeps in memory has its length patched on
// the disk, and what follows it lands after it.
TEST_F(TmsFileTest, LengthsOfSectionsLargerThanTheWriteBuffer) {
  TmsFile t;
  ASSERT_TRUE(t.OpenReplace(run.ctx, dir / "big.tms"));
  constexpr int kPolygons = 40000;  // 36 bytes each: about 1.4 MB
  for (std::int32_t tile = 0; tile < 2; ++tile) {
    t.tileX = tile;
    t.WriteTile();
    SetPoints(t.points, {{1, 0, 1}, {2, 0, 2}, {3, 0, 1}});
    SetPolygon(t.polygon, {0, 1, 2});
    for (int i = 0; i < (tile == 0 ? kPolygons : 1); ++i) ASSERT_TRUE(t.WritePave());
    t.WriteTileEnd();
  }
  ASSERT_TRUE(t.Close());
  std::string bytes = dir.Read("big.tms");
  auto lengthAfter = [&](std::size_t tag) {
    std::uint32_t v = 0;
    for (int i = 3; i >= 0; --i) v = v << 8 | static_cast<unsigned char>(bytes[tag + 7 + static_cast<std::size_t>(i)]);
    return static_cast<std::size_t>(v);
  };
  std::size_t first = bytes.find("<pave>");
  ASSERT_NE(first, std::string::npos);
  // length word, 4 fixed words, the point list of 3, the records, the closing word
  EXPECT_EQ(lengthAfter(first), 16 + 4 + 36 + kPolygons * 36u + 4);
  EXPECT_EQ(bytes.compare(first + 7 + 4 + lengthAfter(first), 7, std::string("<endo>\0", 7)), 0);
  std::size_t second = bytes.find("<pave>", first + 7 + lengthAfter(first));
  ASSERT_NE(second, std::string::npos);
  EXPECT_EQ(lengthAfter(second), 16 + 4 + 36 + 36u + 4);
  EXPECT_EQ(bytes.compare(second + 7 + 4 + lengthAfter(second), 7, std::string("<endo>\0", 7)), 0);
}

}  // namespace
}  // namespace bgr
