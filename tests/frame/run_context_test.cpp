#include "frame/run_context.h"

#include <gtest/gtest.h>

#include "frame/file_access.h"
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

TEST(ReportPath, StandsBesideTheProgram) {
  EXPECT_EQ(ReportPathFor("C:\\tools\\bgrtool.exe"), "C:\\tools\\report.txt");
  EXPECT_EQ(ReportPathFor("bgrtool"), "report.txt");
  EXPECT_EQ(ReportPathFor("/opt/x/bgrtool"), "/opt/x/report.txt");
}

TEST(FileAccess, OpenStepsOverBlanksAndExistsIsQuiet) {
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in(dir.path());
  dir.Write("a.txt", "x");
  bgrtest::TestRun run;
  RunContext& ctx = run.ctx;
  EXPECT_TRUE(WrapFileOpen(ctx, " \t a.txt", "r"));
  EXPECT_TRUE(FileExists(ctx, "a.txt"));
  EXPECT_FALSE(FileExists(ctx, "b.txt"));
  EXPECT_FALSE(FileExists(ctx, " \t "));
  EXPECT_FALSE(FileExists(ctx, "."));  // a folder is no file
  EXPECT_EQ(run.console.Take(), "");
  EXPECT_FALSE(WrapFileOpen(ctx, "b.txt", "r"));
  ctx.Report("plain %s", "x");
  EXPECT_EQ(run.console.Take(), "INFO: WrapFileOpen(b.txt, [00] r) failed\nERROR: plain x\n");
}

TEST(FileAccess, DeleteFilesUsesThePatternsFolder) {
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in(dir.path());
  dir.Write("X/a.tmp", "1");
  dir.Write("X/b.TMP", "2");
  dir.Write("X/c.txt", "3");
  dir.Write("a.tmp", "4");
  EXPECT_EQ(DeleteFiles("X\\*.tmp"), 0);
  EXPECT_FALSE(dir.Exists("X/a.tmp"));
  EXPECT_FALSE(dir.Exists("X/b.TMP"));
  EXPECT_TRUE(dir.Exists("X/c.txt"));
  EXPECT_TRUE(dir.Exists("a.tmp"));
  EXPECT_EQ(DeleteFiles("a.tmp"), 1);
  EXPECT_EQ(DeleteFiles("a.tmp"), 0);
}

TEST(FileAccess, CloseTellsAFailedWrite) {
  Stream full(std::fopen("/dev/full", "w"));
  ASSERT_TRUE(full);
  std::fputs("x", full.get());
  EXPECT_FALSE(full.Close());
  EXPECT_EQ(full.error(), "No space left on device");
}

}  // namespace
}  // namespace bgr
