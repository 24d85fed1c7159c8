// Listing speed on a 50 MB network; the figure to watch is bytes per second.
#include <benchmark/benchmark.h>

#include "bench_util.h"
#include "support/bgr_builder.h"
#include "tools/commands.h"

namespace {

const std::string& BigBgr() {
  static const std::string path = [] {
    bgrtest::BgrBuilder b;
    b.Origin(171000.5, -441000.25);
    // 1/4 fractions keep '<' and '>' out of the doubles' bytes, so nothing ends the walk early
    for (int i = 0; i < 650000; ++i) b.Node(100.25 + i % 997, 0, 100.25 + i % 991);
    for (int i = 0; i < 325000; ++i) b.Edge(i, i + 1, 17096, 15, 1);
    b.End();
    std::string p = bgrbench::TempPath("list-50mb.bgr");
    bgrbench::WriteFile(p, b.data);
    return p;
  }();
  return path;
}

void ListBgr(benchmark::State& state, std::int32_t vmax, std::int32_t printValues) {
  const std::string& path = BigBgr();
  auto size = static_cast<std::int64_t>(std::filesystem::file_size(path));
  for (auto _ : state) {
    bgrbench::QuietStdout quiet;
    benchmark::DoNotOptimize(bgr::BgrList(path, vmax == -1 ? -1 : 0, vmax, printValues));
  }
  state.SetBytesProcessed(state.iterations() * size);
}

void BM_ListPlain(benchmark::State& s) { ListBgr(s, -1, 0); }
void BM_ListValuesDefaultRange(benchmark::State& s) { ListBgr(s, -1, 1); }
void BM_ListValuesAllNodes(benchmark::State& s) { ListBgr(s, 99999999, 1); }
BENCHMARK(BM_ListPlain)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListValuesDefaultRange)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListValuesAllNodes)->Unit(benchmark::kMillisecond);

}  // namespace
