#include "formats/bgr_file.h"
#include "frame/report.h"
#include "frame/text.h"
#include "geometry/texpoints.h"
#include "tools/commands.h"
#include "tools/replace_by_temp.h"

namespace bgr {
namespace {

// Adds all nodes of a file to the table; returns how many the file had.
std::int32_t ReadNodes(BgrFile& file, TEXPOINTS& points, std::string_view name, int& result) {
  std::int32_t seen = 0;
  double x, y, z;
  while (file.ReadNode(&x, &y, &z)) {
    if (points.count() >= points.capacity()) {
      result = 0;
      Report("BgrMerge too many nodes in %s", name);
    } else {
      points.Add(TruncToLong(x), TruncToLong(y), TruncToLong(z), -1);  // nodes in one place stay two
    }
    seen = WrapAdd(seen, 1);
  }
  return seen;
}

void CopyEdges(BgrFile& from, BgrFile& to, std::int32_t offset) {
  std::int32_t a, b, width, type, packed, flags;
  while (from.ReadEdge(&a, &b, &width, &type, &packed, &flags))
    to.WriteEdge(WrapAdd(a, offset), WrapAdd(b, offset), width, type, packed, flags);
}

}  // namespace

int BgrMerge(std::string_view source, std::string_view destination) {
  int result = 1;
  BgrFile src, dst, temp;
  if (!src.OpenRead(source)) {
    result = 0;
    Report("BgrMerge source file '%s' not found", source);
  }
  dst.OpenRead(destination);
  if (!temp.OpenWrite(kTempBgr)) {
    result = 0;
    Report("BgrMerge temp file '%s' not found", kTempBgr);
  }
  TEXPOINTS points;
  double lat = 0, lon = 0, third = 0;
  bool haveOrigin = dst.ReadOrigin(&lat, &lon, &third);
  std::int32_t offset = ReadNodes(dst, points, destination, result);
  double srcLat = 0, srcLon = 0, srcThird = 0;
  src.ReadOrigin(&srcLat, &srcLon, &srcThird);
  // a merge into a file that isn't there yet takes the source's origin
  if (haveOrigin) {
    temp.WriteOrigin(lat, lon, third);
  } else {
    temp.WriteOrigin(srcLat, srcLon, srcThird);
  }
  ReadNodes(src, points, source, result);
  temp.WriteNodes(points, -1, -1);
  CopyEdges(dst, temp, 0);
  CopyEdges(src, temp, offset);
  src.Close();
  dst.Close();
  temp.Close();
  ReplaceByTemp(result != 0, destination);
  return result;
}

}  // namespace bgr
