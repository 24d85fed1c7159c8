// The working unit of TMS generation and of the points of a TMS file: 256 to
// the foot, so that coordinates stay whole numbers where a BGR file holds feet.
#pragma once

#include <cstdint>

namespace bgr {

inline constexpr std::int32_t kUnitsPerFoot = 256;

// Feet of a working-unit value, for showing it (no cut).
constexpr double UnitsToFeet(double units) { return units / kUnitsPerFoot; }

}  // namespace bgr
