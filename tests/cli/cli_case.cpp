#include "cli/cli_case.h"

#include <gtest/gtest.h>

#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace bgrtest {

std::string CaseName(const CliCase& c) {
  std::string name;
  for (char ch : c.name) name += std::isalnum(static_cast<unsigned char>(ch)) ? ch : '_';
  return name;
}

void RunCliCase(const CliCase& c) {
  TempDir dir;
  for (const auto& [name, bytes] : c.files) dir.Write(name, bytes);
  ToolRun run = RunTool(BGRTOOL_PATH, dir.path(), c.args);

  std::string commandLine = "bgrtool";
  for (const std::string& a : c.args) commandLine += " " + a;
  std::string time = c.timeLine ? "TIME= <t> sec\n" : "";
  EXPECT_EQ(Normalise(run.out), " <banner>\n" + commandLine + "\n" + c.out + time);
  EXPECT_EQ(run.exitStatus, c.exit);
  EXPECT_EQ(run.err, c.err);

  std::string report = "\n<banner>\n" + commandLine + "\n";
  for (const std::string& line : c.report) report += line + "\n";
  report += time;
  EXPECT_EQ(Normalise(dir.Read("report.txt")), report);

  for (const auto& [name, bytes] : c.expectFiles) {
    ASSERT_TRUE(dir.Exists(name)) << name;
    EXPECT_EQ(dir.Read(name), bytes) << "content of " << name;
  }
  for (const std::string& name : c.absent) EXPECT_FALSE(dir.Exists(name)) << name;
}

}  // namespace bgrtest
