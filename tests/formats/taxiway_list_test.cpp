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
  bgrtest::CurrentTempDir dir;
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

TEST(WidthCode, EncodesWithClampAndDecodesTowardZero) {
  EXPECT_EQ(EncodeWidth(10), 16904);
  EXPECT_EQ(EncodeWidth(1000), 18120);
  EXPECT_EQ(EncodeWidth(26), 16906);
  EXPECT_EQ(DecodeWidth(16906), 25);  // 26 doesn't come back
  EXPECT_EQ(DecodeWidth(16839), 0);   // -50 / 128 cuts toward zero
}
}  // namespace
}  // namespace bgr
