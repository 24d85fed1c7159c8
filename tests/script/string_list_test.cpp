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

TEST(StringList, IterationOverAFullListIsLinear) {
  bgrtest::TestRun run;
  STRING_LIST l(run.ctx);
  l.Create(10240);
  int added = 0;
  while (l.Add("<bgr-x" + std::to_string(added)) >= 0) ++added;
  int seen = 0;
  for (auto t = l.First("<bgr-", nullptr); t; t = STRING_LIST::Next(run.ctx, nullptr)) ++seen;
  EXPECT_EQ(seen, added);
  EXPECT_GT(added, 800);
}

TEST(TextFile, LinesAndFields) {
  bgrtest::TempDir dir;
  dir.Write("t.txt", "one two\n   \n\"a b\" 12 x\n" + std::string(300, 'q'));
  bgrtest::TestRun run;
  TextFile f;
  ASSERT_TRUE(f.OpenRead(run.ctx, dir / "t.txt"));
  ASSERT_EQ(f.ReadLine(), 1);
  EXPECT_EQ(f.SkipFields(1), 1);
  EXPECT_EQ(f.line[static_cast<std::size_t>(f.cursor)], ' ');
  EXPECT_EQ(f.SkipFields(1), 0);  // the last field has no separator behind it
  ASSERT_EQ(f.ReadLine(), 1);
  EXPECT_FALSE(f.SkipBlanks());
  EXPECT_EQ(f.cursor, 3);
  ASSERT_EQ(f.ReadLine(), 1);
  std::string field;
  ASSERT_TRUE(f.ReadField(field));
  EXPECT_EQ(field, "a b");
  std::int32_t n = 0;
  ASSERT_TRUE(f.ScanField("%d", &n, 0));
  EXPECT_EQ(n, 12);
  double d = 0;
  EXPECT_FALSE(f.ScanField("%lf", &d, 0));
  EXPECT_EQ(f.line[static_cast<std::size_t>(f.cursor)], 'x');
  ASSERT_EQ(f.ReadLine(), 1);
  EXPECT_EQ(f.line.size(), 254u);  // long lines come in pieces
  ASSERT_EQ(f.ReadLine(), 1);
  EXPECT_EQ(f.line.size(), 46u);
  EXPECT_EQ(f.ReadLine(), 0);
  EXPECT_EQ(f.lineNumber, 5);
  TextFile closed;
  EXPECT_EQ(closed.ReadLine(), 0);
}

}  // namespace
}  // namespace bgr
