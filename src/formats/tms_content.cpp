#include "formats/tms_content.h"

#include "formats/tms_file.h"

namespace bgr {

std::size_t TmsContent::Count(int section) const {
  std::size_t n = 0;
  for (const auto& column : tiles)
    for (const auto& tile : column) n += tile[static_cast<std::size_t>(section)].size();
  return n;
}

TmsContent ReadTmsContent(RunContext& ctx, std::string_view path) {
  TmsFile tms;
  TmsContent content;
  if (!tms.OpenRead(ctx, path) || !tms.ReadOrigin(content.origin) || !tms.ReadHeader()) {
    tms.file.Abandon();
    return content;
  }
  content.read = true;
  content.tileFeet = tms.tileFeet;
  content.lowl = tms.lowl;
  bool inOrder = true, pointsKnown = true;
  while (pointsKnown && tms.ReadTile()) {
    if (tms.tileX < 0 || tms.tileX >= kTmsGrid || tms.tileZ < 0 || tms.tileZ >= kTmsGrid) break;
    inOrder = inOrder && tms.tileX * kTmsGrid + tms.tileZ == content.tilesRead;
    auto& tile = content.tiles[static_cast<std::size_t>(tms.tileX)][static_cast<std::size_t>(tms.tileZ)];
    for (;;) {
      int section = tms.ReadPolygonLayer();
      if (section >= 0) {
        // an empty section still reads as one polygon of no corners
        if (tms.polygon.count == 0) continue;
        TmsShape shape;
        for (std::int32_t v = 0; v < tms.polygon.count && pointsKnown; ++v) {
          std::int32_t point = tms.polygon.verts[static_cast<std::size_t>(v)].point;
          // a corner that names no point of its section marks the file as damaged
          pointsKnown = point >= 0 && point < tms.points.count();
          if (pointsKnown) shape.corners.emplace_back(tms.points[point].x, tms.points[point].z);
        }
        if (!pointsKnown) break;
        tile[static_cast<std::size_t>(section)].push_back(std::move(shape));
        continue;
      }
      if (!tms.ReadLite()) break;
      if (tms.points.count() == 0) continue;
      TmsShape light;
      light.lightType = tms.lightType;
      light.lightStep = tms.lightStep;
      for (std::int32_t i = 0; i < tms.points.count(); ++i) light.corners.emplace_back(tms.points[i].x, tms.points[i].z);
      tile[3].push_back(std::move(light));
    }
    if (!pointsKnown || !tms.ReadTileEnd()) break;
    ++content.tilesRead;
  }
  content.complete = inOrder && pointsKnown && content.tilesRead == kTmsGrid * kTmsGrid && tms.file.ReadTag("<endo>") &&
                     tms.file.Tell() == tms.file.Length();
  tms.file.Abandon();
  return content;
}

}  // namespace bgr
