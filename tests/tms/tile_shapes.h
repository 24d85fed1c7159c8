// What a job left in its tiles, as plain shapes in order of arrival, so that a
// test can compare geometry rather than tables.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "tms/tile_grid.h"

namespace bgrtest {

using Corner = std::pair<std::int32_t, std::int32_t>;  // x, z

struct Shape {
  std::vector<Corner> corners;
  std::int32_t attr = 0;
  // The corners as a set: the store may start a ring anywhere and turns it clockwise.
  std::vector<Corner> Sorted() const {
    std::vector<Corner> s = corners;
    std::sort(s.begin(), s.end());
    return s;
  }
  bool Has(Corner c) const { return std::find(corners.begin(), corners.end(), c) != corners.end(); }
};

inline std::vector<Corner> SortedCorners(std::vector<Corner> c) {
  std::sort(c.begin(), c.end());
  return c;
}

// One tile that takes everything: a test of shapes needs no cutting.
inline void OneTile(bgr::TileGrid& grid) {
  grid.TileSize = 1 << 30;
  grid.TileOriginX = -(1 << 29);
  grid.TileOriginZ = -(1 << 29);
}

inline std::vector<Shape> ShapesOf(bgr::TileGrid& grid, std::int32_t layer, std::int32_t x = 0, std::int32_t z = 0) {
  bgr::TileRecord& tile = grid.Tile(x, z);
  const bgr::TEXPOINTS& points = tile.points[static_cast<std::size_t>(layer)];
  bgr::TextureList& list = tile.polygons[static_cast<std::size_t>(layer)];
  std::vector<Shape> shapes;
  for (const bgr::TEXTURE* t = list.First(); t != nullptr; t = list.Next()) {
    Shape s;
    s.attr = t->attr;
    for (std::int32_t v = 0; v < t->count; ++v) {
      const bgr::TEXPOINT& p = points[t->verts[static_cast<std::size_t>(v)].point];
      s.corners.emplace_back(p.x, p.z);
    }
    shapes.push_back(std::move(s));
  }
  std::reverse(shapes.begin(), shapes.end());  // the list gives the last first
  return shapes;
}

}  // namespace bgrtest
