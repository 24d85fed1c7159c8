#include "platform/platform.h"

#include "platform/path_text.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace {

TEST(Platform, BackslashPathsFindFilesWhateverTheirCase) {
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in(dir.path());
  dir.Write("data/ksea.bgr", "x");
  EXPECT_EQ(platform::NativePath("DATA\\KSEA.BGR"), "data/ksea.bgr");
  EXPECT_EQ(platform::NativePath("data/KSEA.bgr"), "data/ksea.bgr");
  EXPECT_EQ(platform::NativePath("DATA\\NEW.BGR"), "data/NEW.BGR");  // new files keep the name given
  EXPECT_EQ(platform::NativePath("NOPE\\X\\Y"), "NOPE/X/Y");
  EXPECT_EQ(platform::NativePath(dir.path() + "\\DATA\\ksea.BGR"), dir.path() + "/data/ksea.bgr");
  std::FILE* f = platform::OpenFile("Data\\Ksea.Bgr", "rb");
  ASSERT_NE(f, nullptr);
  std::fclose(f);
  EXPECT_EQ(platform::OpenFile("data", "rb"), nullptr);
}

TEST(Platform, MoveReplacesTheTarget) {
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in(dir.path());
  dir.Write("_TEMP_.BGR", "new");
  dir.Write("sub/a.bgr", "old");
  EXPECT_TRUE(platform::MoveFile("_TEMP_.BGR", "SUB\\A.BGR"));
  EXPECT_EQ(dir.Read("sub/a.bgr"), "new");
  EXPECT_FALSE(dir.Exists("_TEMP_.BGR"));
  EXPECT_FALSE(platform::MoveFile("_TEMP_.BGR", "sub\\a.bgr"));
  EXPECT_EQ(dir.Read("sub/a.bgr"), "new");
}

TEST(PathText, SetExtensionKeepsTheSystemsQuirks) {
  struct Case {
    std::string name, ext, expected;
  } cases[] = {
      {"A.BGR", "TMS", "A.TMS"},
      {"NAME", "PLY", "NAME.PLY"},
      {"DATA.OLD\\NAME", "TMS", "DATA.TMS"},  // the dot search doesn't stop at a folder
      {".bgr", "TMS", ".bgr.TMS"},            // a dot in the first place isn't found
      {"a.b.c", "x", "a.b.x"},
  };
  for (const auto& c : cases) {
    std::string name = c.name;
    platform::SetExtension(name, c.ext);
    EXPECT_EQ(name, c.expected) << c.name;
  }
}

}  // namespace
