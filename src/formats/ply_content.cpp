#include "formats/ply_content.h"

#include "formats/taxiway_list.h"
#include "frame/file_access.h"
#include "frame/line_reader.h"
#include "frame/run_context.h"

namespace bgr {

PlyContent ReadPlyContent(std::string_view path) {
  PlyContent content;
  // the readers' warnings are theirs to give during -tm, not here
  QuietRun run;
  RunContext& ctx = run.ctx;
  if (!FileExists(ctx, path)) return content;
  TaxiwayList net(ctx);
  net.plyName = std::string(path);
  if (!net.OpenPly("r")) return content;
  content.read = true;
  TEXPOINTS points;
  points.Attach(&ctx);
  TEXTURE polygon;
  for (;;) {
    points.SetCount(0);
    if (!net.ReadPly(points, polygon, 0)) break;
    std::vector<TEXPOINT> corners;
    for (std::int32_t v = 0; v < polygon.count; ++v) corners.push_back(points[polygon.verts[static_cast<std::size_t>(v)].point]);
    content.polygons.push_back(std::move(corners));
  }
  net.RewindPly();
  PlyLight l;
  while (net.ReadLgt(&l.kind, &l.x1, &l.z1, &l.x2, &l.z2, &l.count)) content.lights.push_back(l);
  Stream text = WrapFileOpen(ctx, path, "rb");
  for (std::string line; ReadLimitedLine(text.get(), line);) content.lines.push_back(line);
  return content;
}

}  // namespace bgr
