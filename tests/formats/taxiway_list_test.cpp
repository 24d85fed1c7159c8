#include "formats/taxiway_list.h"

#include <gtest/gtest.h>

#include "formats/bgr_file.h"

#include "support/bgr_builder.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

using bgrtest::BgrBuilder;

class TaxiwayListTest : public ::testing::Test {
 protected:
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in{dir.path()};
  bgrtest::TestRun run;
  TaxiwayList list{run.ctx};
};

// A network that stops before its end loads in part; standard error says at
// which byte, and a whole one says nothing.
TEST_F(TaxiwayListTest, LoadSaysWhereADamagedNetworkStops) {
  BgrBuilder b;
  b.Origin(0, 0).Node(0, 0, 0).Node(100, 0, 0).Edge(0, 1, 17032, 15, 1).End();
  dir.Write("whole.bgr", b.data);
  ASSERT_EQ(list.Load("whole.bgr", 0), 1);
  EXPECT_EQ(run.diagnostics.Take(), "");
  // cut inside the edge: its leading tag and numbers read, the rest missing; the
  // edge record begins behind the header (7), the origin (35) and two nodes (52 each)
  std::string cut = b.data.substr(0, 7 + 35 + 2 * 52 + 7 + 8);
  dir.Write("cut.bgr", cut);
  ASSERT_EQ(list.Load("cut.bgr", 0), 1);
  EXPECT_EQ(list.points.count(), 2);
  EXPECT_EQ(run.diagnostics.Take(), "bgrtool: warning: 'cut.bgr': the file is cut short at byte 161, inside a record\n");
  dir.Write("tail.bgr", b.data + "junk");
  ASSERT_EQ(list.Load("tail.bgr", 0), 1);
  EXPECT_EQ(run.diagnostics.Take(), "bgrtool: warning: 'tail.bgr': the reading stopped at byte " +
                                        std::to_string(b.data.size()) + " of " + std::to_string(b.data.size() + 4) +
                                        "; what follows is not read\n");
}

TEST_F(TaxiwayListTest, ReadPlyMergesAndShiftsPoints) {
  dir.Write("p.bgr", "");
  dir.Write("p.PLY",
            "ORG 1 2\nPOI 0 0\nPOI 10 0\nPOI 10 10\nPOI 0 0\nPLY \"closed\"\nPOI 5\n  POI 1 1\nPLY \"x\"\n"
            "LGT 1 2 3 4\nLGT 7 8 9\nEXI\nPOI 1 1\nPLY \"hidden\"\n");
  list.Load("p.bgr", 0);
  TEXPOINTS pts;
  TEXTURE tex;
  ASSERT_TRUE(list.ReadPly(pts, tex, 0));
  ASSERT_EQ(tex.count, 4);
  EXPECT_EQ(tex.verts[3].point, 0);  // shares the first point's index
  EXPECT_FALSE(list.ReadPly(pts, tex, 0));  // only a POI with one number and an indented one
  EXPECT_FALSE(list.ReadPly(pts, tex, 0));  // EXI hides the rest

  ASSERT_TRUE(list.RewindPly());
  pts.SetCount(0);
  ASSERT_TRUE(list.ReadPly(pts, tex, -1));
  EXPECT_EQ(tex.verts[3].point, 3);
  EXPECT_EQ(pts[3].x, 1);  // shifted by 1 in x
  EXPECT_EQ(pts[3].z, 0);
  EXPECT_NE(run.console.Take().find("WARNING:TaxiwayList::ReadPly() shifting points\n"), std::string::npos);

  ASSERT_TRUE(list.RewindPly());
  std::int32_t kind, x1, z1, x2, z2, count;
  ASSERT_EQ(list.ReadLgt(&kind, &x1, &z1, &x2, &z2, &count), 1);  // the four-number line is passed over
  EXPECT_EQ(kind, 7);
  EXPECT_EQ(x2, 8);
  EXPECT_EQ(z2, 9);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(list.ReadLgt(&kind, &x1, &z1, &x2, &z2, &count), 0);
}

TEST_F(TaxiwayListTest, ReadPlyGivesUpAfterTenTries) {
  std::string ply;
  // every point from (0,0) on the shifting path is taken already
  const int path[10][2] = {{0, 0}, {1, 0}, {1, 1}, {2, 1}, {2, 2}, {3, 2}, {3, 3}, {4, 3}, {4, 4}, {5, 4}};
  for (auto& p : path) ply += "POI " + std::to_string(p[0]) + " " + std::to_string(p[1]) + "\n";
  ply += "POI 0 0\nPLY \"x\"\n";
  dir.Write("t.PLY", ply);
  list.Load("t.bgr", 0);
  TEXPOINTS pts;
  TEXTURE tex;
  ASSERT_TRUE(list.ReadPly(pts, tex, -1));
  ASSERT_EQ(tex.count, 11);
  EXPECT_EQ(tex.verts[10].point, 9);  // the tenth try's point, (5, 4)
}

TEST_F(TaxiwayListTest, ReadPlyStopsAt255Points) {
  std::string ply;
  for (int i = 0; i < 255; ++i) ply += "POI " + std::to_string(i) + " 0\n";
  ply += "PLY \"big\"\nPOI 1 1\nPOI 2 2\nPOI 3 1\nPLY \"after\"\n";
  dir.Write("m.PLY", ply);
  list.Load("m.bgr", 0);
  TEXPOINTS pts;
  TEXTURE tex;
  ASSERT_TRUE(list.ReadPly(pts, tex, 0));
  EXPECT_EQ(tex.count, 255);
  EXPECT_FALSE(list.ReadPly(pts, tex, 0));  // meets the PLY line with no points
  EXPECT_NE(run.console.Take().find("ERROR: TaxiwayList::ReadPly - too many points 0 0\n"), std::string::npos);
}


TEST(WidthCode, EncodesWithClampAndDecodesTowardZero) {
  EXPECT_EQ(EncodeWidth(10), 16904);
  EXPECT_EQ(EncodeWidth(1000), 18120);
  EXPECT_EQ(EncodeWidth(26), 16906);
  EXPECT_EQ(DecodeWidth(16906), 25);  // 26 doesn't come back
  EXPECT_EQ(DecodeWidth(16839), 0);   // -50 / 128 cuts toward zero
}
}  // namespace
}  // namespace bgr
