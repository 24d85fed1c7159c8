#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/options.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "platform/platform.h"
#include "support/temp_dir.h"
#include "support/test_run.h"

namespace bgr {
namespace {

TEST(ReportFormat, EachConversionShowsItsOwnValue) {
  EXPECT_EQ(FormatReportLine("a %s b %d c %ld d %s", "T", 7, 123456, "U"), "a T b 7 c 123456 d U");
  EXPECT_EQ(FormatReportLine("only %ld", "T", 7, 42, "U"), "only 42");
  EXPECT_EQ(FormatReportLine("only second %d", "T", -3, 42, "U"), "only second -3");
  EXPECT_EQ(FormatReportLine("TEXPOINTS::Add() table full %s%d %ld", "", 0, 2000, ""),
            "TEXPOINTS::Add() table full 0 2000");
  EXPECT_EQ(FormatReportLine("100%% %5d|%-3s|", "ab", 12, 0, ""), "100%    12|ab |");
}

// A written file shows under its name only whole: not while it is written,
// not after it is dropped; a file it replaces stays as it was until then.
TEST(FileAccess, AnOutputShowsUnderItsNameOnlyWhole) {
  bgrtest::CurrentTempDir dir;
  bgrtest::TestRun run;
  dir.Write("OLD.BGR", "old");
  for (const char* name : {"NEW.BGR", "OLD.BGR"}) {
    std::string before = dir.Exists(name) ? dir.Read(name) : "";
    for (bool keep : {false, true}) {
      OutputFile out;
      ASSERT_TRUE(out.Open(run.ctx, name));
      std::fputs("new", out.get());
      std::fflush(out.get());
      EXPECT_EQ(dir.Exists(name) ? dir.Read(name) : "", before) << name;
      if (keep) {
        EXPECT_EQ(out.Commit(), "") << name;
        EXPECT_EQ(dir.Read(name), "new") << name;
      } else {
        out.Drop();
        EXPECT_EQ(dir.Exists(name) ? dir.Read(name) : "", before) << name;
      }
    }
  }
  EXPECT_EQ(platform::FindEntries("*").size(), 2u);  // no part file left beside them
  // a link to a file not yet made stays a link: the new file is made where it points
  std::error_code ec;
  std::filesystem::create_symlink("made.bgr", "LINK.BGR", ec);
  if (ec) return;
  OutputFile out;
  ASSERT_TRUE(out.Open(run.ctx, "LINK.BGR"));
  std::fputs("linked", out.get());
  EXPECT_EQ(out.Commit(), "");
  EXPECT_TRUE(std::filesystem::is_symlink("LINK.BGR"));
  EXPECT_EQ(dir.Read("made.bgr"), "linked");
}

TEST(Options, WhichArgumentsAreOptions) {
  struct Case {
    const char* arg;
    bool taken;
  };
  const Case cases[] = {
      {"", true},     {"-", true},      {"-p", true},     {"-pr", true},  {"-t", true},
      {"-ti", true},  {"-prz", false},  {"-tix", false},  {"-mgX", true}, {"-pgfoo", true},
      {"-tm", true},  {"-tmX", false},  {"-txp", true},   {"-txp0", true}, {"-txp1", false},
      {"-txd", true}, {"-xy", false},   {"file.bgr", false}, {"-LS", false},
  };
  for (const Case& c : cases) {
    Settings s;
    EXPECT_EQ(ScanOption(c.arg, s), c.taken) << '"' << c.arg << '"';
  }
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
