// No user file is lost or damaged: every writing command under a file-size
// limit swept over its output, two in-place commands at once in one folder,
// links, modes, FIFOs and the temporary file as a target.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <thread>

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

// The files of a folder, the report left out: it is no user file.
Files Snapshot(const TempDir& dir) {
  Files files;
  for (const auto& entry : fs::directory_iterator(dir.path())) {
    std::string name = entry.path().filename().string();
    if (name != "report.txt") files[name] = dir.Read(name);
  }
  return files;
}

Files RunIn(const std::vector<std::string>& args, long limit, ToolRun& run) {
  TempDir dir;
  for (const auto& [name, bytes] : Inputs()) dir.Write(name, bytes);
  run = RunTool(BGRTOOL_PATH, dir.path(), args, limit);
  return Snapshot(dir);
}

// Each run either does all of its work or fails with a message and leaves
// every file as it was.
TEST(Faults, EveryWritingCommandSucceedsWholeOrChangesNothing) {
  const std::vector<std::vector<std::string>> commands = {
      {"-mv1:2", "a.bgr", "b.bgr"}, {"-de3", "a.bgr", "b.bgr"}, {"-mg", "c.bgr", "a.bgr"}, {"-pg", "a.bgr"},
      {"-rsfix.txt", "a.bgr"},      {"-txd", "a.bgr"},          {"-txp", "a.bgr"},         {"-txp0", "a.bgr"}};
  int runs = 0;
  for (const auto& args : commands) {
    ToolRun run;
    Files done = RunIn(args, -1, run);
    ASSERT_EQ(run.exitStatus, 1) << args[0];
    int failed = 0;
    std::size_t largest = 0;
    for (const auto& [name, bytes] : done) largest = std::max(largest, bytes.size());
    for (long limit = 0; limit <= static_cast<long>(largest) + 64; limit += 61, ++runs) {
      Files after = RunIn(args, limit, run);
      if (run.exitStatus == 1) {
        EXPECT_EQ(after, done) << args[0] << " at " << limit;
      } else {
        ++failed;
        EXPECT_EQ(run.exitStatus, 0) << args[0] << " at " << limit;
        EXPECT_NE(run.out.find("ERROR: "), std::string::npos) << args[0] << " at " << limit;
        EXPECT_EQ(after, Inputs()) << args[0] << " at " << limit;
      }
    }
    EXPECT_GT(failed, 0) << args[0] << ": the limit never bit";
  }
  EXPECT_GT(runs, 100);
}

// The tile job writes two files, each whole or not at all: under any limit and
// with any rename or sync failing, the tile file and the network are each
// either as they were or as a full run leaves them, and a failure says so.
// The job's exit value tells only whether the network was read.
TEST(Faults, TheTileJobLeavesEachFileOldOrNewWhole) {
  Files inputs = {{"a.bgr", Network(40, 0.5)}, {"a.TMS", "old tiles"}};
  auto runIn = [&](long limit, const std::string& call, ToolRun& run) {
    TempDir dir;
    for (const auto& [name, bytes] : inputs) dir.Write(name, bytes);
    run = RunTool(BGRTOOL_PATH, dir.path(), {"-tm", "a.bgr"}, limit, call);
    return Snapshot(dir);
  };
  auto check = [&](const Files& after, const ToolRun& run, const Files& done, const std::string& what) {
    EXPECT_EQ(run.exitStatus, 1) << what;
    ASSERT_EQ(after.size(), 2u) << what;  // no part file left behind
    for (const char* name : {"a.bgr", "a.TMS"}) {
      bool old = after.at(name) == inputs.at(name), full = after.at(name) == done.at(name);
      EXPECT_TRUE(old || full) << name << " " << what;
      if (!full) {
        EXPECT_NE(run.out.find("ERROR: "), std::string::npos) << name << " " << what;
      }
    }
  };
  ToolRun run;
  Files done = runIn(-1, "", run);
  ASSERT_NE(done.at("a.TMS"), inputs.at("a.TMS"));
  ASSERT_NE(done.at("a.bgr"), inputs.at("a.bgr"));
  int failed = 0;
  long largest = static_cast<long>(done.at("a.TMS").size());
  for (long limit = 0; limit <= largest + 64; limit += largest / 50 + 1) {
    Files after = runIn(limit, "", run);
    failed += after != done;
    check(after, run, done, "limit " + std::to_string(limit));
  }
  EXPECT_GT(failed, 0);
  for (std::string call : {"rename:1", "rename:2", "fsync:1", "fsync:3"}) {
    Files after = runIn(-1, call, run);
    EXPECT_NE(after, done) << call;
    check(after, run, done, call);
  }
}

