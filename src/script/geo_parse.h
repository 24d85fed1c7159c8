// Positions of a script: a hemisphere letter and degrees, minutes and seconds,
// as "N47:26:56.5", to arc-seconds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace bgr {

// 1, or 0 with the value 0.0 when the first letter is none of the two.
std::int32_t ParseLatitude(std::string_view text, double* value);
std::int32_t ParseLongitude(std::string_view text, double* value);

// The other way: decimal degrees as a script writes them, with seconds to
// 1/10000 (about 0.01 ft), "N35:51:0.1968".
std::string FormatLatitude(double degrees);
std::string FormatLongitude(double degrees);

}  // namespace bgr
