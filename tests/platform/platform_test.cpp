#include "platform/platform.h"

#include "platform/path_text.h"

#include <gtest/gtest.h>

#include <cerrno>
#if !defined(_WIN32)
#include <unistd.h>
#endif

#include "support/temp_dir.h"

namespace {

TEST(Platform, BackslashPathsFindFilesWhateverTheirCase) {
  bgrtest::CurrentTempDir dir;
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
  bgrtest::CurrentTempDir dir;
  dir.Write("_TEMP_.BGR", "new");
  dir.Write("sub/a.bgr", "old");
  EXPECT_TRUE(platform::MoveFile("_TEMP_.BGR", "SUB\\A.BGR"));
  EXPECT_EQ(dir.Read("sub/a.bgr"), "new");
  EXPECT_FALSE(dir.Exists("_TEMP_.BGR"));
  EXPECT_FALSE(platform::MoveFile("_TEMP_.BGR", "sub\\a.bgr"));
  EXPECT_EQ(dir.Read("sub/a.bgr"), "new");
}

#if !defined(_WIN32)
// What the look-up finds in the odd places: a file in the place of a folder,
// links that lead nowhere, two spellings of one name, a file made behind the
// program's back after the folder was listed.
TEST(Platform, LookUpsAgreeWithTheFolderWalkInOddPlaces) {
  bgrtest::CurrentTempDir dir;
  dir.Write("data/ksea.bgr", "x");
  dir.Write("data/Two.bgr", "1");
  dir.Write("data/two.bgr", "2");
  ASSERT_EQ(::symlink("nowhere", (dir / "data/dangling").c_str()), 0);
  ASSERT_EQ(::symlink("ksea.bgr", (dir / "data/link").c_str()), 0);
  EXPECT_EQ(platform::NativePath("DATA\\KSEA.BGR\\X"), "data/ksea.bgr/X");
  EXPECT_EQ(platform::NativePath("DATA\\DANGLING"), "data/dangling");
  EXPECT_EQ(platform::NativePath("data//two.BGR"), "data/Two.bgr");  // the first in name order
  EXPECT_EQ(platform::NativePath("data/two.bgr"), "data/two.bgr");    // as written, when it exists
  EXPECT_EQ(platform::NativePath("DATA\\"), "data/");
  EXPECT_EQ(platform::KindOf("DATA\\LINK"), platform::PathKind::kRegular);
  EXPECT_EQ(platform::KindOf("DATA\\DANGLING"), platform::PathKind::kMissing);
  EXPECT_EQ(platform::KindOf("DATA"), platform::PathKind::kDirectory);
  EXPECT_EQ(platform::NativePath("DATA\\LATE.BGR"), "data/LATE.BGR");
  dir.Write("data/late.bgr", "made by another program");
  EXPECT_EQ(platform::NativePath("DATA\\LATE.BGR"), "data/late.bgr");
  errno = 0;
  EXPECT_EQ(platform::OpenFile("DATA\\GONE.BGR", "rb"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(platform::KindOf("DATA\\GONE.BGR"), platform::PathKind::kMissing);
  // a move on to a link replaces the file it points to
  dir.Write("data/new.part", "new");
  EXPECT_TRUE(platform::MoveFile("DATA\\NEW.PART", "DATA\\LINK"));
  EXPECT_EQ(dir.Read("data/ksea.bgr"), "new");
  EXPECT_EQ(platform::NativePath("DATA\\NEW.PART"), "data/NEW.PART");
}
#endif

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
