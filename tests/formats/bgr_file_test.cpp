#include "formats/bgr_file.h"

#include <gtest/gtest.h>

#include "geometry/texpoints.h"
#include "support/bgr_builder.h"
#include "support/temp_dir.h"

namespace bgr {
namespace {

using bgrtest::BgrBuilder;

TEST(WidthCode, EncodesWithClampAndDecodesTowardZero) {
  EXPECT_EQ(EncodeWidth(25), 16904);
  EXPECT_EQ(EncodeWidth(500), 18120);
  EXPECT_EQ(EncodeWidth(10), 16904);
  EXPECT_EQ(EncodeWidth(1000), 18120);
  EXPECT_EQ(EncodeWidth(26), 16906);
  EXPECT_EQ(DecodeWidth(16906), 25);  // 26 doesn't come back
  EXPECT_EQ(DecodeWidth(17096), 100);
  EXPECT_EQ(DecodeWidth(16839), 0);   // -50 / 128 cuts toward zero
}

class BgrFileTest : public ::testing::Test {
 protected:
  bgrtest::TempDir dir;
  std::string Path(const char* name) { return dir / name; }
};

TEST_F(BgrFileTest, WritesTheLayoutByteForByte) {
  BgrFile f;
  ASSERT_TRUE(f.OpenWrite(Path("w.bgr")));
  f.WriteOrigin(171000.5, -441000.25, 0.0);
  TEXPOINTS pts;
  pts.Add(1, 2, 3, -1);
  pts.Add(-4, 0, 7, -1);
  f.WriteNodes(pts, -1, -1);
  f.WriteNode(9, 9, 9, true, true);
  EXPECT_TRUE(f.WriteEdge(0, 1, 100, 1, 0, 0x1000F));   // only the low 16 flag bits go
  EXPECT_TRUE(f.WriteEdge(1, 2, 999, 0, 17000, 3));     // a packed code goes unchanged
  EXPECT_FALSE(f.WriteEdge(1, 2, 50, 100, 0, 3));       // other types never reach the file
  EXPECT_TRUE(f.WriteEdge(2, 0, 10, 1, 0, 0));          // 10 ft is clamped to 25
  f.Close();
  BgrBuilder b;
  b.Origin(171000.5, -441000.25).Node(1, 2, 3).Node(-4, 0, 7).Node(9, 9, 9, true, true);
  b.Edge(0, 1, 17096, 15, 1).Edge(1, 2, 17000, 3, 0).Edge(2, 0, 16904, 0, 1).End();
  EXPECT_EQ(dir.Read("w.bgr"), b.data);
}

TEST_F(BgrFileTest, ReadsOverFlowMarksAndNply) {
  BgrBuilder b;
  b.Origin(1, 2, 3).Node(1, 2, 3, true, true).Node(4, 5, 6).Edge(0, 1, 17096, 7, 1, true).Edge(1, 0, 16904, 1, 0).End();
  dir.Write("r.bgr", b.data);
  BgrFile f;
  ASSERT_TRUE(f.OpenRead(Path("r.bgr")));
  double lat, lon, third, x, y, z;
  ASSERT_TRUE(f.ReadOrigin(&lat, &lon, &third));
  EXPECT_EQ(third, 3);
  ASSERT_TRUE(f.ReadNode(&x, &y, &z));
  ASSERT_TRUE(f.ReadNode(&x, &y, &z));
  EXPECT_EQ(z, 6);
  EXPECT_FALSE(f.ReadNode(&x, &y, &z));
  std::int32_t from, to, width, type, packed, flags;
  ASSERT_TRUE(f.ReadEdge(&from, &to, &width, &type, &packed, &flags));
  EXPECT_EQ(packed, 17096);
  EXPECT_EQ(width, 100);
  EXPECT_EQ(flags, 7);
  ASSERT_TRUE(f.ReadEdge(&from, &to, &width, &type, &packed, &flags));
  EXPECT_EQ(from, 1);
  EXPECT_EQ(type, 0);
  EXPECT_FALSE(f.ReadEdge(&from, &to, &width, &type, &packed, &flags));
  EXPECT_TRUE(f.ReadTag("<endo>"));
}

TEST_F(BgrFileTest, AFailedTagLeavesTheStreamWhereItWas) {
  dir.Write("n.bgr", BgrBuilder().Tag("<bgno>").Tag("<node>").data);
  BgrFile f;
  ASSERT_TRUE(f.OpenRead(Path("n.bgr")));
  double lat, lon, third;
  EXPECT_FALSE(f.ReadOrigin(&lat, &lon, &third));
  EXPECT_FALSE(f.ReadTag("<nodX>"));
  EXPECT_FALSE(f.ReadTag("<node>x"));
  EXPECT_TRUE(f.ReadTag("<node>"));
  EXPECT_FALSE(f.ReadTag("<endo>"));  // the end of the file is a difference too
  EXPECT_TRUE(f.Close());
  EXPECT_TRUE(f.Close());
}

TEST_F(BgrFileTest, EmptyNetworkAndMissingFiles) {
  dir.Write("e.bgr", BgrBuilder().Origin(0, 0).End().data);
  BgrFile f;
  ASSERT_TRUE(f.OpenRead(Path("e.bgr")));
  double a, b, c;
  std::int32_t i[6];
  ASSERT_TRUE(f.ReadOrigin(&a, &b, &c));
  EXPECT_FALSE(f.ReadNode(&a, &b, &c));
  EXPECT_FALSE(f.ReadEdge(&i[0], &i[1], &i[2], &i[3], &i[4], &i[5]));
  EXPECT_TRUE(f.ReadTag("<endo>"));
  BgrFile g;
  EXPECT_FALSE(g.OpenRead(Path("missing.bgr")));
  EXPECT_FALSE(g.ReadNode(&a, &b, &c));
  EXPECT_FALSE(g.WriteTag("<x>"));
  dir.Write("not.bgr", "hello");
  EXPECT_FALSE(g.OpenRead(Path("not.bgr")));
  EXPECT_TRUE(g.IsOpen());  // the stream stays open and must still be closed
}

TEST_F(BgrFileTest, CopyingKeepsTheThicknessWord) {
  BgrBuilder b;
  b.Origin(5, 6).Node(1, 1, 1).Node(2, 2, 2).Edge(0, 1, 16907, 0xABCD, 1).End();
  dir.Write("in.bgr", b.data);
  BgrFile in, out;
  ASSERT_TRUE(in.OpenRead(Path("in.bgr")));
  out.OpenWrite(Path("out.bgr"));
  double x, y, z;
  in.ReadOrigin(&x, &y, &z);
  out.WriteOrigin(x, y, z);
  while (in.ReadNode(&x, &y, &z)) out.WriteNode(x, y, z, false, false);
  std::int32_t from, to, width, type, packed, flags;
  while (in.ReadEdge(&from, &to, &width, &type, &packed, &flags)) out.WriteEdge(from, to, width, type, packed, flags);
  out.Close();
  EXPECT_EQ(dir.Read("out.bgr"), b.data);
}

}  // namespace
}  // namespace bgr
