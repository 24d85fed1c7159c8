// No user file is lost or damaged: every writing command under a file-size
// limit swept over its output, two in-place commands at once in one folder,
// links, modes, FIFOs and the temporary file as a target.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <thread>

#include "support/airport_db.h"
#include "support/bgr_builder.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace bgrtest {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

std::string Network(int nodes, double shift) {
  BgrBuilder b;
  b.Origin(171000.5, -441000.25);
  for (int i = 0; i < nodes; ++i) b.Node(i * 7 + shift, 0, (i % 5) * 3);
  for (int i = 0; i + 1 < nodes; ++i) b.Edge(i, i + 1, 16904 + i, 15, i % 2);
  return b.End().data;
}

Files Inputs() {
  return {{"a.bgr", Network(40, 0.5)}, {"b.bgr", "old b"},    {"c.bgr", Network(30, 100.25)},
          {"a.txd", "old txd"},        {"a.txp", "old txp"}, {"fix.txt", "<bgr-width-edges> 50 80\n<bgr-align-nodes> 0 9 2\n"}};
}

// Every file of the folder (a subfolder's as "DIR/name"), the report left out.
Files AllFiles(const TempDir& dir) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(dir.path())) {
    std::string name = fs::relative(entry.path(), dir.path()).generic_string();
    if (entry.is_regular_file() && name != "report.txt") files[name] = dir.Read(name);
  }
  return files;
}

// Runs a command in a fresh folder of 'inputs'; gives the files it leaves.
Files RunIn(const Files& inputs, const std::vector<std::string>& args, long limit, const std::string& call, ToolRun& run) {
  TempDir dir;
  for (const auto& [name, bytes] : inputs) dir.Write(name, bytes);
  run = RunTool(BGRTOOL_PATH, dir.path(), args, limit, call);
  return AllFiles(dir);
}

// Runs a command in a fresh folder of 'inputs' under file-size limits swept
// over its largest output, and with each failing call: every file ends as it
// was or as a full run leaves it (no part file stays), and a run that didn't
// finish every file says ERROR and exits with 'failedExit'.
void SweepOldOrNew(const Files& inputs, const std::vector<std::string>& args, int failedExit,
                   const std::vector<std::string>& calls = {}) {
  ToolRun run;
  Files done = RunIn(inputs, args, -1, "", run);
  ASSERT_EQ(run.exitStatus, 1) << args[0];
  ASSERT_NE(done, inputs) << args[0];
  std::size_t largest = 0;
  for (const auto& [name, bytes] : done) largest = std::max(largest, bytes.size());
  std::vector<std::pair<long, std::string>> faults;
  for (long limit = 0; limit <= static_cast<long>(largest) + 64; limit += static_cast<long>(largest) / 40 + 1)
    faults.emplace_back(limit, "");
  for (const std::string& call : calls) faults.emplace_back(-1, call);
  int failed = 0;
  for (const auto& [limit, call] : faults) {
    Files after = RunIn(inputs, args, limit, call, run);
    std::string what = args[0] + " at " + std::to_string(limit) + " " + call;
    for (const auto& [name, bytes] : after) {
      bool old = inputs.count(name) && inputs.at(name) == bytes, full = done.count(name) && done.at(name) == bytes;
      EXPECT_TRUE(old || full) << name << " " << what;
    }
    for (const auto& [name, bytes] : inputs) EXPECT_TRUE(after.count(name)) << name << " " << what;
    if (after != done) {
      ++failed;
      EXPECT_EQ(run.exitStatus, failedExit) << what;
      EXPECT_NE(run.out.find("ERROR: "), std::string::npos) << what;
    }
  }
  EXPECT_GT(failed, 0) << args[0] << ": no fault bit";
}

TEST(Faults, EveryWritingCommandLeavesEachFileOldOrNewWhole) {
  for (const auto& args : std::vector<std::vector<std::string>>{{"-mv1:2", "a.bgr", "b.bgr"}, {"-de3", "a.bgr", "b.bgr"},
                                                                {"-mg", "c.bgr", "a.bgr"}, {"-pg", "a.bgr"},
                                                                {"-rsfix.txt", "a.bgr"}, {"-txd", "a.bgr"},
                                                                {"-txp", "a.bgr"}, {"-txp0", "a.bgr"}})
    SweepOldOrNew(Inputs(), args, 0);
  // the tile job writes two files, each whole or not at all; its exit value
  // tells only whether the network was read
  SweepOldOrNew({{"a.bgr", Network(40, 0.5)}, {"a.TMS", "old tiles"}}, {"-tm", "a.bgr"}, 1,
                {"rename:1", "rename:2", "fsync:1", "fsync:3"});
  // a script run saves each network and each PLY file whole or not at all
  std::string script = "REF N27:46:40 E13:53:20\n";
  for (int i = 0; i < 60; ++i) script += "LIN " + std::to_string(i * 30) + " 0 " + std::to_string(i % 7) + " 75 15\nPOI " + std::to_string(i) + " 0 1\n";
  script += "REF N28:3:20 E13:53:20\nMOV 0 0 0 75 15\nLIN 0 0 500 75 15\nPOI 1 0 1\n";
  Files inputs{{"DATA/LMMX.BGR", Network(30, 0.5)}, {"DATA/LMMX.PLY", "ORG 1 2\nPOI 1 1\n"}, {"s.txt", script}};
  for (const auto& [name, bytes] : DatabaseFiles({{"LMMX", 100000, 50000}, {"EGXX", 101000, 50000}})) inputs[name] = bytes;
  SweepOldOrNew(inputs, {"-tes.txt"}, 1);
}

