// A TMS file read back through the library's reader into plain shapes, tile by
// tile and section by section in file order.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "formats/tms_file.h"
#include "support/test_run.h"

namespace bgrtest {

struct TmsShape {
  std::vector<std::pair<std::int32_t, std::int32_t>> corners;  // x, z in working units
  std::int32_t lightType = 0;
  float lightStep = 0;
};

struct TmsContent {
  bool read = false;
  float tileFeet = 0;
  std::array<double, 3> lowl{};
  // [x][z][section]: pave, edmk, cntr, lite
  std::array<std::array<std::array<std::vector<TmsShape>, 4>, 8>, 8> tiles;
  std::size_t Count(int section) const {
    std::size_t n = 0;
    for (const auto& column : tiles)
      for (const auto& tile : column) n += tile[static_cast<std::size_t>(section)].size();
    return n;
  }
};

inline TmsContent ReadTms(const std::string& path) {
  TestRun run;
  bgr::TmsFile tms;
  TmsContent content;
  bgr::OriginRecord origin;
  if (!tms.OpenRead(run.ctx, path) || !tms.ReadOrigin(origin) || !tms.ReadHeader()) return content;
  content.read = true;
  content.tileFeet = tms.tileFeet;
  content.lowl = tms.lowl;
  while (tms.ReadTile()) {
    if (tms.tileX < 0 || tms.tileX > 7 || tms.tileZ < 0 || tms.tileZ > 7) return content;
    auto& tile = content.tiles[static_cast<std::size_t>(tms.tileX)][static_cast<std::size_t>(tms.tileZ)];
    for (;;) {
      int section = tms.ReadPave() ? 0 : tms.ReadEdmk() ? 1 : tms.ReadCntr() ? 2 : -1;
      if (section >= 0) {
        TmsShape shape;
        for (std::int32_t v = 0; v < tms.polygon.count; ++v) {
          const bgr::TEXPOINT& p = tms.points[tms.polygon.verts[static_cast<std::size_t>(v)].point];
          shape.corners.emplace_back(p.x, p.z);
        }
        tile[static_cast<std::size_t>(section)].push_back(shape);
        continue;
      }
      if (!tms.ReadLite()) break;
      TmsShape light;
      light.lightType = tms.lightType;
      light.lightStep = tms.lightStep;
      for (std::int32_t i = 0; i < tms.points.count(); ++i) light.corners.emplace_back(tms.points[i].x, tms.points[i].z);
      tile[3].push_back(light);
    }
    tms.ReadTileEnd();
  }
  return content;
}

}  // namespace bgrtest
