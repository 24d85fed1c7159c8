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

TEST_F(BgrFileTest, CopyKeepsEveryByteThroughFlowMarksAndNply) {
  BgrBuilder b;
  b.Origin(1, 2, 3).Node(1, 2, 3, true, true).Node(4, 5, 6).Edge(0, 1, 16907, 0xABCD, 1, true).Edge(1, 0, 16904, 1, 0);
  dir.Write("in.bgr", b.End().data);
  BgrFile in, out;
  ASSERT_TRUE(in.OpenRead(ctx, Path("in.bgr")));
  out.OpenWrite(ctx, Path("out.bgr"));
  OriginRecord origin;
  NodeRecord node;
  EdgeRecord edge;
  ASSERT_TRUE(in.ReadOrigin(origin));
  out.WriteOrigin(origin);
  while (in.ReadNode(node)) out.WriteNode(node, true, true);
  while (in.ReadEdge(edge)) out.WriteEdge(edge);
  EXPECT_TRUE(in.ReadTag("<endo>"));
  EXPECT_TRUE(out.Close());
  BgrBuilder want;
  want.Origin(1, 2, 3).Node(1, 2, 3, true, true).Node(4, 5, 6, true, true);
  want.Edge(0, 1, 16907, 0xABCD, 1).Edge(1, 0, 16904, 1, 0).End();  // <nply> is read over, never written
  EXPECT_EQ(dir.Read("out.bgr"), want.data);
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

// A record cut by the end of the file keeps what the record held before: a
// fresh record is all zeros, a later one the values of the one before it.
TEST_F(BgrFileTest, CutRecordsReadTheSameOnEveryRun) {
  dir.Write("node.bgr", BgrBuilder().Tag("<bgno>").Tag("<node>").Tag("<bgno>").Tag("<vloc>").Raw("\x01\x02").data);
  BgrFile f;
  ASSERT_TRUE(f.OpenRead(ctx, Path("node.bgr")));
  NodeRecord node;
  ASSERT_TRUE(f.ReadNode(node));
  EXPECT_EQ(node.x, 0.0);
  EXPECT_EQ(node.z, 0.0);

  BgrBuilder b;
  b.Origin(5, 6, 7).Edge(1, 2, 17096, 3, 1).Tag("<edge>").Raw(std::string("\x09\0\0\0", 4));
  dir.Write("edge.bgr", b.data);
  BgrFile g;
  ASSERT_TRUE(g.OpenRead(ctx, Path("edge.bgr")));
  OriginRecord origin;
  EXPECT_TRUE(g.ReadOrigin(origin));
  EdgeRecord edge;
  ASSERT_TRUE(g.ReadEdge(edge));
  ASSERT_TRUE(g.ReadEdge(edge));
  EXPECT_EQ(edge.from, 9);
  EXPECT_EQ(edge.to, 2);
  EXPECT_EQ(edge.packed, 17096);

  std::string origin5 = BgrBuilder().Origin(5, 6, 7).data;
  dir.Write("origin.bgr", origin5.substr(0, origin5.size() - 1));  // cut in its last word
  BgrFile h;
  ASSERT_TRUE(h.OpenRead(ctx, Path("origin.bgr")));
  OriginRecord o;
  EXPECT_TRUE(h.ReadOrigin(o));  // the record is there, so a merge keeps it
  EXPECT_EQ(o.third, 7);
}

TEST_F(BgrFileTest, CloseReportsAWriteThatDidNotReachTheDisk) {
  BgrFile f;
  ASSERT_TRUE(f.OpenWrite(ctx, "/dev/full"));
  f.WriteOrigin({1, 2, 3});
  EXPECT_FALSE(f.Close());
  EXPECT_EQ(run.console.Take(), "ERROR: BgrFile cannot write '/dev/full': No space left on device\n");
}

}  // namespace
}  // namespace bgr