// A failing rename or sync before the new file takes its place: the target
// stays; an in-place edit may leave _TEMP_.BGR beside it, as its message says.
TEST(Faults, AFailingRenameOrSyncChangesNothing) {
  const std::vector<std::vector<std::string>> commands = {
      {"-mv1:2", "a.bgr", "b.bgr"}, {"-pg", "a.bgr"}, {"-mg", "c.bgr", "a.bgr"}, {"-rsfix.txt", "a.bgr"}, {"-txd", "a.bgr"}};
  for (const auto& args : commands) {
    for (std::string call : {"rename:1", "fsync:1"}) {
      ToolRun run;
      Files after = RunIn(Inputs(), args, -1, call, run);
      after.erase("_TEMP_.BGR");
      EXPECT_EQ(run.exitStatus, 0) << args[0] << " " << call;
      EXPECT_NE(run.out.find("ERROR: "), std::string::npos) << args[0] << " " << call;
      EXPECT_EQ(after, Inputs()) << args[0] << " " << call;
    }
  }
}

TEST(Faults, TwoPurgesInOneFolderTakeTurnsOnTheTemporaryFile) {
  TempDir once;
  once.Write("p.bgr", Network(400, 0.5));
  once.Write("q.bgr", Network(300, 3.25));
  RunTool(BGRTOOL_PATH, once.path(), {"-pg", "p.bgr"});
  RunTool(BGRTOOL_PATH, once.path(), {"-pg", "q.bgr"});
  for (int round = 0; round < 40; ++round) {
    TempDir dir;
    dir.Write("p.bgr", Network(400, 0.5));
    dir.Write("q.bgr", Network(300, 3.25));
    ToolRun first;
    std::thread other([&] { first = RunTool(BGRTOOL_PATH, dir.path(), {"-pg", "p.bgr"}); });
    ToolRun second = RunTool(BGRTOOL_PATH, dir.path(), {"-pg", "q.bgr"});
    other.join();
    ASSERT_EQ(first.exitStatus, 1) << round;
    ASSERT_EQ(second.exitStatus, 1) << round;
    ASSERT_EQ(dir.Read("p.bgr"), once.Read("p.bgr")) << round;
    ASSERT_EQ(dir.Read("q.bgr"), once.Read("q.bgr")) << round;
    ASSERT_FALSE(dir.Exists("_TEMP_.BGR")) << round;
  }
}

TEST(Faults, AnInPlaceEditKeepsLinksAndModes) {
  TempDir dir;
  dir.Write("real.bgr", Network(20, 0.5));
  chmod((dir / "real.bgr").c_str(), 0640);
  fs::create_symlink("real.bgr", dir / "link.bgr");
  ToolRun run = RunTool(BGRTOOL_PATH, dir.path(), {"-pg", "link.bgr"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(fs::is_symlink(dir / "link.bgr"));
  EXPECT_EQ(fs::status(dir / "real.bgr").permissions(), fs::perms(0640));
  EXPECT_NE(dir.Read("real.bgr"), Network(20, 0.5));
}

TEST(Faults, FifosAreRefusedAndNeverWaitedFor) {
  TempDir dir;
  dir.Write("a.bgr", Network(5, 0.5));
  mkfifo((dir / "report.txt").c_str(), 0644);
  mkfifo((dir / "f.bgr").c_str(), 0644);
  ToolRun list = RunTool(BGRTOOL_PATH, dir.path(), {"f.bgr"});
  EXPECT_EQ(list.exitStatus, 0);
  EXPECT_NE(list.out.find("ERROR: WrapFileOpen 'report.txt' is not a regular file\n"), std::string::npos);
  EXPECT_NE(list.out.find("ERROR: WrapFileOpen 'f.bgr' is not a regular file\n"), std::string::npos);
  ToolRun merge = RunTool(BGRTOOL_PATH, dir.path(), {"-mg", "a.bgr", "f.bgr"});
  EXPECT_EQ(merge.exitStatus, 0);
  EXPECT_NE(merge.out.find("ERROR: BgrMerge dest file 'f.bgr' not readable\n"), std::string::npos);
  EXPECT_EQ(fs::status(dir / "f.bgr").type(), fs::file_type::fifo);
}

}  // namespace
}  // namespace bgrtest
