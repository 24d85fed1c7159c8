#include "app/dispatcher.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace bgr {
namespace {

TEST(RunBgrtool, RunsInProcessAndAFatalStopEndsWithoutTimeLine) {
  bgrtest::TempDir dir;
  bgrtest::ScopedChdir in(dir.path());
  const char* usage[] = {"bgrtool"};
  OutputSink console, diagnostics;
  EXPECT_EQ(RunBgrtool(1, usage, console, diagnostics), -1);
  std::string out = console.Take();
  EXPECT_NE(out.find(kUsageText), std::string::npos);
  EXPECT_NE(out.find("TIME= "), std::string::npos);

  std::string nodes = "<bgno>";
  nodes += '\0';
  for (int i = 0; i < 12001; ++i) nodes += std::string("<node>\0<bgno>\0<vloc>\0", 21) + std::string(24, '\0');
  dir.Write("big.bgr", nodes);
  const char* purge[] = {"bgrtool", "-pg", "big.bgr"};
  EXPECT_EQ(RunBgrtool(3, purge, console, diagnostics), 1);
  EXPECT_EQ(console.Take(),
            " bgrtool airport ground builder, v1.03\nbgrtool -pg big.bgr\nERROR: insert_double_points failed\n"
            "ERROR: insert_double_points failed\n");
  std::string report = dir.Read("report.txt");
  EXPECT_NE(report.find("bgrtool -pg big.bgr\nERROR: insert_double_points failed\n"), std::string::npos);
  EXPECT_EQ(report.find("TIME=", report.find("-pg")), std::string::npos);
  EXPECT_TRUE(dir.Exists("big.bgr"));
}

}  // namespace
}  // namespace bgr
