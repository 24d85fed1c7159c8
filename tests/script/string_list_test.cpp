#include "script/string_list.h"

#include <gtest/gtest.h>

#include "script/text_file.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

TEST(StringList, KeepsOrderAndDropsCaseDuplicates) {
  bgrtest::TestRun run;
  STRING_LIST l(run.ctx);
  EXPECT_EQ(l.Add("x"), -1);  // no block yet
  ASSERT_TRUE(l.Create(1000));
  EXPECT_EQ(l.Add("Alpha"), 0);
  EXPECT_EQ(l.Add("beta"), 1);
  EXPECT_EQ(l.Add("ALPHA"), 0);
  EXPECT_EQ(l.count(), 2);
  EXPECT_EQ(l.Get(0), "Alpha");
  EXPECT_EQ(l.Get(2), "");
  EXPECT_EQ(l.Get(-1), "");
  EXPECT_EQ(l.Find("BETA", 0, 0), 1);
  EXPECT_EQ(l.Find("BETA", 0, 2), -1);
  EXPECT_EQ(l.Find("ALPHORN", 4, 0), 0);
  EXPECT_EQ(l.FindPrefix("gamma", 0), -1);
  EXPECT_EQ(l.Add(std::string(4093, 'x')), 0);  // too long for an entry: refused with 0
  EXPECT_EQ(l.count(), 2);
}

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

TEST(StringList, LoadDropsBlankLinesAndWalksByPrefix) {
  bgrtest::TempDir dir;
  dir.Write("l.txt", "<bgr-a> 1\n\n<BGR-b>\nplain\n<bgr-A> 1\n<bgr-c>\r\nlast");
  bgrtest::TestRun run;
  STRING_LIST l(run.ctx);
  l.Create(10240);
  EXPECT_EQ(l.Load(dir / "l.txt"), 5);
  std::int32_t index = 0;
  auto first = l.First("<bgr-", &index);
  ASSERT_TRUE(first);
  EXPECT_EQ(*first, "a> 1");
  EXPECT_EQ(index, 0);
  auto next = STRING_LIST::Next(run.ctx, &index);
  ASSERT_TRUE(next);
  EXPECT_EQ(*next, "c>\r");  // case counts in the prefix; a carriage return stays
  EXPECT_EQ(index, 3);
  EXPECT_FALSE(STRING_LIST::Next(run.ctx, &index));
  EXPECT_EQ(index, -1);
  EXPECT_FALSE(l.First("none", &index));
  EXPECT_EQ(l.Load(dir / "missing.txt"), -1);
}

}  // namespace
}  // namespace bgr
