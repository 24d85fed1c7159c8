// bgrkit, run as a user runs it.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/airport_db.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace bgrtest {
namespace {

#ifdef BGRKIT_PATH
ToolRun Kit(const TempDir& dir, const std::vector<std::string>& args) { return RunTool(BGRKIT_PATH, dir.path(), args); }
#define NEED_BGRKIT()
#else
ToolRun Kit(const TempDir&, const std::vector<std::string>&) { return {}; }
#define NEED_BGRKIT() GTEST_SKIP() << "bgrkit is not built"
#endif

TEST(Kit, UsageExitValues) {
  NEED_BGRKIT();
  TempDir dir;
  struct Case {
    std::vector<std::string> args;
    int exit;
    const char* says;
  } cases[] = {
      {{}, 2, "Subcommands:"},
      {{"help"}, 0, "makedb"},
      {{"--help"}, 0, "makedb"},
      {{"help", "makedb"}, 0, "--lat"},
      {{"makedb", "--help"}, 0, "--code"},
      {{"makedb"}, 2, "required"},
      {{"nosuch"}, 2, ""},
      {{"help", "nosuch"}, 2, "no subcommand 'nosuch'"},
      {{"makedb", "a.csv", "b.dbd", "--colour"}, 2, ""},
  };
  for (const Case& c : cases) {
    ToolRun run = Kit(dir, c.args);
    EXPECT_EQ(run.exitStatus, c.exit) << ::testing::PrintToString(c.args);
    EXPECT_NE((run.out + run.err).find(c.says), std::string::npos) << ::testing::PrintToString(c.args);
  }
}

TEST(Kit, MakeDbReadsQuotedCsvAndSkipsBadRows) {
  NEED_BGRKIT();
  TempDir dir;
  dir.Write("a.csv",
            "\"id\",\"ident\",\"name\",\"latitude_deg\",\"longitude_deg\"\n"
            "1,\"LMML\",\"Malta, International\",35.857498,14.4775\n"
            "2,\"KSEA\",\"Seattle \"\"Tacoma\"\"\",47.449001,-122.308998\n"
            "3,\"AB\",\"too short\",1,1\n"               // line 4
            "4,\"ABCDEF\",\"too long\",1,1\n"            // line 5
            "5,\"EGLL\",\"no longitude\",51.4775\n"     // line 6
            "6,\"NZCH\",\"south\",-43.489399,172.531998\n"
            "7,\"XXXX\",\"off the globe\",91,0\n"       // line 8
            "8,\"YYYY\",\"not a number\",1,east\n");   // line 9
  ToolRun run = Kit(dir, {"makedb", "a.csv", "DATABASE/AIRPORT.DBD"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_NE(run.err.find("5 rows skipped"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("line 4, 5, 6, 8, 9"), std::string::npos) << run.err;
  EXPECT_EQ(dir.Read("DATABASE/AIRPORT.DBD"),
            DbdBytes({{"LMML", 35.857498 * 3600, 14.4775 * 3600},
                      {"KSEA", 47.449001 * 3600, -122.308998 * 3600 + 1296000},
                      {"NZCH", -43.489399 * 3600, 172.531998 * 3600}}));
  EXPECT_EQ(dir.Read("DATABASE/AIRPORT.dbt"), kDbtText);
}

TEST(Kit, MakeDbLeavesTheOldDatabaseWhenItFails) {
  NEED_BGRKIT();
  TempDir dir;
  dir.Write("DATABASE/AIRPORT.DBD", "old");
  dir.Write("no-columns.csv", "\"a\",\"b\"\n1,2\n");
  for (const char* csv : {"missing.csv", "no-columns.csv"}) {
    ToolRun run = Kit(dir, {"makedb", csv, "DATABASE/AIRPORT.DBD"});
    EXPECT_EQ(run.exitStatus, 1) << csv;
    EXPECT_NE(run.err.find("bgrkit makedb: "), std::string::npos) << csv;
    EXPECT_EQ(dir.Read("DATABASE/AIRPORT.DBD"), "old") << csv;
  }
}

// The public airport table as it is, then a script that uses the database.
TEST(Kit, MakeDbTakesThePublicAirportTableAndAScriptFindsItsAirports) {
  NEED_BGRKIT();
  if (!std::filesystem::exists(SHARED_DATA "/ourairports/airports.csv")) GTEST_SKIP() << "no shared airport table";
  TempDir dir;
  ToolRun run = Kit(dir, {"makedb", SHARED_DATA "/ourairports/airports.csv", "DATABASE/AIRPORT.DBD"});
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_NE(run.out.find("4866 airports"), std::string::npos) << run.out;
  dir.Write("DATA/keep", "");
  // Malta's runway 13/31 and Seattle's 16L/34R, from the runway table
  dir.Write("s.txt",
            "RWY 13 31 x x 11627 197 N35:51:23.04 E14:28:43.68 N35:50:2.04 E14:30:24.48\n"
            "RWY 16L 34R x x 11901 150 N47:27:50.4 W122:18:28.8 N47:25:54 W122:18:28.8\n");
  ToolRun script = RunTool(BGRTOOL_PATH, dir.path(), {"-tes.txt"});
  EXPECT_EQ(script.exitStatus, 1);
  EXPECT_TRUE(dir.Exists("DATA/LMML.BGR"));
  EXPECT_TRUE(dir.Exists("DATA/SEA.BGR"));
}

}  // namespace
}  // namespace bgrtest
