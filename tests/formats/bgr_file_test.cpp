#include "formats/bgr_file.h"

#include <gtest/gtest.h>

#include "geometry/texpoints.h"
#include "support/bgr_builder.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

using bgrtest::BgrBuilder;

TEST(WidthCode, EncodesWithClampAndDecodesTowardZero) {
  EXPECT_EQ(EncodeWidth(10), 16904);
  EXPECT_EQ(EncodeWidth(1000), 18120);
  EXPECT_EQ(EncodeWidth(26), 16906);
  EXPECT_EQ(DecodeWidth(16906), 25);  // 26 doesn't come back
  EXPECT_EQ(DecodeWidth(16839), 0);   // -50 / 128 cuts toward zero
}

class BgrFileTest : public ::testing::Test {
 protected:
  bgrtest::TempDir dir;
  bgrtest::TestRun run;
  RunContext& ctx = run.ctx;
  std::string Path(const char* name) { return dir / name; }
};

TEST_F(BgrFileTest, WritesTheLayoutByteForByte) {
  BgrFile f;
  ASSERT_TRUE(f.OpenWrite(ctx, Path("w.bgr")));
  f.WriteOrigin({171000.5, -441000.25, 0.0});
  TEXPOINTS pts;
  pts.Add(1, 2, 3, -1);
  pts.Add(-4, 0, 7, -1);
  f.WriteNodes(pts, -1, -1);
  f.WriteNode({9, 9, 9}, true, true);
  EXPECT_TRUE(f.WriteEdge({0, 1, 100, 1, 0, 0x1000F}));  // only the low 16 flag bits go
  EXPECT_TRUE(f.WriteEdge({1, 2, 999, 0, 17000, 3}));    // a packed code goes unchanged
  EXPECT_FALSE(f.WriteEdge({1, 2, 50, 100, 0, 3}));      // other types never reach the file
  EXPECT_TRUE(f.WriteEdge({2, 0, 10, 1, 0, 0}));         // 10 ft is clamped to 25
  EXPECT_TRUE(f.Close());
  BgrBuilder b;
  b.Origin(171000.5, -441000.25).Node(1, 2, 3).Node(-4, 0, 7).Node(9, 9, 9, true, true);
  b.Edge(0, 1, 17096, 15, 1).Edge(1, 2, 17000, 3, 0).Edge(2, 0, 16904, 0, 1).End();
  EXPECT_EQ(dir.Read("w.bgr"), b.data);
}

TEST_F(BgrFileTest, AFailedTagLeavesTheStreamWhereItWas) {
  dir.Write("n.bgr", BgrBuilder().Tag("<bgno>").Tag("<node>").data);
  BgrFile f;
  ASSERT_TRUE(f.OpenRead(ctx, Path("n.bgr")));
  OriginRecord origin;
  EXPECT_FALSE(f.ReadOrigin(origin));
  EXPECT_FALSE(f.ReadTag("<nodX>"));
  EXPECT_TRUE(f.ReadTag("<node>"));
  EXPECT_FALSE(f.ReadTag("<endo>"));  // the end of the file is a difference too
  dir.Write("not.bgr", "hello");
  BgrFile g;
  EXPECT_FALSE(g.OpenRead(ctx, Path("not.bgr")));
  EXPECT_TRUE(g.IsOpen());  // the stream stays open and must still be closed
}

}  // namespace
}  // namespace bgr
