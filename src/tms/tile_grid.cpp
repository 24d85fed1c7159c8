#include "tms/tile_grid.h"

#include <algorithm>
#include <array>

#include "frame/int32_math.h"
#include "geometry/planar.h"

namespace bgr {
namespace {

std::int32_t Clamp32(std::int64_t v) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(v, INT32_MIN, INT32_MAX));
}

}  // namespace

bool StrictlyBetween(std::int32_t v, std::int32_t a, std::int32_t b) {
  if (a == b) return false;
  return (a < v && v < b) || (b < v && v < a);
}

TileGrid::TileGrid(const TileGrid& shared, std::uint32_t layers)
    : TileSize(shared.TileSize),
      TileOriginX(shared.TileOriginX),
      TileOriginZ(shared.TileOriginZ),
      tiles_(shared.tiles_),
      layers_(layers) {}

// default-initialised: every member has its initialiser, and clearing the
// whole grid first would only touch its pages
TileGrid::TileGrid(RunContext* ctx) : tiles_(new Grid) {
  for (auto& column : *tiles_) {
    for (TileRecord& tile : column) {
      for (TEXPOINTS& points : tile.points) points.Attach(ctx);
      for (TextureList& list : tile.polygons) list.Attach(ctx);
    }
  }
}

std::int32_t TileGrid::TileIndex(std::int64_t coordinate, std::int32_t origin) {
  if (TileSize <= 0) TileSize = 256000;
  std::int64_t index = (coordinate - origin) / TileSize;
  return index >= 0 && index < kTilesPerSide ? static_cast<std::int32_t>(index) : 0;
}

std::int32_t TileGrid::TileIndexX(std::int32_t coordinate) { return TileIndex(coordinate, TileOriginX); }
std::int32_t TileGrid::TileIndexZ(std::int32_t coordinate) { return TileIndex(coordinate, TileOriginZ); }

std::int32_t TileGrid::TileKey(std::int32_t x, std::int32_t z) { return TileIndexX(x) * 256 + TileIndexZ(z); }

void TileGrid::SelectTile(std::int32_t x, std::int32_t z) {
  CurrentTileX = TileIndexX(x);
  CurrentTileZ = TileIndexZ(z);
}

std::int64_t TileGrid::NextGridLine(std::int64_t coordinate, std::int32_t origin) const {
  return origin + (coordinate + TileSize - origin) / TileSize * TileSize;
}

void TileGrid::ClipLine(std::int32_t layer, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2,
                        std::int32_t light) {
  if (!Lays(layer)) return;
  ClipLineOn(false, layer, {x1, z1}, {x2, z2}, light);
}

// The X and Z stages of a line are twins on the cut axis; only the X stage hands
// on a line that runs along its grid lines (x1 equal to x2).
void TileGrid::ClipLineOn(bool zStage, std::int32_t layer, ClipPoint a, ClipPoint b, std::int32_t light) {
  auto axis = [zStage](const ClipPoint& p) { return zStage ? p.z : p.x; };
  std::int32_t origin = zStage ? TileOriginZ : TileOriginX;
  bool noCrossing = TileIndex(std::int64_t{axis(a)} + 1, origin) == TileIndex(std::int64_t{axis(b)} - 1, origin);
  if (zStage && noCrossing) {
    ClipPoint ends[2] = {a, b};
    Emit(layer, ends, light);
    return;
  }
  if (!zStage && (noCrossing || a.x == b.x)) {
    ClipLineOn(true, layer, a, b, light);
    return;
  }
  if (axis(a) > axis(b)) std::swap(a, b);
  PlaneLine line;
  line.SetForCuts(a.x, a.z, b.x, b.z);
  ClipPoint current = a;
  while (axis(current) < axis(b)) {
    auto cut = static_cast<std::int32_t>(std::min<std::int64_t>(NextGridLine(axis(current), origin), axis(b)));
    ClipPoint next = zStage ? ClipPoint{TruncToLong(line.XAtY(cut)), cut} : ClipPoint{cut, TruncToLong(line.YAtX(cut))};
    if (zStage) {
      ClipPoint ends[2] = {current, next};
      Emit(layer, ends, light);
    } else {
      ClipLineOn(true, layer, current, next, light);
    }
    current = next;
  }
}

void TileGrid::ClipTriangle(std::int32_t layer, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2,
                            std::int32_t x3, std::int32_t z3) {
  if (!Lays(layer)) return;
  ClipTriangleOn(false, layer, {x1, z1}, {x2, z2}, {x3, z3});
}

