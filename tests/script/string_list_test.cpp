#include "script/string_list.h"

#include <gtest/gtest.h>

#include "script/text_file.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

TEST(StringList, CapacityRuleNeverUsesTheLastByte) {
  bgrtest::TestRun run;
  STRING_LIST l(run.ctx);
  ASSERT_TRUE(l.Create(10));
  EXPECT_EQ(l.Add("sixsix"), 0);  // 0 + 6 + 3 < 10
  EXPECT_EQ(l.used(), 9);
  EXPECT_EQ(l.Add(""), -1);  // 9 + 0 + 3 is not below 10
  EXPECT_EQ(l.Add("z"), -1);
  EXPECT_EQ(run.console.Take(), "ERROR: STRING_LIST::Add() failed, 0 1\n\n");  // once per fill
  EXPECT_TRUE(l.Create(10));  // same size: cleared, warned again after that
  EXPECT_EQ(l.count(), 0);
}

}  // namespace
}  // namespace bgr
