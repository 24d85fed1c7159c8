// The -tm job on generated airports, from reading the files to writing them back.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench_util.h"
#include "airport_gen.h"
#include "tms/tms_job.h"

namespace {

void RunTmsJob(benchmark::State& state, bgrtest::Layout layout) {
  bgrtest::AirportSize size;
  size.layout = layout;
  size.edges = static_cast<std::int32_t>(state.range(0));
  size.points = size.edges * 2;
  size.aprons = size.edges / (layout == bgrtest::Layout::kDense ? 450 : 150);
  size.lights = size.edges / 3;
  bgrtest::Airport airport = bgrtest::MakeAirport(size);
  std::string bgr = bgrbench::TempPath(std::string(layout == bgrtest::Layout::kDense ? "tms-dense-" : "tms-") +
                                       std::to_string(size.edges) + ".bgr");
  std::string ply = bgr.substr(0, bgr.size() - 3) + "PLY";
  bgrbench::WriteFile(ply, airport.ply);
  for (auto _ : state) {
    state.PauseTiming();
    bgrbench::WriteFile(bgr, airport.bgr);  // the job writes its network back over it
    state.ResumeTiming();
    bgrbench::QuietRun run;
    auto job = std::make_unique<bgr::TmsJob>(run.ctx());
    // a job that fails at full size is a fault, not a time
    if (job->Run(bgr) != 1) state.SkipWithError("the job did not read the network");
  }
  state.counters["edges"] = airport.edgeCount;
  state.counters["points"] = airport.pointCount;
}

void BM_TmsJob(benchmark::State& state) { RunTmsJob(state, bgrtest::Layout::kLinked); }
BENCHMARK(BM_TmsJob)->Arg(1500)->Arg(3000)->Arg(6000)->Unit(benchmark::kMillisecond);

// Junctions so close that the tiles' point tables overflow.
void BM_TmsJobDense(benchmark::State& state) { RunTmsJob(state, bgrtest::Layout::kDense); }
BENCHMARK(BM_TmsJobDense)->Arg(1500)->Arg(6000)->Unit(benchmark::kMillisecond);

}  // namespace