// A script run saves each network and each PLY file whole or not at all:
// under any limit every file is as it was or as a full run leaves it.
TEST(Faults, AScriptLeavesEachNetworkAndPlyFileOldOrNewWhole) {
  std::string dbd(56, '\0');
  dbd[16] = 2;
  dbd[20] = 24;
  auto record = [](const char* code, double lat, double lon) {
    std::string r(code);
    r.resize(8, '\0');
    r.append(reinterpret_cast<const char*>(&lat), 8).append(reinterpret_cast<const char*>(&lon), 8);
    return r;
  };
  dbd += record("LMMX", 100000, 50000) + record("EGXX", 101000, 50000);
  std::string script = "REF N27:46:40 E13:53:20\n";
  for (int i = 0; i < 60; ++i) script += "LIN " + std::to_string(i * 30) + " 0 " + std::to_string(i % 7) + " 75 15\nPOI " + std::to_string(i) + " 0 1\n";
  script += "REF N28:3:20 E13:53:20\nMOV 0 0 0 75 15\nLIN 0 0 500 75 15\nPOI 1 0 1\n";
  Files inputs = {{"DATABASE/AIRPORT.DBD", dbd},
                  {"DATABASE/AIRPORT.dbt", "aica,0,8,C\nalat,8,8,N\nalon,16,8,N\n"},
                  {"DATA/LMMX.BGR", Network(30, 0.5)},
                  {"DATA/LMMX.PLY", "ORG 1 2\nPOI 1 1\n"},
                  {"s.txt", script}};
  auto runIn = [&](long limit, ToolRun& run) {
    TempDir dir;
    for (const auto& [name, bytes] : inputs) dir.Write(name, bytes);
    run = RunTool(BGRTOOL_PATH, dir.path(), {"-tes.txt"}, limit);
    Files files;
    for (const auto& entry : fs::directory_iterator(dir.path() + "/DATA")) {
      files[entry.path().filename().string()] = dir.Read("DATA/" + entry.path().filename().string());
    }
    return files;
  };
  ToolRun run;
  Files done = runIn(-1, run);
  ASSERT_EQ(done.size(), 4u);  // LMMX and EGXX, each a network and a PLY file
  std::size_t largest = 0;
  for (const auto& [name, bytes] : done) largest = std::max(largest, bytes.size());
  int failed = 0;
  for (long limit = 0; limit <= static_cast<long>(largest) + 64; limit += static_cast<long>(largest) / 40 + 1) {
    Files after = runIn(limit, run);
    EXPECT_EQ(run.exitStatus, 1) << limit;
    for (const auto& [name, bytes] : after) {
      bool old = inputs.count("DATA/" + name) && inputs.at("DATA/" + name) == bytes;
      bool full = done.count(name) && done.at(name) == bytes;
      EXPECT_TRUE(old || full) << name << " at " << limit;
      if (!full) {
        ++failed;
        EXPECT_NE(run.out.find("ERROR: "), std::string::npos) << name << " at " << limit;
      }
    }
  }
  EXPECT_GT(failed, 0);
}

// A failing rename or sync before the new file takes its place: the target
// stays; an in-place edit may leave _TEMP_.BGR beside it, as its message says.
TEST(Faults, AFailingRenameOrSyncChangesNothing) {
  const std::vector<std::vector<std::string>> commands = {
      {"-mv1:2", "a.bgr", "b.bgr"}, {"-pg", "a.bgr"}, {"-mg", "c.bgr", "a.bgr"}, {"-rsfix.txt", "a.bgr"}, {"-txd", "a.bgr"}};
  for (const auto& args : commands) {
    for (std::string call : {"rename:1", "fsync:1"}) {
      TempDir dir;
      for (const auto& [name, bytes] : Inputs()) dir.Write(name, bytes);
      ToolRun run = RunTool(BGRTOOL_PATH, dir.path(), args, -1, call);
      Files after = Snapshot(dir);
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
