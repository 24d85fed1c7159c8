// Thinning of map lines and rings: a chain keeps its ends and every point the
// caller marks (junctions), and every point it drops lies within the tolerance
// of the segment that replaces it.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace bgr {

struct PlanePoint {
  double x = 0, z = 0;
};

// Distance from p to the segment a-b.
double SegmentPointDistance(PlanePoint a, PlanePoint b, PlanePoint p);

// The indexes kept of an open chain, in order: the first, the last and every
// index with keep set, and enough others that no dropped point lies farther
// than 'tolerance' from the kept segment over it. 'keep' may be empty.
std::vector<std::size_t> SimplifyChain(std::span<const PlanePoint> chain, const std::vector<bool>& keep,
                                       double tolerance);

// A closed ring given without its closing corner: the indexes kept at 'tolerance'
// (at least three when the ring has three that are not on one line).
std::vector<std::size_t> SimplifyRing(std::span<const PlanePoint> ring, double tolerance);

struct RingFit {
  std::vector<std::size_t> kept;
  double tolerance = 0;  // 0 when the ring fitted as it was
};
// The smallest tolerance of the doubling series from 'start' at which the ring
// has at most 'maxCorners' corners.
RingFit FitRing(std::span<const PlanePoint> ring, std::size_t maxCorners, double start);

// Twice the signed area (counter-clockwise positive).
double RingArea2(std::span<const PlanePoint> ring);

}  // namespace bgr
