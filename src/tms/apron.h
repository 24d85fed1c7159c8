// Aprons and other paved areas: the polygons of the PLY companion, measured
// into the bounding box on the first pass and triangulated into the pavement
// layer on the second.
#pragma once

#include <cstdint>

namespace bgr {

class TmsJob;
class TEXPOINTS;
class TEXTURE;

enum class ApronPass : std::int32_t { kMeasure = 0, kGenerate = 1 };

void GenerateApron(TmsJob& job, ApronPass pass);
void GenerateApronPolygons(TmsJob& job, TEXPOINTS& points, TEXTURE& polygon);
// The hash by which a polygon that repeats the one before it is told: over the
// corners in feet, in 32-bit arithmetic that wraps.
std::int32_t ApronHash(const TEXPOINTS& points, const TEXTURE& polygon);

}  // namespace bgr
