// Makes airports of a given size for the benchmarks: runways, a taxiway
// grid whose links bend, junctions, spurs that end near runways and near other
// taxiways, crossing links, aprons of up to 255 corners and light strings. The
// dense layout packs a straight grid so tightly that its tiles overflow their
// point tables, as the largest real airports do. The same size and seed always
// give the same bytes.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/bgr_builder.h"

namespace bgrtest {

enum class Layout { kLinked, kDense };

struct AirportSize {
  Layout layout = Layout::kLinked;
  std::int32_t edges = 6000;    // at most; the grid takes what is left after runways and spurs
  std::int32_t points = 12000;  // filled up with points that no edge uses (linked layout)
  std::int32_t aprons = 40;
  std::int32_t lights = 2000;
  std::uint32_t seed = 1;
};

struct Airport {
  std::string bgr;
  std::string ply;
  std::int32_t pointCount = 0;
  std::int32_t edgeCount = 0;
};

class AirportGenerator {
 public:
  explicit AirportGenerator(const AirportSize& size) : size_(size), seed_(size.seed) {}

  Airport Make() { return size_.layout == Layout::kDense ? MakeDense() : MakeLinked(); }

 private:
  Airport MakeLinked() {
    constexpr double kSpacing = 400;  // ft between grid nodes
    constexpr std::int32_t kRunways = 4, kRunwayEdges = 8;
    // links of two edges each, spurs of one: 4 G (G - 1) + G ≈ what is left
    std::int32_t budget = size_.edges - kRunways * kRunwayEdges;
    std::int32_t g = 2;
    while (4 * (g + 1) * g + 2 * (g + 1) <= budget) ++g;
    double span = (g - 1) * kSpacing;

    // runways along the four sides, 600 ft outside the grid, in 8 edges each
    for (std::int32_t r = 0; r < kRunways; ++r) {
      auto first = static_cast<std::int32_t>(points_.size());
      for (std::int32_t k = 0; k <= kRunwayEdges; ++k) {
        double t = -300 + (span + 600) * k / kRunwayEdges;
        double x = r < 2 ? t : (r == 2 ? -600 : span + 600);
        double z = r < 2 ? (r == 0 ? -600 : span + 600) : t;
        Point(x, z);
      }
      for (std::int32_t k = 0; k < kRunwayEdges; ++k) Edge(first + k, first + k + 1, 150, 0, 15);
    }
    // the grid nodes, a little off their places
    std::int32_t grid = static_cast<std::int32_t>(points_.size());
    for (std::int32_t i = 0; i < g; ++i)
      for (std::int32_t j = 0; j < g; ++j) Point(i * kSpacing + Jitter(20), j * kSpacing + Jitter(20));
    auto node = [&](std::int32_t i, std::int32_t j) { return grid + i * g + j; };
    // each link bends at a point of its own: two edges
    for (std::int32_t i = 0; i < g; ++i) {
      for (std::int32_t j = 0; j < g; ++j) {
        for (std::int32_t d = 0; d < 2; ++d) {
          std::int32_t ni = i + (d == 0), nj = j + (d == 1);
          if (ni >= g || nj >= g) continue;
          std::int32_t a = node(i, j), b = node(ni, nj);
          double mx = (X(a) + X(b)) / 2 + Jitter(60), mz = (Z(a) + Z(b)) / 2 + Jitter(60);
          std::int32_t m = Point(mx, mz);
          std::int32_t flags = Next(8) == 0 ? 2 : 15;  // some painted lines only
          Edge(a, m, 50 + Next(50), 1, flags);
          Edge(m, b, 50 + Next(50), 1, flags);
        }
      }
    }
    // spurs from the outer nodes: some end near a runway, some near the next link
    for (std::int32_t k = 0; k < g && Room(1); ++k) {
      std::int32_t a = node(k, 0);
      Edge(a, Point(X(a) + Jitter(30), -600 + 60 + Jitter(80)), 60, 1, 15);
      if (!Room(1)) break;
      std::int32_t c = node(k, g - 1);
      Edge(c, Point(X(c) + 190, Z(c) - 120 - Next(40)), 60, 1, 15);
    }
    while (Room(1) && static_cast<std::int32_t>(points_.size()) + 2 <= size_.points) {
      // links that cross the grid without a shared point
      double x = Next(static_cast<std::uint32_t>(span)), z = Next(static_cast<std::uint32_t>(span));
      Edge(Point(x, z), Point(x + 150 + Next(200), z + 150 + Next(200)), 40, 1, 15);
    }
    while (static_cast<std::int32_t>(points_.size()) < size_.points) Point(Next(10000) - 5000.0, Next(10000) - 5000.0);

    return Files(span, 253);
  }

