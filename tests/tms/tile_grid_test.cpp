#include "tms/tile_grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>
#include <vector>

namespace bgr {
namespace {

struct Piece {
  std::int32_t tileX, tileZ;
  std::vector<TEXPOINT> corners;
  std::vector<std::int32_t> numbers;
};

// Everything stored in one layer, in reading order (the last stored first).
std::vector<Piece> Pieces(TileGrid& grid, int layer) {
  std::vector<Piece> out;
  for (int x = 0; x < kTilesPerSide; ++x) {
    for (int z = 0; z < kTilesPerSide; ++z) {
      TileRecord& t = grid.Tile(x, z);
      for (const TEXTURE* p = t.polygons[layer].First(); p; p = t.polygons[layer].Next()) {
        Piece piece{x, z, {}, {}};
        for (int i = 0; i < p->count; ++i) {
          piece.numbers.push_back(p->verts[i].point);
          piece.corners.push_back(t.points[layer][p->verts[i].point]);
        }
        out.push_back(piece);
      }
    }
  }
  return out;
}

double Area(const std::vector<TEXPOINT>& c) {
  double a = 0;
  for (std::size_t i = 0; i < c.size(); ++i) {
    const TEXPOINT &p = c[i], &q = c[(i + 1) % c.size()];
    a += double(p.x) * q.z - double(q.x) * p.z;
  }
  return a / 2;
}

class Clip : public ::testing::Test {
 protected:
  void SetUp() override { grid.TileSize = 128000; }
  TileGrid grid;
};

TEST_F(Clip, ReachMarginOfFive) {
  // the tip P3 reaches 4 past the next grid line: not cut again
  grid.ClipTriangle(0, 100000, 0, 100000, 1000, 256004, 500);
  EXPECT_EQ(grid.Tile(2, 0).polygons[0].size(), 0u);
  TileGrid other;
  other.TileSize = 128000;
  other.ClipTriangle(0, 100000, 0, 100000, 1000, 256005, 500);
  EXPECT_EQ(other.Tile(2, 0).polygons[0].size(), 1u);
}

TEST_F(Clip, QuadsInOneTileStayWholeAndWindClockwise) {
  grid.ClipQuad(0, 0, 0, 128000, 0, 128000, 128000, 0, 128000);  // counter-clockwise, fills tile (0, 0)
  grid.ClipQuad(0, 130000, 0, 130000, 1000, 131000, 1000, 131000, 0);  // clockwise
  auto pieces = Pieces(grid, 0);
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0].numbers, (std::vector<std::int32_t>{3, 2, 1, 0}));
  EXPECT_EQ(pieces[1].numbers, (std::vector<std::int32_t>{0, 1, 2, 3}));
}

// Pieces of random shapes add up to the shape, each stored in the tile its mean lies in.
TEST(ClipProperties, PiecesCoverTheShapeAndLieInTheirTiles) {
  std::mt19937 rng(42);
  std::uniform_int_distribution<std::int32_t> coord(-5000, 8 * 128000 + 5000);
  for (int batch = 0; batch < 30; ++batch) {
    TileGrid grid;
    grid.TileSize = 128000;
    grid.TileOriginX = 700;
    grid.TileOriginZ = -300;
    double expected = 0, tolerance = 0;
    for (int shape = 0; shape < 40; ++shape) {
      std::vector<TEXPOINT> c;
      int corners = shape % 2 ? 4 : 3;
      for (int i = 0; i < corners; ++i) c.push_back({coord(rng), 0, coord(rng)});
      if (corners == 4) {
        // a convex quadrilateral: the corners of a random box in outline order
        std::int32_t x0 = std::min(c[0].x, c[1].x), x1 = std::max(c[0].x, c[1].x);
        std::int32_t z0 = std::min(c[0].z, c[1].z), z1 = std::max(c[0].z, c[1].z);
        c = {{x0, 0, z0}, {x1, 0, z0}, {x1, 0, z1}, {x0, 0, z1}};
        grid.ClipQuad(0, c[0].x, c[0].z, c[1].x, c[1].z, c[2].x, c[2].z, c[3].x, c[3].z);
      } else {
        grid.ClipTriangle(0, c[0].x, c[0].z, c[1].x, c[1].z, c[2].x, c[2].z);
      }
      expected += std::fabs(Area(c));
      // each new corner moves by up to one unit, along a cut of at most the shape's size
      tolerance += 8.0 * 2 * 1100000;
    }
    double stored = 0;
    for (const Piece& p : Pieces(grid, 0)) {
      // (the winding vote counts whole degrees, so a sliver may keep its winding)
      stored += std::fabs(Area(p.corners));
      std::int64_t sx = 0, sz = 0;
      for (const TEXPOINT& q : p.corners) sx += q.x, sz += q.z;
      auto n = static_cast<std::int64_t>(p.corners.size());
      EXPECT_EQ(grid.TileIndexX(static_cast<std::int32_t>(sx / n)), p.tileX);
      EXPECT_EQ(grid.TileIndexZ(static_cast<std::int32_t>(sz / n)), p.tileZ);
    }
    ASSERT_NEAR(stored, expected, tolerance) << "batch " << batch;
    EXPECT_EQ(grid.ClipDepthX, 0);
    EXPECT_EQ(grid.ClipDepthZ, 0);
  }
}

}  // namespace
}  // namespace bgr
