// bgrkit's check and render on the largest legal network: 12000 points, 6000
// edges, with aprons, lights and the tiles that -tm makes of it.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench_util.h"
#include "kit/check.h"
#include "kit/render.h"
#include "kit/view.h"
#include "airport_gen.h"
#include "tms/tms_job.h"

namespace {

// The files of a full-size airport, with its tiles, made once.
const std::string& FullAirport() {
  static const std::string bgr = [] {
    bgrtest::AirportSize size;  // 6000 edges, 12000 points
    size.aprons = 40;
    size.lights = 2000;
    bgrtest::Airport airport = bgrtest::MakeAirport(size);
    std::string path = bgrbench::TempPath("kit-full.bgr");
    bgrbench::WriteFile(path, airport.bgr);
    bgrbench::WriteFile(path.substr(0, path.size() - 3) + "PLY", airport.ply);
    bgrbench::QuietRun run;
    auto job = std::make_unique<bgr::TmsJob>(run.ctx());
    job->Run(path);
    bgrbench::WriteFile(path, airport.bgr);  // the network as drawn, not as repaired
    return path;
  }();
  return bgr;
}

void BM_KitCheck(benchmark::State& state) {
  const std::string& path = FullAirport();
  for (auto _ : state) {
    bgr::kit::CheckInput input;
    std::string error;
    bgr::kit::LoadCheckInput(path, input, error);
    benchmark::DoNotOptimize(bgr::kit::CheckAll(input));
  }
}
BENCHMARK(BM_KitCheck)->Unit(benchmark::kMillisecond);

void BM_KitRenderSvg(benchmark::State& state) {
  const std::string& path = FullAirport();
  std::string out = bgrbench::TempPath("kit-full.svg");
  for (auto _ : state) {
    bgr::kit::RenderOptions options;
    options.input = path;
    options.output = out;
    options.labels = true;
    benchmark::DoNotOptimize(bgr::kit::Render(options));
  }
}
BENCHMARK(BM_KitRenderSvg)->Unit(benchmark::kMillisecond);

// The page's size and open time in a browser are measured on the page this
// leaves in the temporary folder (bgrbench-kit-full.html).
void BM_KitView(benchmark::State& state) {
  const std::string& path = FullAirport();
  for (auto _ : state) {
    bgr::kit::ViewOptions options;
    options.input = path;
    options.output = bgrbench::TempPath("kit-full.html");
    benchmark::DoNotOptimize(bgr::kit::View(options));
  }
}
BENCHMARK(BM_KitView)->Unit(benchmark::kMillisecond);

}  // namespace
