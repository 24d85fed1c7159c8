// A PLY companion read whole, for the programs that show or check it: its
// polygons as drawn (a corner that repeats another keeps its place), its
// lights, and its lines as the readers split them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/texpoints.h"

namespace bgr {

struct PlyLight {
  std::int32_t kind = 0, x1 = 0, z1 = 0, x2 = 0, z2 = 0;
  std::int32_t count = 1;  // lights from the first point to the second
};

struct PlyContent {
  bool read = false;
  std::vector<std::vector<TEXPOINT>> polygons;  // corners in feet, y 0
  std::vector<PlyLight> lights;
  std::vector<std::string> lines;  // of at most 254 characters, without their line feeds
};

// Reads through the network's PLY reader; a file that doesn't open reads as
// nothing, with no report line.
PlyContent ReadPlyContent(std::string_view path);

}  // namespace bgr
