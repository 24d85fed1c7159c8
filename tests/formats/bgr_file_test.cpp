#include "formats/bgr_file.h"

#include <gtest/gtest.h>

namespace bgr {
namespace {

TEST(WidthCode, EncodesWithClampAndDecodesTowardZero) {
  EXPECT_EQ(EncodeWidth(10), 16904);
  EXPECT_EQ(EncodeWidth(1000), 18120);
  EXPECT_EQ(EncodeWidth(26), 16906);
  EXPECT_EQ(DecodeWidth(16906), 25);  // 26 doesn't come back
  EXPECT_EQ(DecodeWidth(16839), 0);   // -50 / 128 cuts toward zero
}

}  // namespace
}  // namespace bgr
