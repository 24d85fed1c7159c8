// Ear clipping at the polygon size limit, and clipping many shapes over the grid.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "geometry/planar.h"
#include "geometry/texpoints.h"
#include "tms/tile_grid.h"

namespace {

// A 255-corner star with deep notches: far from convex, so it goes to the ear clipper.
void BM_EarClip255(benchmark::State& state) {
  bgr::TEXPOINTS pts(256);
  bgr::TEXTURE tex;
  const int n = 255;
  for (int i = 0; i < n; ++i) {
    double a = 2 * bgr::kPi * i / n;
    double r = i % 2 ? 40000 : 100000;
    pts.Add(static_cast<std::int32_t>(r * std::cos(a)), 0, static_cast<std::int32_t>(r * std::sin(a)), -1);
  }
  tex.SetFlat(n, 0);
  for (int i = 0; i < n; ++i) tex.verts[i].point = i;
  for (auto _ : state) benchmark::DoNotOptimize(tex.Triangle(pts, 0, 0));
}
BENCHMARK(BM_EarClip255)->Unit(benchmark::kMicrosecond);

// 100000 shapes over 20 fresh grids of 5000 each: sizes that fit the tiles'
// point tables, so the figures are those of real cutting, with the grids made
// and freed outside the timed part.
void ClipMany(benchmark::State& state, bool lines) {
  constexpr std::size_t kGrids = 20;
  std::mt19937 rng(3);
  std::uniform_int_distribution<std::int32_t> at(0, 8 * 128000 - 1);
  std::uniform_int_distribution<std::int32_t> step(-60000, 60000);
  std::vector<std::array<std::int32_t, 6>> shapes(100000);
  for (auto& s : shapes) {
    s[0] = at(rng);
    s[1] = at(rng);
    for (int k = 2; k < 6; ++k) s[k] = s[k % 2] + step(rng);
  }
  const std::size_t perGrid = shapes.size() / kGrids;
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<std::unique_ptr<bgr::TileGrid>> grids;
    for (std::size_t g = 0; g < kGrids; ++g) {
      grids.push_back(std::make_unique<bgr::TileGrid>());
      grids.back()->TileSize = 128000;
    }
    state.ResumeTiming();
    for (std::size_t i = 0; i < shapes.size(); ++i) {
      bgr::TileGrid& grid = *grids[i / perGrid];
      const auto& s = shapes[i];
      if (lines) {
        grid.ClipLine(3, s[0], s[1], s[2], s[3], 0);
      } else {
        grid.ClipTriangle(0, s[0], s[1], s[2], s[3], s[4], s[5]);
      }
    }
    state.PauseTiming();
    for (auto& grid : grids) {
      for (int x = 0; x < bgr::kTilesPerSide; ++x)
        for (int z = 0; z < bgr::kTilesPerSide; ++z)
          for (const bgr::TEXPOINTS& points : grid->Tile(x, z).points)
            if (points.count() >= points.capacity()) state.SkipWithError("a tile's point table ran full");
    }
    grids.clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(shapes.size()));
}

void BM_Clip100000Triangles(benchmark::State& s) { ClipMany(s, false); }
void BM_Clip100000Lines(benchmark::State& s) { ClipMany(s, true); }
BENCHMARK(BM_Clip100000Triangles)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Clip100000Lines)->Unit(benchmark::kMillisecond);

}  // namespace
