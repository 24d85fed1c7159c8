// bgrkit osm on whole extracts: the Malta country extract through osm, and
// O'Hare from its .osm.pbf to its tile file (osm, the database, -te, -tm).
// Map data © OpenStreetMap contributors, ODbL 1.0.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "bench_util.h"
#include "kit/osm.h"
#include "script/script_run.h"
#include "support/airport_db.h"
#include "tms/tms_job.h"

namespace {

namespace fs = std::filesystem;

bool Convert(const std::string& extract, const std::string& code, const std::string& out) {
  bgr::kit::OsmOptions options;
  options.input = BENCH_SHARED_DATA "/osm/extracts/" + extract;
  if (!code.empty()) options.airports = {code};
  options.out = out;
  options.progress = false;
  std::ostringstream quiet;
  return bgr::kit::ConvertOsm(options, quiet) == 0;
}

void BM_OsmMaltaExtract(benchmark::State& state) {
  std::string out = bgrbench::TempPath("osm-malta");
  for (auto _ : state) {
    if (!Convert("malta-latest.osm.pbf", "", out)) state.SkipWithError("the Malta extract did not convert");
  }
  fs::remove_all(out);
}
BENCHMARK(BM_OsmMaltaExtract)->Unit(benchmark::kMillisecond);

void BM_OsmOhareToTiles(benchmark::State& state) {
  std::string dir = bgrbench::TempPath("osm-kord");
  std::string previous = fs::current_path().string();
  for (auto _ : state) {
    fs::remove_all(dir);
    fs::create_directories(dir + "/DATA");
    fs::create_directories(dir + "/DATABASE");
    if (!Convert("KORD.osm.pbf", "KORD", dir)) state.SkipWithError("O'Hare did not convert");
    // the database as makedb makes it of the one row
    std::ifstream csv(dir + "/airports.csv");
    std::string header, code, lat, lon;
    std::getline(csv, header);
    std::getline(csv, code, ',');
    std::getline(csv, lat, ',');
    std::getline(csv, lon);
    double east = std::strtod(lon.c_str(), nullptr) * 3600.0;
    std::vector<bgrtest::DbAirport> airports{{code, std::strtod(lat.c_str(), nullptr) * 3600.0,
                                              east < 0 ? east + 1296000.0 : east}};
    for (const auto& [name, bytes] : bgrtest::DatabaseFiles(airports)) bgrbench::WriteFile(dir + "/" + name, bytes);
    fs::current_path(dir);
    {
      bgrbench::QuietRun run;
      auto script = std::make_unique<bgr::ScriptRun>(run.ctx(), bgr::RefCell::Unrestricted());
      script->Run("KORD.txt");
    }
    bgrbench::QuietRun run;
    auto job = std::make_unique<bgr::TmsJob>(run.ctx());
    benchmark::DoNotOptimize(job->Run("DATA\\ORD.BGR"));
    fs::current_path(previous);
    if (!fs::exists(dir + "/DATA/ORD.TMS")) state.SkipWithError("no tiles");
  }
  fs::remove_all(dir);
}
BENCHMARK(BM_OsmOhareToTiles)->Unit(benchmark::kMillisecond);

}  // namespace
