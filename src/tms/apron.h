// Aprons and other paved areas: the polygons of the PLY companion, measured
// into the bounding box on the first pass and triangulated into the pavement
// layer on the second.
#pragma once

#include <cstdint>

#include "geometry/texpoints.h"

namespace bgr {

class PlyReader;
class RunContext;
class TileGrid;
struct Bounds;

// What becomes of the next polygon of the PLY companion.
enum class ApronFate : std::int32_t {
  kEnd,      // no polygon is left
  kTooFew,   // fewer than 3 corners: left out without a word
  kRepeat,   // the same hash as the polygon made before it: made once
  kComplex,  // corners that fell on corners of the same polygon: left out
  kMade,     // to be made; its points are in working units
};

// Reads the next polygon as both apron passes read it; lastHash is the hash of
// the polygon last made, 0 at the start.
ApronFate NextApron(PlyReader& ply, TEXPOINTS& points, TEXTURE& polygon, std::int32_t& lastHash);

// Hands each triangle of a polygon that NextApron made to sink(a, b, c), in
// order; false when the triangulation gave none.
template <class Sink>
bool ForEachApronTriangle(TEXPOINTS& points, TEXTURE& polygon, Sink&& sink) {
  if (polygon.count < 3) return false;
  polygon.SetFlat(polygon.count, 0);
  auto corner = [&](std::int32_t n) { return n >= 0 && n < points.count() ? points[n] : TEXPOINT{}; };
  bool any = false;
  for (std::int32_t index = 0;; ++index) {
    const Triple* triple = polygon.Triangle(points, index, 0);
    if (triple == nullptr) return any;
    any = true;
    sink(corner((*triple)[0]), corner((*triple)[1]), corner((*triple)[2]));
  }
}

// The first pass: the apron polygons grow the bounding box; none is made yet.
void MeasureAprons(RunContext& ctx, PlyReader& ply, Bounds& bounds);
// The second pass: the apron polygons go into the tiles.
void GenerateApron(RunContext& ctx, PlyReader& ply, TileGrid& grid);
void GenerateApronPolygons(RunContext& ctx, TileGrid& grid, TEXPOINTS& points, TEXTURE& polygon);
// The hash by which a polygon that repeats the one before it is told: over the
// corners in feet, in 32-bit arithmetic that wraps.
std::int32_t ApronHash(const TEXPOINTS& points, const TEXTURE& polygon);

}  // namespace bgr