void TileGrid::ClipTriangleOn(bool zStage, std::int32_t layer, ClipPoint p1, ClipPoint p2, ClipPoint p3) {
  auto axis = [zStage](const ClipPoint& p) { return zStage ? p.z : p.x; };
  std::int32_t origin = zStage ? TileOriginZ : TileOriginX;
  std::int32_t lo = std::min({axis(p1), axis(p2), axis(p3)});
  std::int32_t hi = std::max({axis(p1), axis(p2), axis(p3)});
  if (TileIndex(std::int64_t{lo} + 1, origin) == TileIndex(std::int64_t{hi} - 1, origin)) {
    if (zStage) {
      ClipPoint corners[3] = {p1, p2, p3};
      Emit(layer, corners, 0);
    } else {
      ClipTriangleZ(layer, p1, p2, p3);
    }
    return;
  }
  std::int32_t& depth = zStage ? ClipDepthZ : ClipDepthX;
  ++depth;
  if (depth < kMaxClipDepth) {
    PlaneLine e1, e2, e3;
    e1.SetForCuts(p1.x, p1.z, p2.x, p2.z);
    e2.SetForCuts(p2.x, p2.z, p3.x, p3.z);
    e3.SetForCuts(p3.x, p3.z, p1.x, p1.z);
    std::int64_t gridLine = origin + (std::int64_t{lo} + TileSize + 1 - origin) / TileSize * TileSize;
    std::int32_t g = Clamp32(gridLine);
    bool c1 = StrictlyBetween(g, axis(p1), axis(p2));
    bool c2 = StrictlyBetween(g, axis(p2), axis(p3));
    bool c3 = StrictlyBetween(g, axis(p3), axis(p1));
    auto corner = [&](const PlaneLine& e) {
      return zStage ? ClipPoint{RoundCoord(e.XAtY(g)), g} : ClipPoint{g, RoundCoord(e.YAtX(g))};
    };
    auto tipAndRest = [&](ClipPoint ta, ClipPoint tip, ClipPoint tb, ClipPoint r1, ClipPoint r2, ClipPoint r3,
                          ClipPoint r4) {
      bool withinReach = std::abs(std::int64_t{g} - axis(tip)) < std::int64_t{TileSize} + kReachMargin;
      if (withinReach && zStage) {
        ClipPoint corners[3] = {ta, tip, tb};
        Emit(layer, corners, 0);
      } else if (withinReach) {
        ClipTriangleZ(layer, ta, tip, tb);
      } else {
        ClipTriangle(layer, ta.x, ta.z, tip.x, tip.z, tb.x, tb.z);
      }
      ClipQuad(layer, r1.x, r1.z, r2.x, r2.z, r3.x, r3.z, r4.x, r4.z);
    };
    if (c1 && c2) {
      ClipPoint k1 = corner(e1), k2 = corner(e2);
      tipAndRest(k1, p2, k2, p1, k1, k2, p3);
    } else if (c1 && c3) {
      ClipPoint k1 = corner(e1), k3 = corner(e3);
      tipAndRest(k1, p1, k3, p2, p3, k3, k1);
    } else if (c2 && c3) {
      ClipPoint k2 = corner(e2), k3 = corner(e3);
      tipAndRest(k2, p3, k3, p1, p2, k2, k3);
    }
  }
  --depth;
}

void TileGrid::ClipQuad(std::int32_t layer, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2,
                        std::int32_t x3, std::int32_t z3, std::int32_t x4, std::int32_t z4) {
  if (!Lays(layer)) return;
  std::int32_t minX = std::min({x1, x2, x3, x4}), maxX = std::max({x1, x2, x3, x4});
  std::int32_t minZ = std::min({z1, z2, z3, z4}), maxZ = std::max({z1, z2, z3, z4});
  auto key = [&](std::int64_t x, std::int64_t z) {
    return TileIndex(x, TileOriginX) * 256 + TileIndex(z, TileOriginZ);
  };
  if (key(std::int64_t{minX} + 1, std::int64_t{minZ} + 1) == key(std::int64_t{maxX} - 1, std::int64_t{maxZ} - 1)) {
    ClipPoint corners[4] = {{x1, z1}, {x2, z2}, {x3, z3}, {x4, z4}};
    Emit(layer, corners, 0);
    return;
  }
  ClipTriangle(layer, x1, z1, x2, z2, x3, z3);
  ClipTriangle(layer, x1, z1, x3, z3, x4, z4);
}

void TileGrid::Emit(std::int32_t layer, std::span<const ClipPoint> corners, std::int32_t attr) {
  if (layer < 0 || layer >= kLayers) return;
  std::int64_t sumX = 0, sumZ = 0;
  for (const ClipPoint& c : corners) {
    sumX += c.x;
    sumZ += c.z;
  }
  auto n = static_cast<std::int64_t>(corners.size());
  SelectTile(static_cast<std::int32_t>(sumX / n), static_cast<std::int32_t>(sumZ / n));
  TileRecord& tile = Tile(CurrentTileX, CurrentTileZ);
  TEXPOINTS& points = tile.points[static_cast<std::size_t>(layer)];
  TEXTURE& texture = emitted_;  // reused: a fresh one would clear all its 256 vertices for 2 to 4
  texture.SetFlat(static_cast<std::int32_t>(corners.size()), attr);
  // the ring as the table holds it: a corner is its point, but for the point
  // 0 that a full table gives for every new one
  std::array<std::int32_t, TEXTURE::kMaxVerts + 2> xs, zs;
  std::size_t ring = std::min<std::size_t>(corners.size(), TEXTURE::kMaxVerts);
  for (std::size_t i = 0; i < ring; ++i) {
    std::int32_t point = points.Add(corners[i].x, 0, corners[i].z, 0);
    texture.verts[i].point = point;
    ClipPoint held = point == 0 ? ClipPoint{points[0].x, points[0].z} : corners[i];
    xs[i] = held.x;
    zs[i] = held.z;
  }
  // every polygon is stored clockwise in plan; a line keeps its ends in order
  if (ring >= 3) {
    xs[ring] = xs[0], zs[ring] = zs[0], xs[ring + 1] = xs[1], zs[ring + 1] = zs[1];
    if (RingIsReversed(std::span(xs).first(ring + 2), std::span(zs).first(ring + 2))) texture.Reverse();
  }
  tile.polygons[static_cast<std::size_t>(layer)].Add(texture);
}

}  // namespace bgr
