// The editing commands on a network at the tables' full size, and the edit list.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "bench_util.h"
#include "script/string_list.h"
#include "support/bgr_builder.h"
#include "tools/commands.h"

namespace {

// 12000 nodes in pairs 3 feet apart (the purge joins each pair), 6000 edges.
std::string FullNetworkBytes() {
  bgrtest::BgrBuilder b;
  b.Origin(171000.5, -441000.25);
  for (int i = 0; i < 12000; ++i) b.Node((i / 2) % 100 * 40 + (i % 2) * 3, 0, (i / 2) / 100 * 40);
  for (int i = 0; i < 6000; ++i) b.Edge(2 * i, (2 * i + 5) % 12000, 17096, 15, 1);
  b.End();
  return b.data;
}

// Runs in a folder of its own: the commands write _TEMP_.BGR beside them.
class BenchFolder {
 public:
  BenchFolder() : dir_(bgrbench::TempPath("tools")), previous_(std::filesystem::current_path()) {
    std::filesystem::create_directories(dir_);
    std::filesystem::current_path(dir_);
  }
  ~BenchFolder() { std::filesystem::current_path(previous_); }

 private:
  std::string dir_;
  std::filesystem::path previous_;
};

void RunOnFreshCopy(benchmark::State& state, int (*command)(bgr::RunContext&, std::string_view)) {
  BenchFolder folder;
  static const std::string bytes = FullNetworkBytes();
  for (auto _ : state) {
    state.PauseTiming();
    bgrbench::WriteFile("net.bgr", bytes);
    bgrbench::QuietRun run;
    state.ResumeTiming();
    benchmark::DoNotOptimize(command(run.ctx(), "net.bgr"));
  }
}

void BM_PurgeFullNetwork(benchmark::State& s) { RunOnFreshCopy(s, bgr::BgrPurge); }
BENCHMARK(BM_PurgeFullNetwork)->Unit(benchmark::kMillisecond);

void BM_EditScriptFullNetwork(benchmark::State& s) {
  BenchFolder folder;
  bgrbench::WriteFile("fix.txt",
                      "<bgr-replace-edges> 0 198 10\n<bgr-align-nodes> 200 398 5\n<bgr-width-edges> 50 80\n");
  RunOnFreshCopy(s, [](bgr::RunContext& ctx, std::string_view file) { return bgr::BgrEditScript(ctx, file, "fix.txt"); });
}
BENCHMARK(BM_EditScriptFullNetwork)->Unit(benchmark::kMillisecond);

void BM_StringListIterateFull(benchmark::State& state) {
  bgrbench::QuietRun run;
  bgr::STRING_LIST list(run.ctx());
  list.Create(10240);
  for (int i = 0; list.Add("<bgr-width-edges> " + std::to_string(i)) >= 0; ++i) {
  }
  for (auto _ : state) {
    int n = 0;
    bgr::StringListWalk walk(list, "<bgr-");
    for (auto t = walk.Next(); t; t = walk.Next()) ++n;
    benchmark::DoNotOptimize(n);
  }
  state.SetItemsProcessed(state.iterations() * list.count());
}
BENCHMARK(BM_StringListIterateFull)->Unit(benchmark::kMicrosecond);

}  // namespace
