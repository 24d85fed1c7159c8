// What the type and flags words of a network edge mean. A BGR file holds the
// types 0 and 1; the others are made by the TMS job and live only inside it.
#pragma once

#include <cstdint>

namespace bgr {

inline constexpr std::int32_t kRunway = 0;
inline constexpr std::int32_t kTaxiway = 1;
inline constexpr std::int32_t kExitStub = 100;
inline constexpr std::int32_t kShortLink = 101;
inline constexpr std::int32_t kYellowLine = 102;

// Flag bits, read one by one; a stored 0 means all of them.
inline constexpr std::int32_t kPaved = 1;
inline constexpr std::int32_t kPaintedLine = 2;
inline constexpr std::int32_t kCentreLightFlag = 4;
inline constexpr std::int32_t kEdgeLightFlag = 8;
inline constexpr std::int32_t kAllFlags = 15;

constexpr std::int32_t EdgeFlags(std::int32_t stored) { return stored == 0 ? kAllFlags : stored; }
// A taxiway with a painted line and nothing else (only the low four bits count).
constexpr bool IsYellowLine(std::int32_t type, std::int32_t stored) {
  return type == kTaxiway && (EdgeFlags(stored) & kAllFlags) == kPaintedLine;
}

}  // namespace bgr
