#include "platform/path_text.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

struct ExtensionCase {
  std::string name, ext, expected;
};

TEST(PathText, SetExtensionKeepsTheSystemsQuirks) {
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

TEST(PathText, PathParts) {
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

}  // namespace
}  // namespace platform
