// The exclusion list "excllist.txt": areas by the paths of their sources (ARE
// lines) and boxes in which nothing is built below a given area (XCL lines).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "script/string_list.h"

namespace bgr {

class RunContext;

inline constexpr const char* kExclusionFile = "excllist.txt";

class ExclusionList {
 public:
  static constexpr std::int32_t kNoArea = -2;
  static constexpr std::int32_t kListBytes = 262144;

  explicit ExclusionList(RunContext& ctx);
  // True when entries were loaded.
  bool Load(std::string_view path);
  std::int32_t FindArea(std::string_view path) const;
  bool IsExcluded(std::int32_t area, double lat, double lon) const;

 private:
  struct AreaLine {
    std::int32_t area;
    std::string path;
  };
  struct Box {
    std::int32_t area;
    double south, west, north, east;
  };
  STRING_LIST list_;
  // The lines that scan, parsed once, in the order of the list.
  std::vector<AreaLine> areas_;
  std::vector<Box> boxes_;
};

}  // namespace bgr
