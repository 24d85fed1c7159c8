// Free functions of the triangulation; the polygon's own operations are members
// of TEXTURE.
#pragma once

#include <cstdint>
#include <span>

#include "geometry/texpoints.h"

namespace bgr {

// True when p lies inside or on the triangle a, b, c (counter-clockwise).
bool InsideTriangle(double ax, double ay, double bx, double by, double cx, double cy, double px, double py);
bool IsEar(const TEXPOINTS& points, std::int32_t u, std::int32_t v, std::int32_t w, std::int32_t nv,
           std::span<const std::int32_t> work);
inline constexpr double kRadiansPerDegree = 0.017453292519943295;
// atan(q) in degrees, cut toward zero to whole ones: as atan gives it, without
// calling it but near a whole degree.
std::int32_t WholeDegreesOfAtan(double q);
// Whole degrees clockwise from the first axis: (0,0) to (1,1) is 45.
std::int32_t EdgeBearing(std::int32_t a1, std::int32_t b1, std::int32_t a2, std::int32_t b2);
// -179 .. 180
std::int32_t BearingDifference(std::int32_t from, std::int32_t to);

}  // namespace bgr
