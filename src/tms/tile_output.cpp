#include "tms/tile_output.h"

#include <algorithm>

#include "formats/tms_file.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "tms/taxi_polygons.h"
#include "tms/tile_grid.h"

namespace bgr {

bool TileOutput::Write(std::string_view name, double originLat, double originLon) {
  TmsFile& tms = tms_;
  bool open = tms.OpenReplace(ctx_, name);
  tms.WriteOrigin({originLat, originLon, 0.0});
  tms.WriteHeader();
  for (std::int32_t x = 0; x < kTilesPerSide; ++x) {
    for (std::int32_t z = 0; z < kTilesPerSide; ++z) {
      tms.tileX = x;
      tms.tileZ = z;
      tms.WriteTile();
      TileRecord& tile = grid_.Tile(x, z);
      for (std::int32_t layer = 0; layer < kLayers; ++layer) {
        tms.points.Copy(tile.points[static_cast<std::size_t>(layer)]);
        if (tms.points.count() == 0) {
          tms.polygon.count = 0;
          WriteTileSection(layer);
          continue;
        }
        TextureList& list = tile.polygons[static_cast<std::size_t>(layer)];
        for (const TEXTURE* polygon = list.First(); polygon != nullptr; polygon = list.Next()) {
          tms.polygon.Copy(*polygon);
          WriteTileSection(layer);
        }
      }
      tms.WriteTileEnd();
    }
  }
  bool closed = tms.Close();
  return open && closed;
}

void TileOutput::WriteTileSection(std::int32_t layer) {
  TmsFile& tms = tms_;
  switch (layer) {
    case 0: tms.WritePave(); break;
    case 1: tms.WriteEdmk(); break;
    case 2: tms.WriteCntr(); break;
    default: {
      // the first string of a tile finds the tile's light points in the writer
      if (lastLayer_ != kLightLayer) lightPoints_.Copy(tms.points);
      auto all = tms.points.EditAll();
      std::int32_t n = std::min(tms.polygon.count, tms.points.capacity());
      for (std::int32_t v = 0; v < n; ++v) {
        TexVertex& vertex = tms.polygon.verts[static_cast<std::size_t>(v)];
        std::int32_t p = vertex.point;
        all[static_cast<std::size_t>(v)] = p >= 0 && p < lightPoints_.count() ? lightPoints_[p] : TEXPOINT{};
        vertex.point = v;
      }
      tms.lightType = (tms.polygon.attr >> 8) & 255;
      tms.lightStep = static_cast<float>(tms.polygon.attr & 255);
      tms.points.SetCount(n);
      tms.WriteLite();
      break;
    }
  }
  lastLayer_ = layer;
}

}  // namespace bgr
