#include <gtest/gtest.h>

#include <limits>

#include "frame/int32_math.h"
#include "frame/text.h"

namespace bgr {
namespace {

TEST(Text, LongArithmeticWrapsAndCuts) {
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(AbsLong(-5), 5);
  EXPECT_EQ(AbsLong(kMin), kMin);
  EXPECT_EQ(WrapAdd(kMax, 1), kMin);
  EXPECT_EQ(SafeDiv(kMin, -1), kMin);
  EXPECT_EQ(SafeDiv(7, 0), 0);
  EXPECT_EQ(SafeDiv(-7, 2), -3);
  EXPECT_EQ(TruncToLong(-3.7), -3);
  EXPECT_EQ(TruncToLong(3.7), 3);
  EXPECT_EQ(TruncToLong(1e300), kMin);
  EXPECT_EQ(TruncToLong(std::numeric_limits<double>::quiet_NaN()), kMin);
}

}  // namespace
}  // namespace bgr
