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
  ASSERT_TRUE(t.OpenWrite(ctx, path));
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

TEST(TmsFileTest, WritesTheLayoutWithBackPatchedLengths) {
  bgrtest::TempDir dir;
  bgrtest::TestRun run;
  WriteSample(run.ctx, dir / "s.tms");
  EXPECT_EQ(dir.Read("s.tms"), SampleBytes());
}

TEST(TmsFileTest, PolygonSizeLimits) {
  bgrtest::TempDir dir;
  bgrtest::TestRun run;
  TmsFile t;
  ASSERT_TRUE(t.OpenWrite(run.ctx, dir / "p.tms"));
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

}  // namespace
}  // namespace bgr
