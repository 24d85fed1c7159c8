// The 8 by 8 tile store of a TMS job, and the clipper that cuts lines,
// triangles and quadrilaterals along its grid lines and stores the pieces.
// The clipper's state lives here, so a job (or a test) owns a fresh one.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include "geometry/texpoints.h"

namespace bgr {

inline constexpr int kLayers = 4;  // 0 pavement, 1 edge marks, 2 centre lines, 3 lights
inline constexpr int kTilesPerSide = 8;

struct TileRecord {
  std::array<TEXPOINTS, kLayers> points;
  std::array<TextureList, kLayers> polygons;
};

struct ClipPoint {
  std::int32_t x = 0;
  std::int32_t z = 0;
};

class TileGrid {
 public:
  static constexpr std::int32_t kMaxClipDepth = 40;
  static constexpr std::int32_t kReachMargin = 5;  // a tip up to 4 past the next grid line stays whole

  // Reports of the tiles' tables go to ctx; a grid of no run stays silent.
  explicit TileGrid(RunContext* ctx = nullptr);
  // A grid that lays only the layers of 'layers' (a bit each) into the tiles of
  // 'shared', with a clipper of its own: two that lay different layers may work
  // at once.
  TileGrid(const TileGrid& shared, std::uint32_t layers);

  TileRecord& Tile(std::int32_t x, std::int32_t z) { return (*tiles_)[static_cast<std::size_t>(x)][static_cast<std::size_t>(z)]; }

  std::int32_t TileIndexX(std::int32_t coordinate);
  std::int32_t TileIndexZ(std::int32_t coordinate);
  std::int32_t TileKey(std::int32_t x, std::int32_t z);
  void SelectTile(std::int32_t x, std::int32_t z);

  void ClipLine(std::int32_t layer, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2,
                std::int32_t light);
  void ClipTriangle(std::int32_t layer, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2,
                    std::int32_t x3, std::int32_t z3);
  void ClipQuad(std::int32_t layer, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2,
                std::int32_t x3, std::int32_t z3, std::int32_t x4, std::int32_t z4);

  std::int32_t TileSize = 0;
  std::int32_t TileOriginX = 0;
  std::int32_t TileOriginZ = 0;
  std::int32_t CurrentTileX = 0;
  std::int32_t CurrentTileZ = 0;
  std::int32_t ClipDepthX = 0;
  std::int32_t ClipDepthZ = 0;

 private:
  void ClipLineOn(bool zStage, std::int32_t layer, ClipPoint a, ClipPoint b, std::int32_t light);
  void ClipTriangleOn(bool zStage, std::int32_t layer, ClipPoint p1, ClipPoint p2, ClipPoint p3);
  void ClipTriangleZ(std::int32_t layer, ClipPoint p1, ClipPoint p2, ClipPoint p3) {
    ClipTriangleOn(true, layer, p1, p2, p3);
  }
  void Emit(std::int32_t layer, std::span<const ClipPoint> corners, std::int32_t attr);
  std::int32_t TileIndex(std::int64_t coordinate, std::int32_t origin);
  std::int64_t NextGridLine(std::int64_t coordinate, std::int32_t origin) const;

  bool Lays(std::int32_t layer) const { return layer < 0 || layer >= kLayers || (layers_ >> layer & 1) != 0; }

  using Grid = std::array<std::array<TileRecord, kTilesPerSide>, kTilesPerSide>;
  std::shared_ptr<Grid> tiles_;
  std::uint32_t layers_ = (1u << kLayers) - 1;
  TEXTURE emitted_;
};

bool StrictlyBetween(std::int32_t v, std::int32_t a, std::int32_t b);

}  // namespace bgr
