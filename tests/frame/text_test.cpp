#include "frame/text.h"

#include <gtest/gtest.h>

#include <limits>

namespace bgr {
namespace {

struct ExtensionCase {
  std::string name, ext, expected;
};

TEST(Text, SetExtensionKeepsTheSystemsQuirks) {
  const ExtensionCase cases[] = {
      {"A.BGR", "TMS", "A.TMS"},
      {"NAME", "PLY", "NAME.PLY"},
      {"DATA.OLD\\NAME", "TMS", "DATA.TMS"},  // the dot search doesn't stop at a folder
      {".bgr", "TMS", ".bgr.TMS"},            // a dot in the first place isn't found
      {"a.b.c", "x", "a.b.x"},
  };
  for (const auto& c : cases) {
    std::string name = c.name;
    SetExtension(name, c.ext);
    EXPECT_EQ(name, c.expected) << c.name;
  }
}

TEST(Text, HasExtensionIgnoresCase) {
  EXPECT_TRUE(HasExtension("A.TMS", "tms"));
  EXPECT_TRUE(HasExtension("dir\\a.tMs", "TMS"));
  EXPECT_FALSE(HasExtension("A", "tms"));
  EXPECT_FALSE(HasExtension("A.TMSX", "tms"));
  EXPECT_TRUE(HasExtension("A", ""));
}

TEST(Text, PathParts) {
  EXPECT_EQ(FileNamePart("a\\b\\c.x"), "c.x");
  EXPECT_EQ(FileNamePart("c.x"), "c.x");
  EXPECT_EQ(FileNamePart("./build/bgrtool"), "bgrtool");
  std::string p = "a\\b\\c.x";
  EXPECT_EQ(StripFileName(p), "a\\b");
  p = "c.x";
  EXPECT_EQ(StripFileName(p), "");
  p = "\\c.x";
  EXPECT_EQ(StripFileName(p), "");
  EXPECT_TRUE(PathIsRooted("\\x"));
  EXPECT_TRUE(PathIsRooted("C:x"));
  EXPECT_FALSE(PathIsRooted(""));
  EXPECT_FALSE(PathIsRooted("a\\b"));
  EXPECT_EQ(FindLastInName("x.y.z", '.'), 3u);
  EXPECT_EQ(FindLastInName(".abc", '.'), 4u);
}

TEST(Text, NextTokenWalksFieldsAndQuotes) {
  std::string_view cursor = "  \"a b\" c";
  EXPECT_EQ(NextToken(cursor), "a b");
  EXPECT_EQ(NextToken(cursor), "c");
  EXPECT_EQ(NextToken(cursor), "");
  std::string_view open = " \"rest of it";
  EXPECT_EQ(NextToken(open), "rest of it");
  EXPECT_TRUE(open.empty());
  std::string_view tabbed = "\tone\ttwo";
  EXPECT_EQ(NextToken(tabbed), "one");
  EXPECT_EQ(tabbed, "\ttwo");
}

TEST(Text, FindAndCompareIgnoringCase) {
  EXPECT_EQ(FindNoCase("xxABcd", "abc", -1), 2u);
  EXPECT_EQ(FindNoCase("xxABcd", "abzz", 2), 2u);
  EXPECT_EQ(FindNoCase("xx", "abc", -1), std::string_view::npos);
  EXPECT_EQ(CompareNoCase("abc", "ABC"), 0);
  EXPECT_LT(CompareNoCase("ab", "abc"), 0);
  EXPECT_EQ(CompareNoCase("abcd", "ABzz", 2), 0);
  EXPECT_EQ(SkipPast("a:b", ':'), "b");
  EXPECT_EQ(SkipPast("ab", ':'), "");
}

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
