#include "geometry/simplify.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace bgr {

double SegmentPointDistance(PlanePoint a, PlanePoint b, PlanePoint p) {
  double dx = b.x - a.x, dz = b.z - a.z;
  double length2 = dx * dx + dz * dz;
  double t = length2 > 0 ? ((p.x - a.x) * dx + (p.z - a.z) * dz) / length2 : 0.0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(p.x - (a.x + t * dx), p.z - (a.z + t * dz));
}

namespace {

// Marks in 'kept' the points of first..last that the tolerance needs; a stack
// rather than recursion, so a ring of ten thousand corners can't overflow it.
void Thin(std::span<const PlanePoint> chain, std::size_t first, std::size_t last, double tolerance,
          std::vector<bool>& kept) {
  std::vector<std::pair<std::size_t, std::size_t>> work{{first, last}};
  while (!work.empty()) {
    auto [a, b] = work.back();
    work.pop_back();
    if (b <= a + 1) continue;
    double worst = -1;
    std::size_t at = a;
    for (std::size_t i = a + 1; i < b; ++i) {
      double d = SegmentPointDistance(chain[a], chain[b], chain[i]);
      if (d > worst) {
        worst = d;
        at = i;
      }
    }
    if (worst > tolerance) {
      kept[at] = true;
      work.emplace_back(a, at);
      work.emplace_back(at, b);
    }
  }
}

std::vector<std::size_t> Indexes(const std::vector<bool>& kept) {
  std::vector<std::size_t> out;
  for (std::size_t i = 0; i < kept.size(); ++i)
    if (kept[i]) out.push_back(i);
  return out;
}

}  // namespace

std::vector<std::size_t> SimplifyChain(std::span<const PlanePoint> chain, const std::vector<bool>& keep,
                                       double tolerance) {
  if (chain.empty()) return {};
  std::vector<bool> kept(chain.size(), false);
  kept.front() = kept.back() = true;
  for (std::size_t i = 0; i < keep.size() && i < chain.size(); ++i)
    if (keep[i]) kept[i] = true;
  // each stretch between two fixed points is thinned on its own
  std::size_t from = 0;
  for (std::size_t i = 1; i < chain.size(); ++i) {
    if (!kept[i]) continue;
    Thin(chain, from, i, tolerance, kept);
    from = i;
  }
  return Indexes(kept);
}

std::vector<std::size_t> SimplifyRing(std::span<const PlanePoint> ring, double tolerance) {
  std::size_t n = ring.size();
  if (n <= 3) {
    std::vector<std::size_t> all(n);
    for (std::size_t i = 0; i < n; ++i) all[i] = i;
    return all;
  }
  // the ring is cut at its first corner and the corner farthest from it, so
  // that both halves are open chains with fixed ends
  std::size_t far = 1;
  double farthest = -1;
  for (std::size_t i = 1; i < n; ++i) {
    double d = std::hypot(ring[i].x - ring[0].x, ring[i].z - ring[0].z);
    if (d > farthest) {
      farthest = d;
      far = i;
    }
  }
  std::vector<PlanePoint> closed(ring.begin(), ring.end());
  closed.push_back(ring[0]);
  std::vector<bool> kept(n + 1, false);
  kept[0] = kept[far] = kept[n] = true;
  Thin(closed, 0, far, tolerance, kept);
  Thin(closed, far, n, tolerance, kept);
  kept.pop_back();
  std::vector<std::size_t> out = Indexes(kept);
  if (out.size() == 2) {
    // a ring needs a third corner: the one farthest from the line of the two
    std::size_t third = 0;
    double worst = -1;
    for (std::size_t i = 0; i < n; ++i) {
      double d = SegmentPointDistance(ring[out[0]], ring[out[1]], ring[i]);
      if (d > worst) {
        worst = d;
        third = i;
      }
    }
    if (worst > 0) {
      out.push_back(third);
      std::sort(out.begin(), out.end());
    }
  }
  return out;
}

RingFit FitRing(std::span<const PlanePoint> ring, std::size_t maxCorners, double start) {
  RingFit fit;
  if (ring.size() <= maxCorners) {
    fit.kept.resize(ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i) fit.kept[i] = i;
    return fit;
  }
  double tolerance = start > 0 ? start : 0.5;
  // a ring's kept corners only shrink as the tolerance grows, and at the ring's
  // own size they are three or four
  for (int step = 0; step < 80; ++step, tolerance *= 2) {
    fit.kept = SimplifyRing(ring, tolerance);
    fit.tolerance = tolerance;
    if (fit.kept.size() <= maxCorners) break;
  }
  return fit;
}

double RingArea2(std::span<const PlanePoint> ring) {
  double sum = 0;
  for (std::size_t i = 0, n = ring.size(); i < n; ++i) {
    const PlanePoint& a = ring[i];
    const PlanePoint& b = ring[(i + 1) % n];
    sum += a.x * b.z - b.x * a.z;
  }
  return sum;
}

}  // namespace bgr
