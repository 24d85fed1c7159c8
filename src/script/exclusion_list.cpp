#include "script/exclusion_list.h"

#include <cstdio>

#include "frame/text.h"

namespace bgr {
namespace {

constexpr double kFullCircle = 1296000.0;
constexpr double kHalfCircle = 648000.0;

}  // namespace

ExclusionList::ExclusionList(RunContext& ctx) : list_(ctx) { list_.Create(kListBytes); }

bool ExclusionList::Load(std::string_view path) {
  list_.Clear();
  areas_.clear();
  boxes_.clear();
  list_.Load(path);
  for (std::int32_t i = 0; i < list_.count(); ++i) {
    std::string line = list_.Get(i);
    if (line.compare(0, 4, "ARE ") == 0) {
      int area = 0;
      if (std::sscanf(line.c_str() + 4, "%d", &area) != 1) continue;
      std::size_t quote = line.find('"');
      // the text runs from behind the first quote to the line's last character, taken for the closing one
      std::string text = quote == std::string::npos || quote + 1 >= line.size()
                             ? std::string()
                             : line.substr(quote + 1, line.size() - quote - 2);
      areas_.push_back({area, text});
    } else if (line.compare(0, 4, "XCL ") == 0) {
      int area = 0;
      double south, west, north, east;
      unsigned flags = 0;
      if (std::sscanf(line.c_str() + 4, "%d %lf %lf %lf %lf %x", &area, &south, &west, &north, &east, &flags) != 6)
        continue;
      if ((flags & 1) == 0) continue;
      boxes_.push_back({area, south, west, north, east});
    }
  }
  return list_.count() > 0;
}

std::int32_t ExclusionList::FindArea(std::string_view path) const {
  std::int32_t best = kNoArea;
  std::size_t longest = 0;
  bool rooted = PathIsRooted(path);
  for (const AreaLine& line : areas_) {
    if (rooted) {
      std::size_t length = line.path.size();
      if (FindNoCase(path, line.path, static_cast<std::int32_t>(length)) != std::string_view::npos && length > longest) {
        best = line.area;
        longest = length;
      }
    } else if (line.path.size() >= path.size() &&
               FindNoCase(std::string_view(line.path).substr(0, path.size()), path,
                          static_cast<std::int32_t>(path.size())) == 0) {
      return line.area;  // the first match wins
    }
  }
  return best;
}

bool ExclusionList::IsExcluded(std::int32_t area, double lat, double lon) const {
  if (lon < -kHalfCircle) {
    lon += kFullCircle;
  } else if (lon > kHalfCircle) {
    lon -= kFullCircle;
  }
  for (const Box& box : boxes_) {
    if (area < box.area && box.south <= lat && lat <= box.north && box.west <= lon && lon <= box.east) return true;
  }
  return false;
}

}  // namespace bgr
