#include "frame/report.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace bgr {
namespace {

TEST(ReportFormat, EachConversionShowsItsOwnValue) {
  EXPECT_EQ(FormatReportLine("a %s b %d c %ld d %s", "T", 7, 123456, "U"), "a T b 7 c 123456 d U");
  EXPECT_EQ(FormatReportLine("only %ld", "T", 7, 42, "U"), "only 42");
  EXPECT_EQ(FormatReportLine("only second %d", "T", -3, 42, "U"), "only second -3");
  EXPECT_EQ(FormatReportLine("INFO: WrapFileOpen(%s, [%d%ld] %s) failed", "x.bgr", 0, 0, "rb"),
            "INFO: WrapFileOpen(x.bgr, [00] rb) failed");
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
  const char* argv[] = {"bgrtool"};
  ReportStart(1, argv, kVersion, false, true);
  EXPECT_TRUE(WrapFileOpen(" \t a.txt", "r"));
  EXPECT_TRUE(FileExists("a.txt"));
  EXPECT_FALSE(FileExists("b.txt"));
  EXPECT_FALSE(FileExists(" \t "));
  EXPECT_FALSE(FileExists("."));  // a folder is no file
  std::string afterExists = dir.Read("report.txt");
  EXPECT_EQ(afterExists.find("b.txt"), std::string::npos);
  EXPECT_FALSE(WrapFileOpen("b.txt", "r"));
  EXPECT_NE(dir.Read("report.txt").find("INFO: WrapFileOpen(b.txt, [00] r) failed\n"), std::string::npos);
  Report("plain %s", "x");
  Report(">INFO: quiet");
  std::string report = dir.Read("report.txt");
  EXPECT_NE(report.find("ERROR: plain x\n"), std::string::npos);
  EXPECT_NE(report.find("\nINFO: quiet\n"), std::string::npos);
  Stream closed;
  EXPECT_FALSE(WrapFileClose(closed));
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

TEST(FileAccess, ReportFatalEndsWithStatusOneAndNoTimeLine) {
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in(dir.path());
  auto fatalRun = [] {
    const char* argv[] = {"bgrtool", "-pg", "x.bgr"};
    ReportStart(3, argv, kVersion, true, false);
    ReportFatal("BgrPurge cannot allocate points");
  };
  EXPECT_EXIT(fatalRun(), ::testing::ExitedWithCode(1), "");
  std::string report = dir.Read("report.txt");
  EXPECT_NE(report.find("bgrtool -pg x.bgr\nERROR: BgrPurge cannot allocate points\n"), std::string::npos);
  EXPECT_EQ(report.find("TIME="), std::string::npos);
}

}  // namespace
}  // namespace bgr