  // A straight grid of junctions 420 ft apart, one link in 16 left out, two
  // runways along its sides and spurs from its edge towards them.
  Airport MakeDense() {
    constexpr double kSpacing = 420;
    constexpr std::int32_t kRunways = 2, kRunwayEdges = 4;
    std::int32_t budget = size_.edges - kRunways * kRunwayEdges;
    std::int32_t g = 2;
    while (2 * (g + 1) * g <= budget) ++g;
    double span = (g - 1) * kSpacing;
    for (std::int32_t r = 0; r < kRunways; ++r) {
      auto first = static_cast<std::int32_t>(points_.size());
      for (std::int32_t k = 0; k <= kRunwayEdges; ++k) {
        double t = span * k / kRunwayEdges;
        Point(r == 0 ? t : -700, r == 0 ? -700 : t);
      }
      for (std::int32_t k = 0; k < kRunwayEdges; ++k) Edge(first + k, first + k + 1, 200, 0, 15);
    }
    std::int32_t grid = static_cast<std::int32_t>(points_.size());
    for (std::int32_t i = 0; i < g; ++i)
      for (std::int32_t j = 0; j < g; ++j) Point(i * kSpacing + Jitter(25), j * kSpacing + Jitter(25));
    auto node = [&](std::int32_t i, std::int32_t j) { return grid + i * g + j; };
    for (std::int32_t i = 0; i < g; ++i) {
      for (std::int32_t j = 0; j < g; ++j) {
        for (std::int32_t d = 0; d < 2; ++d) {
          std::int32_t ni = i + (d == 0), nj = j + (d == 1);
          if (ni >= g || nj >= g || Next(16) == 0) continue;
          std::int32_t flags = Next(10) == 0 ? 2 : 15;
          Edge(node(i, j), node(ni, nj), 60 + Next(60), 1, flags);
        }
      }
    }
    for (std::int32_t k = 0; k < g && Room(2); ++k) {
      std::int32_t a = node(k, 0), c = node(0, k);
      Edge(a, Point(X(a) + Jitter(40), -700 + 80 + Jitter(60)), 75, 1, 15);
      Edge(c, Point(-700 + 80 + Jitter(60), Z(c) + Jitter(40)), 75, 1, 15);
    }
    return Files(span, 197);
  }

  // The BGR and PLY bytes of what was drawn, with aprons of 3 to 2 + corners
  // corners and light strings spread over span.
  Airport Files(double span, std::uint32_t corners) {
    Airport out;
    BgrBuilder b;
    b.Origin(129060.0, 52136.0);
    for (const auto& p : points_) b.Node(std::trunc(p.first), 0, std::trunc(p.second));
    for (const auto& e : edges_) b.Edge(e[0], e[1], 16840 + std::min(std::max(e[2], 25), 500) * 128 / 50, e[4], e[3]);
    out.bgr = b.End().data;
    out.ply = "ORG 129060.0 52136.0\n";
    for (std::int32_t k = 0; k < size_.aprons; ++k) Apron(out.ply, Next(static_cast<std::uint32_t>(span)),
                                                        Next(static_cast<std::uint32_t>(span)), 3 + static_cast<std::int32_t>(Next(corners)));
    for (std::int32_t k = 0; k < size_.lights; ++k) {
      std::int32_t x = static_cast<std::int32_t>(Next(static_cast<std::uint32_t>(span)));
      std::int32_t z = static_cast<std::int32_t>(Next(static_cast<std::uint32_t>(span)));
      out.ply += "LGT " + std::to_string(Next(6)) + " " + std::to_string(x) + " " + std::to_string(z) + " " +
                 std::to_string(x + Next(800)) + " " + std::to_string(z + Next(800)) + " 8\n";
    }
    out.pointCount = static_cast<std::int32_t>(points_.size());
    out.edgeCount = static_cast<std::int32_t>(edges_.size());
    return out;
  }

  std::int32_t Next(std::uint32_t n) {
    seed_ = seed_ * 1664525u + 1013904223u;
    return n == 0 ? 0 : static_cast<std::int32_t>((seed_ >> 8) % n);
  }
  double Jitter(std::int32_t reach) { return Next(static_cast<std::uint32_t>(2 * reach + 1)) - reach; }
  std::int32_t Point(double x, double z) {
    points_.emplace_back(x, z);
    return static_cast<std::int32_t>(points_.size()) - 1;
  }
  double X(std::int32_t p) const { return points_[static_cast<std::size_t>(p)].first; }
  double Z(std::int32_t p) const { return points_[static_cast<std::size_t>(p)].second; }
  void Edge(std::int32_t a, std::int32_t b, std::int32_t width, std::int32_t type, std::int32_t flags) {
    edges_.push_back({a, b, width, type, flags});
  }
  bool Room(std::int32_t n) const { return static_cast<std::int32_t>(edges_.size()) + n <= size_.edges; }
  // A star-shaped ring of n corners round (x, z), closed by a PLY line.
  void Apron(std::string& ply, double x, double z, std::int32_t n) {
    for (std::int32_t k = 0; k < n; ++k) {
      double a = 2 * 3.14159265358979 * k / n, r = 300 + Next(150);
      ply += "POI " + std::to_string(static_cast<std::int32_t>(x + r * std::cos(a))) + " " +
             std::to_string(static_cast<std::int32_t>(z + r * std::sin(a))) + "\n";
    }
    ply += "PLY apron\n";
  }

  AirportSize size_;
  std::uint32_t seed_;
  std::vector<std::pair<double, double>> points_;
  std::vector<std::array<std::int32_t, 5>> edges_;  // from, to, width ft, type, flags
};

inline Airport MakeAirport(const AirportSize& size) { return AirportGenerator(size).Make(); }

}  // namespace bgrtest
