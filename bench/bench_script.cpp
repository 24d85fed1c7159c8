// -te on the real airports of the world: a database of every large and medium
// airport and a script with a RWY line for each of their runways.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench_util.h"
#include "script/geo_parse.h"
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
             << bgr::FormatLatitude(std::stod(r[9])) << " " << bgr::FormatLongitude(std::stod(r[10])) << " "
             << bgr::FormatLatitude(std::stod(r[15])) << " " << bgr::FormatLongitude(std::stod(r[16])) << "\n";
      ++runways;
    }
    fs::create_directories(dir + "/DATABASE");
    for (const auto& [name, bytes] : bgrtest::DatabaseFiles(airports)) bgrbench::WriteFile(dir + "/" + name, bytes);
    bgrbench::WriteFile(dir + "/world.txt", script.str());
  }
};

struct WrittenFile {
  std::string name;
  std::string bytes;
};

// Every file in 'dir', in name order.
std::vector<WrittenFile> ReadFolder(const fs::path& dir) {
  std::vector<WrittenFile> files;
  for (const auto& entry : fs::directory_iterator(dir)) {
    std::ifstream in(entry.path(), std::ios::binary);
    files.push_back({entry.path().filename().string(), std::string(std::istreambuf_iterator<char>(in), {})});
  }
  std::sort(files.begin(), files.end(), [](const WrittenFile& a, const WrittenFile& b) { return a.name < b.name; });
  return files;
}

// The same files written as plainly as a program can: open, write, close.
void WritePlainly(const std::vector<WrittenFile>& files, const fs::path& dir) {
  for (const WrittenFile& f : files) {
    std::FILE* out = std::fopen((dir / f.name).string().c_str(), "wb");
    if (!out) continue;
    std::fwrite(f.bytes.data(), 1, f.bytes.size(), out);
    std::fclose(out);
  }
}

double Seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

// Each round runs in a folder of its own and also writes the script's files
// plainly into another, out of the timing, so that 'ratio' compares the two
// under the same load. Nothing is removed until the end: a file system that
// has just freed thousands of files is slow to make the next ones.
void BM_ScriptAllRunwaysOfTheWorld(benchmark::State& state) {
  static World world;
  std::string previous = fs::current_path().string();
  std::vector<WrittenFile> written;
  double scriptSeconds = 0, plainSeconds = 0;
  int round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    fs::path here = fs::path(world.dir) / ("round-" + std::to_string(++round));
    fs::remove_all(here);
    fs::create_directories(here / "DATA");
    fs::copy(fs::path(world.dir) / "DATABASE", here / "DATABASE");
    fs::copy_file(fs::path(world.dir) / "world.txt", here / "world.txt");
    fs::current_path(here);
    state.ResumeTiming();
    auto start = std::chrono::steady_clock::now();
    bgrbench::QuietRun run;
    auto script = std::make_unique<bgr::ScriptRun>(run.ctx(), bgr::RefCell::Unrestricted());
    benchmark::DoNotOptimize(script->Run("world.txt"));
    scriptSeconds += Seconds(start);
    state.PauseTiming();
    if (written.empty()) written = ReadFolder("DATA");
    fs::create_directories("PLAIN");
    start = std::chrono::steady_clock::now();
    WritePlainly(written, "PLAIN");
    plainSeconds += Seconds(start);
    fs::current_path(previous);
    state.ResumeTiming();
  }
  for (int r = 1; r <= round; ++r) fs::remove_all(fs::path(world.dir) / ("round-" + std::to_string(r)));
  state.counters["runways"] = world.runways;
  state.counters["files"] = static_cast<double>(written.size());
  state.counters["plain_ms"] = plainSeconds * 1000 / static_cast<double>(state.iterations());
  state.counters["ratio"] = plainSeconds > 0 ? scriptSeconds / plainSeconds : 0;
}
BENCHMARK(BM_ScriptAllRunwaysOfTheWorld)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
