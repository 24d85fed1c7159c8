#include "formats/ply_content.h"

#include "formats/ply_reader.h"
#include "frame/file_access.h"
#include "frame/run_context.h"

namespace bgr {

PlyContent ReadPlyContent(std::string_view path) {
  PlyContent content;
  // the readers' warnings are theirs to give during -tm, not here
  QuietRun run;
  RunContext& ctx = run.ctx;
  if (!FileExists(ctx, path)) return content;
  PlyReader ply(ctx);
  if (!ply.Open(path, "rb")) return content;
  content.read = true;
  TEXPOINTS points;
  points.Attach(&ctx);
  TEXTURE polygon;
  for (;;) {
    points.SetCount(0);
    if (!ply.ReadPly(points, polygon, 0)) break;
    std::vector<TEXPOINT> corners;
    for (std::int32_t v = 0; v < polygon.count; ++v) corners.push_back(points[polygon.verts[static_cast<std::size_t>(v)].point]);
    content.polygons.push_back(std::move(corners));
  }
  ply.Rewind();
  PlyLight l;
  while (ply.ReadLgt(&l.kind, &l.x1, &l.z1, &l.x2, &l.z2, &l.count)) content.lights.push_back(l);
  content.lines = ply.lines();
  return content;
}

}  // namespace bgr
