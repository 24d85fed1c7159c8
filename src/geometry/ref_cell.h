// A cell of the world grid: latitude bands of shrinking height, columns of 5062
// arc-seconds, each cell in four quarters.
#pragma once

#include <cstdint>

namespace bgr {

struct GeoAngle;

struct RefCell {
  std::int32_t quarter = 0;
  std::int32_t column = 0;
  std::int32_t band = 0;

  static RefCell Unrestricted() { return RefCell{0, -1, 0}; }
  bool Matches(const RefCell& other) const { return column == other.column && band == other.band; }
  // Finds the cell of a position; 1 on success, 0 when it has none.
  std::int32_t Set(const GeoAngle& latitude, const GeoAngle& longitude);
};

// Lower edges of the northern latitude bands 128..255, in degrees.
double BandEdge(int band);

}  // namespace bgr
