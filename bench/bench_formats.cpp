// Point merging and whole-network load and save at the tables' full size.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "bench_util.h"
#include "formats/taxiway_list.h"
#include "geometry/texpoints.h"
#include "support/bgr_builder.h"

namespace {

std::vector<bgr::TEXPOINT> RandomPoints(int n, int spread, unsigned seed) {
  std::mt19937 rng(seed);
  std::uniform_int_distribution<int> c(-spread, spread);
  std::vector<bgr::TEXPOINT> pts;
  for (int i = 0; i < n; ++i) pts.push_back({c(rng), 0, c(rng)});
  return pts;
}

// The library's first-match walk, which the index replaces: the baseline.
std::int32_t WalkAdd(bgr::TEXPOINTS& table, const bgr::TEXPOINT& p, std::int32_t tolerance) {
  std::int32_t found = table.FindByWalk(p.x, p.y, p.z, tolerance);
  return found >= 0 ? found : table.Add(p.x, p.y, p.z, -1);
}

void IndexedAdds(benchmark::State& state, int n, int capacity, std::int32_t tolerance) {
  auto pts = RandomPoints(n, 256 * 3000, 7);
  for (auto _ : state) {
    bgr::TEXPOINTS table(capacity);
    for (const auto& p : pts) benchmark::DoNotOptimize(table.Add(p.x, p.y, p.z, tolerance));
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void WalkAdds(benchmark::State& state, int n, std::int32_t tolerance) {
  auto pts = RandomPoints(n, 256 * 3000, 7);
  for (auto _ : state) {
    bgr::TEXPOINTS table(n);
    for (const auto& p : pts) benchmark::DoNotOptimize(WalkAdd(table, p, tolerance));
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_Add12000Tolerance5_Index(benchmark::State& s) { IndexedAdds(s, 12000, 12000, 5); }
void BM_Add12000Tolerance5_Walk(benchmark::State& s) { WalkAdds(s, 12000, 5); }
void BM_Add2000Tolerance0_Index(benchmark::State& s) { IndexedAdds(s, 2000, 2000, 0); }
void BM_Add2000Tolerance0_Walk(benchmark::State& s) { WalkAdds(s, 2000, 0); }
BENCHMARK(BM_Add12000Tolerance5_Index)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Add12000Tolerance5_Walk)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Add2000Tolerance0_Index)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Add2000Tolerance0_Walk)->Unit(benchmark::kMicrosecond);

const std::string& FullNetwork() {
  static const std::string path = [] {
    bgrtest::BgrBuilder b;
    b.Origin(171000.5, -441000.25);
    for (int i = 0; i < 12000; ++i) b.Node(i % 400 * 30, 0, i / 400 * 30);
    for (int i = 0; i < 6000; ++i) b.Edge(i, i + 1, 17096, 15, i % 2);
    b.End();
    std::string p = bgrbench::TempPath("full-network.bgr");
    bgrbench::WriteFile(p, b.data);
    return p;
  }();
  return path;
}

void BM_LoadFullNetwork(benchmark::State& state) {
  const std::string& path = FullNetwork();
  bgrbench::QuietRun run;
  auto list = std::make_unique<bgr::TaxiwayList>(run.ctx());
  for (auto _ : state) benchmark::DoNotOptimize(list->Load(path, 0));
}
BENCHMARK(BM_LoadFullNetwork)->Unit(benchmark::kMillisecond);

void BM_SaveFullNetwork(benchmark::State& state) {
  const std::string& path = FullNetwork();
  std::string out = bgrbench::TempPath("saved-network.bgr");
  bgrbench::QuietRun run;
  auto list = std::make_unique<bgr::TaxiwayList>(run.ctx());
  for (auto _ : state) {
    state.PauseTiming();
    list->Load(path, 0);
    state.ResumeTiming();
    benchmark::DoNotOptimize(list->Save(out));
  }
}
BENCHMARK(BM_SaveFullNetwork)->Unit(benchmark::kMillisecond);

}  // namespace
