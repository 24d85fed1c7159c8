// -te on the real airports of the world: a database of every large and medium
// airport and a script with a RWY line for each of their runways.
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "bench_util.h"
#include "script/script_run.h"
#include "support/airport_db.h"

namespace {

namespace fs = std::filesystem;

// One CSV line into its fields; quotes may hold commas and doubled quotes.
std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> out(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    char c = line[i];
    if (quoted && c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
      out.back() += '"';
      ++i;
    } else if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      out.emplace_back();
    } else {
      out.back() += c;
    }
  }
  return out;
}

std::vector<std::vector<std::string>> Rows(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(in, line);) rows.push_back(Fields(line));
  return rows;
}

std::string Angle(double degrees, char positive, char negative) {
  double a = std::fabs(degrees) * 3600;
  int d = static_cast<int>(a / 3600), m = static_cast<int>((a - d * 3600) / 60);
  char text[48];
  std::snprintf(text, sizeof text, "%c%d:%d:%.4f", degrees < 0 ? negative : positive, d, m, a - d * 3600 - m * 60);
  return text;
}

struct World {
  std::string dir = bgrbench::TempPath("world");
  int runways = 0;
  World() {
    std::vector<bgrtest::DbAirport> airports;
    for (const auto& r : Rows(BENCH_SHARED_DATA "/ourairports/airports.csv")) {
      if (r.size() < 6 || r[1].size() < 3 || r[1].size() > 5 || r[0] == "id") continue;
      double lon = std::stod(r[5]) * 3600;
      airports.push_back({r[1], std::stod(r[4]) * 3600, lon < 0 ? lon + 1296000 : lon});
    }
    std::ostringstream script;
    for (const auto& r : Rows(BENCH_SHARED_DATA "/ourairports/runways.csv")) {
      if (r.size() < 17 || r[0] == "id") continue;
      script << "RWY " << r[8] << " " << r[14] << " x x " << r[3] << " " << r[4] << " "
             << Angle(std::stod(r[9]), 'N', 'S') << " " << Angle(std::stod(r[10]), 'E', 'W') << " "
             << Angle(std::stod(r[15]), 'N', 'S') << " " << Angle(std::stod(r[16]), 'E', 'W') << "\n";
      ++runways;
    }
    fs::create_directories(dir + "/DATABASE");
    for (const auto& [name, bytes] : bgrtest::DatabaseFiles(airports)) bgrbench::WriteFile(dir + "/" + name, bytes);
    bgrbench::WriteFile(dir + "/world.txt", script.str());
  }
};

void BM_ScriptAllRunwaysOfTheWorld(benchmark::State& state) {
  static World world;
  std::string previous = fs::current_path().string();
  fs::current_path(world.dir);
  std::size_t files = 0;
  for (auto _ : state) {
    state.PauseTiming();
    fs::remove_all("DATA");
    fs::create_directories("DATA");
    state.ResumeTiming();
    bgrbench::QuietRun run;
    auto script = std::make_unique<bgr::ScriptRun>(run.ctx(), bgr::RefCell::Unrestricted());
    benchmark::DoNotOptimize(script->Run("world.txt"));
    state.PauseTiming();
    files = static_cast<std::size_t>(std::distance(fs::directory_iterator("DATA"), fs::directory_iterator{}));
    state.ResumeTiming();
  }
  state.counters["runways"] = world.runways;
  state.counters["files"] = static_cast<double>(files);
  fs::current_path(previous);
}
BENCHMARK(BM_ScriptAllRunwaysOfTheWorld)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
