// Every command on every cut of a small network, run twice: files and output
// must come out the same bytes both times, so no value that the file lacks can
// come from memory. BGRTOOL_REPEAT_STRIDE cuts every Nth byte (default 5).
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "support/bgr_builder.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "support/tms_sample.h"

namespace bgrtest {
namespace {

using Snapshot = std::map<std::string, std::string>;

std::string Sample() {
  BgrBuilder b;
  b.Origin(171000.5, -441000.25, 3).Node(1.5, 0, 2.5, true, true).Node(-30, 1, 5).Node(10, 0, -20);
  b.Edge(0, 1, 17096, 15, 1, true).Edge(1, 2, 16904, 3, 0).Edge(2, 0, 17000, 1, 1);
  return b.End().data;
}

const std::vector<std::vector<std::string>> kCommands = {
    {"-ls", "a.bgr"},         {"-txd", "a.bgr"},          {"-txp", "a.bgr"},   {"-txp0", "a.bgr"},
    {"-mv1:2", "a.bgr", "b.bgr"}, {"-de1", "a.bgr", "b.bgr"}, {"-pg", "a.bgr"},    {"-mg", "a.bgr", "c.bgr"},
    {"-mg", "c.bgr", "a.bgr"}, {"-rsfix.txt", "a.bgr"},  {"a.tms"},
};

Snapshot RunOnce(const std::vector<std::string>& args, const std::string& cut, const std::string& cutTms) {
  TempDir dir;
  dir.Write("a.bgr", cut);
  dir.Write("c.bgr", Sample());
  dir.Write("a.tms", cutTms);
  dir.Write("fix.txt", "<bgr-replace-edges> 0 2 5\n<bgr-align-nodes> 1 2\n<bgr-width-edges> 50 80\n");
  ToolRun run = RunTool(BGRTOOL_PATH, dir.path(), args);
  Snapshot files{{"<stdout>", Normalise(run.out)}, {"<exit>", std::to_string(run.exitStatus)}};
  for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
    std::string name = entry.path().filename().string();
    files[name] = name == "report.txt" ? Normalise(dir.Read(name)) : dir.Read(name);
  }
  return files;
}

TEST(Repeatable, EveryCommandOnEveryCutGivesTheSameBytesTwice) {
  const char* strideText = std::getenv("BGRTOOL_REPEAT_STRIDE");
  std::size_t stride = strideText ? std::max(1, std::atoi(strideText)) : 5;
  std::string whole = Sample();
  std::string tms = SampleBytes();
  for (std::size_t length = 0; length <= whole.size(); length += stride) {
    std::string cut = whole.substr(0, length);
    std::string cutTms = tms.substr(0, std::min(tms.size(), length * tms.size() / whole.size()));
    for (const auto& args : kCommands) {
      EXPECT_EQ(RunOnce(args, cut, cutTms), RunOnce(args, cut, cutTms)) << args[0] << " on " << length << " bytes";
    }
  }
}

}  // namespace
}  // namespace bgrtest
