// Listing speed on a 50 MB network; the figure to watch is bytes per second.
#include <benchmark/benchmark.h>

#include "bench_util.h"
#include "support/bgr_builder.h"
#include "frame/options.h"
#include "tools/commands.h"

namespace {

const std::string& BigBgr() {
  static const std::string path = [] {
    bgrtest::BgrBuilder b;
    b.Origin(171000.5, -441000.25);
    // 1/4 fractions keep '<' and '>' out of the doubles' bytes, so nothing ends the walk early
    for (int i = 0; i < 650000; ++i) b.Node(100.25 + i % 997, 0, 100.25 + i % 991);
    // node numbers below 60 keep '<' (0x3C) out of the walked bytes of the edges too
    for (int i = 0; i < 325000; ++i) b.Edge(i % 50, (i + 1) % 50, 17096, 15, 1);
    b.End();
    std::string p = bgrbench::TempPath("list-50mb-v2.bgr");
    bgrbench::WriteFile(p, b.data);
    return p;
  }();
  return path;
}

void ListBgr(benchmark::State& state, std::int32_t vmax, std::int32_t printValues) {
  const std::string& path = BigBgr();
  auto size = static_cast<std::int64_t>(std::filesystem::file_size(path));
  bgr::Settings s;
  s.vmin = vmax == -1 ? -1 : 0;
  s.vmax = vmax;
  s.printValues = printValues;
  for (auto _ : state) {
    bgrbench::QuietRun run;
    benchmark::DoNotOptimize(bgr::BgrList(run.ctx(), s, path));
  }
  state.SetBytesProcessed(state.iterations() * size);
}

// Move and edge delete copy the same bytes; their speeds should be alike.
void CopyBgr(benchmark::State& state, bool deleteEdges) {
  const std::string& path = BigBgr();
  std::string out = bgrbench::TempPath("copy-50mb.bgr");
  auto size = static_cast<std::int64_t>(std::filesystem::file_size(path));
  bgr::Settings s;
  s.north = 10;
  s.vmin = 5;  // the edges of node 5 go
  for (auto _ : state) {
    bgrbench::QuietRun run;
    benchmark::DoNotOptimize(deleteEdges ? bgr::BgrDeleteEdges(run.ctx(), s, path, out)
                                         : bgr::BgrMove(run.ctx(), s, path, out));
  }
  state.SetBytesProcessed(state.iterations() * size);
}

void BM_ListPlain(benchmark::State& s) { ListBgr(s, -1, 0); }
void BM_ListValuesDefaultRange(benchmark::State& s) { ListBgr(s, -1, 1); }
void BM_ListValuesAllNodes(benchmark::State& s) { ListBgr(s, 99999999, 1); }
BENCHMARK(BM_ListPlain)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListValuesDefaultRange)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListValuesAllNodes)->Unit(benchmark::kMillisecond);

void BM_MoveAllNodes(benchmark::State& s) { CopyBgr(s, false); }
void BM_DeleteEdgesOfOneNode(benchmark::State& s) { CopyBgr(s, true); }
BENCHMARK(BM_MoveAllNodes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DeleteEdgesOfOneNode)->Unit(benchmark::kMillisecond);

}  // namespace
