#include "formats/ply_reader.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

class PlyReaderTest : public ::testing::Test {
 protected:
  bgrtest::CurrentTempDir dir;
  bgrtest::TestRun run;
  PlyReader ply{run.ctx};
  TEXPOINTS pts;
  TEXTURE tex;
};

TEST_F(PlyReaderTest, ReadPlyMergesAndShiftsPoints) {
  dir.Write("p.PLY",
            "ORG 1 2\nPOI 0 0\nPOI 10 0\nPOI 10 10\nPOI 0 0\nPLY \"closed\"\nPOI 5\n  POI 1 1\nPLY \"x\"\n"
            "LGT 1 2 3 4\nLGT 7 8 9\nEXI\nPOI 1 1\nPLY \"hidden\"\n");
  ASSERT_TRUE(ply.Open("p.PLY"));
  ASSERT_TRUE(ply.ReadPly(pts, tex, 0));
  ASSERT_EQ(tex.count, 4);
  EXPECT_EQ(tex.verts[3].point, 0);  // shares the first point's index
  EXPECT_FALSE(ply.ReadPly(pts, tex, 0));  // only a POI with one number and an indented one
  EXPECT_FALSE(ply.ReadPly(pts, tex, 0));  // EXI hides the rest

  ply.Rewind();
  pts.SetCount(0);
  ASSERT_TRUE(ply.ReadPly(pts, tex, -1));
  EXPECT_EQ(tex.verts[3].point, 3);
  EXPECT_EQ(pts[3].x, 1);  // shifted by 1 in x
  EXPECT_EQ(pts[3].z, 0);
  EXPECT_NE(run.console.Take().find("WARNING:TaxiwayList::ReadPly() shifting points\n"), std::string::npos);

  ply.Rewind();
  std::int32_t kind, x1, z1, x2, z2, count;
  ASSERT_EQ(ply.ReadLgt(&kind, &x1, &z1, &x2, &z2, &count), 1);  // the four-number line is passed over
  EXPECT_EQ(kind, 7);
  EXPECT_EQ(x2, 8);
  EXPECT_EQ(z2, 9);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(ply.ReadLgt(&kind, &x1, &z1, &x2, &z2, &count), 0);
}

TEST_F(PlyReaderTest, ReadPlyGivesUpAfterTenTries) {
  std::string text;
  // every point from (0,0) on the shifting path is taken already
  const int path[10][2] = {{0, 0}, {1, 0}, {1, 1}, {2, 1}, {2, 2}, {3, 2}, {3, 3}, {4, 3}, {4, 4}, {5, 4}};
  for (auto& p : path) text += "POI " + std::to_string(p[0]) + " " + std::to_string(p[1]) + "\n";
  text += "POI 0 0\nPLY \"x\"\n";
  dir.Write("t.PLY", text);
  ASSERT_TRUE(ply.Open("t.PLY"));
  ASSERT_TRUE(ply.ReadPly(pts, tex, -1));
  ASSERT_EQ(tex.count, 11);
  EXPECT_EQ(tex.verts[10].point, 9);  // the tenth try's point, (5, 4)
}

TEST_F(PlyReaderTest, ReadPlyStopsAt255Points) {
  std::string text;
  for (int i = 0; i < 255; ++i) text += "POI " + std::to_string(i) + " 0\n";
  text += "PLY \"big\"\nPOI 1 1\nPOI 2 2\nPOI 3 1\nPLY \"after\"\n";
  dir.Write("m.PLY", text);
  ASSERT_TRUE(ply.Open("m.PLY"));
  ASSERT_TRUE(ply.ReadPly(pts, tex, 0));
  EXPECT_EQ(tex.count, 255);
  EXPECT_FALSE(ply.ReadPly(pts, tex, 0));  // meets the PLY line with no points
  EXPECT_NE(run.console.Take().find("ERROR: TaxiwayList::ReadPly - too many points 0 0\n"), std::string::npos);
}

}  // namespace
}  // namespace bgr
