// The taxiway geometry of a TMS job: a ribbon for every taxiway segment, a joint
// (nothing, a straight quad or a fillet) where two segments meet, and the thin
// painted strip of a yellow line. Every quad goes through one emitter that lays
// pavement, a centre strip and light strings into the tiles.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "formats/working_units.h"
#include "geometry/texpoints.h"

namespace bgr {

class PointMarks;
class SegmentList;
class TaxiwayList;
class TileGrid;
struct Segment;

inline constexpr std::int32_t kPaveLayer = 0;
inline constexpr std::int32_t kCentreLayer = 2;
inline constexpr std::int32_t kLightLayer = 3;
inline constexpr double kLineWidth = kUnitsPerFoot;  // 1 ft of paint

// What a quad carries, besides its corners.
struct QuadStyle {
  bool pave = false;
  std::int32_t lineFlags = 0;  // bit 0 painted centre strip, bit 1 centre lights
  bool leftLights = false;
  bool rightLights = false;
  bool lightsOn = true;
  std::int32_t step = 0;  // light spacing in feet
};

struct PlanePoint {
  double x = 0;
  double z = 0;
};

// p1 to p2 is one end of the quad, across the way; p3 to p4 the other, back.
void DrawQuad(TileGrid& grid, const QuadStyle& style, const TEXPOINT& p1, const TEXPOINT& p2, const TEXPOINT& p3,
              const TEXPOINT& p4);
// Small quads between two quadratic curves, the outer and the inner side of a bend.
void DrawFillet(TileGrid& grid, const QuadStyle& style, PlanePoint outerFrom, PlanePoint outerControl,
                PlanePoint outerTo, PlanePoint innerFrom, PlanePoint innerControl, PlanePoint innerTo);
// The corners of a segment's ribbon, pulled back from its ends by the insets.
void BuildRibbon(Segment& segment, double insetStart, double insetEnd, double halfWidth);

// The pairs of segments that already have their joint. The table holds 6000
// pairs; once it is full a pair is no longer remembered.
class JoinedPairs {
 public:
  static constexpr std::int32_t kCapacity = 6000;
  void Clear();
  // True the first time a pair (in either order) is asked for.
  bool Remember(std::int32_t a, std::int32_t b);

 private:
  static constexpr std::uint64_t kEmpty = ~std::uint64_t{0};
  static std::uint64_t Key(std::int32_t a, std::int32_t b);
  std::vector<std::uint64_t> slots_;
  std::int32_t stored_ = 0;
  bool hasLastKey_ = false;  // the pair whose key is kEmpty
};

// A small airport is laid by one walk: a second thread would cost more than it saves.
inline constexpr std::int32_t kLeastSegmentsForTwoWalks = 1000;

// The whole step: from 'leastForTwoWalks' taxiway segments on, the pavement in
// one thread and the other layers in another. Each walks the whole network and
// lays only its own layers, so that every layer gets its polygons in the order
// of one walk, as from a single one.
void GenerateTaxiPolygons(const TaxiwayList& network, const PointMarks& marks, SegmentList& taxiList, TileGrid& grid,
                          std::int32_t leastForTwoWalks = kLeastSegmentsForTwoWalks);

class TaxiPolygons {
 public:
  // Reads the network and its marks, walks the taxiway segments (whose ribbons
  // it sets) and lays the quads into the grid.
  TaxiPolygons(const TaxiwayList& network, const PointMarks& marks, SegmentList& taxiList, TileGrid& grid);

  // The whole pass: every segment's ribbon and every joint, in walk order.
  void Generate();
  // No segment visited, no pair joined.
  void Reset();
  // The depth-first walk from one segment. It keeps its own stack, so that a
  // chain of 6000 segments needs no deep call stack, and visits in the order
  // of the plain recursion.
  void VisitSegment(std::int32_t index);
  void GenerateRibbon(std::int32_t index);
  void GenerateJoint(std::int32_t a, std::int32_t b, bool aAtStart, bool bAtStart);

  bool Visited(std::int32_t index) const { return visited_[static_cast<std::size_t>(index)] != 0; }
  void SetVisited(std::int32_t index) { visited_[static_cast<std::size_t>(index)] = 1; }

 private:
  struct Frame {
    std::int32_t segment;
    std::int32_t start, end;  // point numbers of its edge
    std::size_t first, last;  // its neighbours in candidates_
    std::size_t next;         // the neighbour being looked at
    bool endDone;             // the test at its end point is done for that neighbour
    bool pending;             // a joint waits for the neighbour's walk to come back
    bool aAtStart, bAtStart;
  };
  void Enter(std::int32_t index);
  void Neighbours(std::int32_t start, std::int32_t end, std::int32_t self);
  void BuildPointIndex();
  Segment& SegmentAt(std::int32_t index);

  const TaxiwayList& network_;
  const PointMarks& marks_;
  SegmentList& taxiList_;
  TileGrid& grid_;
  std::vector<char> visited_;
  JoinedPairs joined_;
  std::vector<Frame> stack_;
  std::vector<std::int32_t> candidates_;
  // (point number, segment number) for both ends of every segment, sorted, so
  // that the segments at a point come by rising number.
  std::vector<std::pair<std::int32_t, std::int32_t>> byPoint_;
};

}  // namespace bgr
