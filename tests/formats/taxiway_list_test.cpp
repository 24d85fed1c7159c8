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

TEST_F(TaxiwayListTest, SaveThatCannotOpenItsFileFailsAndWritesNothing) {
  list.points.Add(0, 0, 0, -1);
  list.points.Add(100, 0, 0, -1);
  list.edges[0] = TaxiwayEdge{0, 1, 50, 1, 0};
  list.edgeCount = 1;
  EXPECT_EQ(list.Save("no-such-folder/A.BGR"), 0);
  BgrFile file;
  EXPECT_FALSE(file.OpenReplace(run.ctx, "no-such-folder/B.BGR"));
  EXPECT_FALSE(file.Close());  // the open failed: nothing reached the disk
  EXPECT_FALSE(dir.Exists("no-such-folder"));
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
