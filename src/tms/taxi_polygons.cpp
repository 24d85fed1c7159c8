#include "tms/taxi_polygons.h"

#include <algorithm>
#include <exception>
#include <thread>

#include "frame/int32_math.h"
#include "geometry/planar.h"
#include "tms/tile_grid.h"
#include "tms/tms_job.h"

namespace bgr {
namespace {

constexpr double kJunctionInset = 38400.0;   // 150 ft: a ribbon stops short of a junction
constexpr double kLeastRibbon = 6400.0;      // 25 ft: what an inset ribbon keeps at least
constexpr double kFilletStep = 6400.0;       // 25 ft of curve to a fillet quad
constexpr std::int32_t kMostFilletSteps = 25;
constexpr std::int32_t kLeastLitFilletSteps = 7;
constexpr double kLeastLitJointEdge = 76800.0;  // 300 ft
constexpr std::int32_t kRibbonLightStep = 100;
constexpr std::int32_t kJointLightStep = 25;
constexpr std::int32_t kEdgeLightType = 256;  // type 1 in the high byte of the light word

constexpr double kStraightTurn = 0.3490658503988659;      // 20 degrees
constexpr double kHairpinTurn = 2.6179938779914944;       // 150 degrees
constexpr double kSharpTurn = 1.8325957145940461;         // 105 degrees
constexpr double kSharpJunctionTurn = 1.7453292519943295;  // 100 degrees
constexpr double kLeastFilletCrossing = 0.5235987755982988;  // 30 degrees

constexpr std::int32_t kCentreStrip = 1;
constexpr std::int32_t kCentreLights = 2;

double Distance(const TEXPOINT& p, PlanePoint q) { return PointDistance(p.x, p.z, q.x, q.z); }

// x1 + (x2 - x1) * distance / total, likewise z; nothing for a total of 0.
void PointAlong(const TEXPOINT& a, const TEXPOINT& b, double distance, double total, double* x, double* z) {
  if (total == 0) return;
  *x = a.x + (double(b.x) - a.x) * distance / total;
  *z = a.z + (double(b.z) - a.z) * distance / total;
}

// The two points of a strip 1 ft wide in the middle of a quad's end; false when
// the end is too narrow for it.
bool StripEnds(const TEXPOINT& a, const TEXPOINT& b, double* x1, double* z1, double* x2, double* z2) {
  double across = PointDistance(a.x, a.z, b.x, b.z);
  double margin = (across - kLineWidth) / 2.0;
  if (margin <= 0) return false;
  PointAlong(a, b, margin, across, x1, z1);
  PointAlong(a, b, margin + kLineWidth, across, x2, z2);
  return true;
}

// The integer mean of two coordinates, cut toward zero.
std::int32_t Mid(std::int32_t a, std::int32_t b) { return WrapAdd(a, b) / 2; }

std::int32_t LineFlagsOf(std::int32_t flags) {
  return ((flags & kPaintedLine) ? kCentreStrip : 0) | ((flags & kCentreLightFlag) ? kCentreLights : 0);
}

TEXPOINT Whole(PlanePoint p) { return {TruncToLong(p.x), 0, TruncToLong(p.z)}; }

PlanePoint Mean(PlanePoint a, PlanePoint b) { return {(a.x + b.x) / 2, (a.z + b.z) / 2}; }

PlanePoint AsPlane(const TEXPOINT& p) { return {double(p.x), double(p.z)}; }

}  // namespace

void DrawQuad(TileGrid& grid, const QuadStyle& style, const TEXPOINT& p1, const TEXPOINT& p2, const TEXPOINT& p3,
              const TEXPOINT& p4) {
  if (style.pave) grid.ClipQuad(kPaveLayer, p1.x, p1.z, p2.x, p2.z, p3.x, p3.z, p4.x, p4.z);
  if (style.lineFlags & kCentreStrip) {
    double x1 = 0, z1 = 0, x2 = 0, z2 = 0, x3 = 0, z3 = 0, x4 = 0, z4 = 0;
    if (StripEnds(p1, p2, &x1, &z1, &x2, &z2) && StripEnds(p3, p4, &x3, &z3, &x4, &z4)) {
      grid.ClipQuad(kCentreLayer, TruncToLong(x1), TruncToLong(z1), TruncToLong(x2), TruncToLong(z2),
                    TruncToLong(x3), TruncToLong(z3), TruncToLong(x4), TruncToLong(z4));
    }
  }
  if (!style.lightsOn) return;
  std::int32_t step = style.step & 255;
  if (style.lineFlags & kCentreLights) {
    grid.ClipLine(kLightLayer, Mid(p1.x, p2.x), Mid(p1.z, p2.z), Mid(p3.x, p4.x), Mid(p3.z, p4.z), step);
  }
  if (style.leftLights) grid.ClipLine(kLightLayer, p1.x, p1.z, p4.x, p4.z, kEdgeLightType + step);
  if (style.rightLights) grid.ClipLine(kLightLayer, p2.x, p2.z, p3.x, p3.z, kEdgeLightType + step);
}

void DrawFillet(TileGrid& grid, const QuadStyle& style, PlanePoint outerFrom, PlanePoint outerControl,
                PlanePoint outerTo, PlanePoint innerFrom, PlanePoint innerControl, PlanePoint innerTo) {
  TEXPOINT o0 = Whole(outerFrom), o1 = Whole(outerControl), o2 = Whole(outerTo);
  TEXPOINT i0 = Whole(innerFrom), i1 = Whole(innerControl), i2 = Whole(innerTo);
  PlanePoint m0 = Mean(outerFrom, innerFrom), m1 = Mean(outerControl, innerControl), m2 = Mean(outerTo, innerTo);
  double length = PointDistance(m0.x, m0.z, m1.x, m1.z) + PointDistance(m1.x, m1.z, m2.x, m2.z);
  std::int32_t steps = std::clamp(TruncToLong(length / kFilletStep), 1, kMostFilletSteps);
  QuadStyle quad = style;
  quad.step = kJointLightStep;
  if (steps < kLeastLitFilletSteps) quad.leftLights = quad.rightLights = false;
  TEXPOINT previousOuter, previousInner;
  for (std::int32_t k = 0; k <= steps; ++k) {
    double t = k == steps ? 1.0 : double(k) / steps;
    TEXPOINT outer, inner;
    outer.SetOnCurve(o0, o1, o2, t);
    inner.SetOnCurve(i0, i1, i2, t);
    if (k != 0) {
      quad.lightsOn = k % 2 == 0;  // light strings on every other quad
      DrawQuad(grid, quad, previousInner, previousOuter, outer, inner);
    }
    previousOuter = outer;
    previousInner = inner;
  }
}

void BuildRibbon(Segment& segment, double insetStart, double insetEnd, double halfWidth) {
  PlaneLine line = segment.line;
  if ((insetStart != 0 || insetEnd != 0) && line.length > kLeastRibbon) {
    double room = line.length - kLeastRibbon;
    if (line.length - (insetStart + insetEnd) < kLeastRibbon) {
      if (insetStart == 0) {
        insetEnd = room;
      } else if (insetEnd == 0) {
        insetStart = room;
      } else {
        insetStart = insetEnd = room / 2;
      }
    }
    line.Extend(-insetStart, -insetEnd);
  }
  PlaneLine left = line, right = line;
  left.Shift(halfWidth);
  right.Shift(-halfWidth);
  auto& c = segment.corners;
  c = {};
  left.GetEndsLong(&c[0].x, &c[0].z, &c[3].x, &c[3].z);
  right.GetEndsLong(&c[1].x, &c[1].z, &c[2].x, &c[2].z);
}

void JoinedPairs::Clear() {
  slots_.clear();
  stored_ = 0;
  hasLastKey_ = false;
}

std::uint64_t JoinedPairs::Key(std::int32_t a, std::int32_t b) {
  auto low = static_cast<std::uint32_t>(std::min(a, b)), high = static_cast<std::uint32_t>(std::max(a, b));
  return (std::uint64_t{low} << 32) | high;
}

// An open-addressed set of keys, kEmpty marking a free slot; the one key that
// equals kEmpty is kept aside.
bool JoinedPairs::Remember(std::int32_t a, std::int32_t b) {
  std::uint64_t key = Key(a, b);
  if (key == kEmpty) {
    if (hasLastKey_) return false;
    if (stored_ < kCapacity) {
      hasLastKey_ = true;
      ++stored_;
    }
    return true;
  }
  if (slots_.empty()) slots_.assign(256, kEmpty);
  std::size_t mask = slots_.size() - 1;
  std::size_t at = static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> 32) & mask;
  for (; slots_[at] != kEmpty; at = (at + 1) & mask) {
    if (slots_[at] == key) return false;
  }
  if (stored_ >= kCapacity) return true;
  slots_[at] = key;
  ++stored_;
  if (static_cast<std::size_t>(stored_) * 2 > slots_.size()) {
    std::vector<std::uint64_t> old(slots_.size() * 2, kEmpty);
    old.swap(slots_);
    mask = slots_.size() - 1;
    for (std::uint64_t k : old) {
      if (k == kEmpty) continue;
      std::size_t to = static_cast<std::size_t>((k * 0x9E3779B97F4A7C15ull) >> 32) & mask;
      while (slots_[to] != kEmpty) to = (to + 1) & mask;
      slots_[to] = k;
    }
  }
  return true;
}

void GenerateTaxiPolygons(const TaxiwayList& network, const PointMarks& marks, SegmentList& taxiList, TileGrid& grid,
                          std::int32_t leastForTwoWalks) {
  if (taxiList.count() < leastForTwoWalks) {
    TaxiPolygons(network, marks, taxiList, grid).Generate();
    return;
  }
  SegmentList secondList = taxiList;  // the second walk sets ribbons of its own
  TileGrid others(grid, ~(1u << kPaveLayer));
  TileGrid pavement(grid, 1u << kPaveLayer);
  std::exception_ptr failure;
  {
    std::jthread second([&] {
      try {
        TaxiPolygons(network, marks, secondList, others).Generate();
      } catch (...) {
        failure = std::current_exception();  // a fatal stop goes on from the first thread, once both are done
      }
    });
    TaxiPolygons(network, marks, taxiList, pavement).Generate();
  }
  if (failure) std::rethrow_exception(failure);
}

TaxiPolygons::TaxiPolygons(const TaxiwayList& network, const PointMarks& marks, SegmentList& taxiList,
                           TileGrid& grid)
    : network_(network), marks_(marks), taxiList_(taxiList), grid_(grid) {}

Segment& TaxiPolygons::SegmentAt(std::int32_t index) { return *taxiList_.At(index); }

void TaxiPolygons::Reset() {
  visited_.assign(static_cast<std::size_t>(taxiList_.count()), 0);
  joined_.Clear();
}

void TaxiPolygons::Generate() {
  std::int32_t count = taxiList_.count();
  Reset();
  BuildPointIndex();
  for (std::int32_t i = 0; i < count; ++i) VisitSegment(i);
}

void TaxiPolygons::BuildPointIndex() {
  byPoint_.clear();
  for (std::int32_t i = 0; i < taxiList_.count(); ++i) {
    const TaxiwayEdge& e = NetworkEdge(network_, static_cast<std::int32_t>(SegmentAt(i).edge));
    byPoint_.emplace_back(e.start, i);
    if (e.end != e.start) byPoint_.emplace_back(e.end, i);
  }
  std::sort(byPoint_.begin(), byPoint_.end());
}

// The segments other than self that have start or end as an end, by rising
// number: the only ones the walk's tests can match.
void TaxiPolygons::Neighbours(std::int32_t start, std::int32_t end, std::int32_t self) {
  std::size_t first = candidates_.size();
  auto add = [&](std::int32_t point) {
    auto range = std::equal_range(byPoint_.begin(), byPoint_.end(), std::pair{point, 0},
                                  [](const auto& l, const auto& r) { return l.first < r.first; });
    for (auto it = range.first; it != range.second; ++it) {
      if (it->second != self) candidates_.push_back(it->second);
    }
  };
  add(start);
  if (end != start) add(end);
  auto from = candidates_.begin() + static_cast<std::ptrdiff_t>(first);
  std::sort(from, candidates_.end());
  candidates_.erase(std::unique(from, candidates_.end()), candidates_.end());
}

void TaxiPolygons::Enter(std::int32_t index) {
  GenerateRibbon(index);
  SetVisited(index);
  const TaxiwayEdge& e = NetworkEdge(network_, static_cast<std::int32_t>(SegmentAt(index).edge));
  std::size_t first = candidates_.size();
  Neighbours(e.start, e.end, index);
  stack_.push_back({index, e.start, e.end, first, candidates_.size(), first, false, false, false, false});
}

void TaxiPolygons::VisitSegment(std::int32_t index) {
  if (Visited(index)) return;
  Enter(index);
  while (!stack_.empty()) {
    Frame& f = stack_.back();
    if (f.pending) {
      f.pending = false;
      GenerateJoint(f.segment, candidates_[f.next], f.aAtStart, f.bAtStart);
    } else if (f.next == f.last) {
      candidates_.resize(f.first);
      stack_.pop_back();
      continue;
    } else {
      std::int32_t j = candidates_[f.next];
      const TaxiwayEdge& other = NetworkEdge(network_, static_cast<std::int32_t>(SegmentAt(j).edge));
      std::int32_t at = f.endDone ? f.start : f.end;
      if (at == other.start || at == other.end) {
        f.pending = true;
        f.aAtStart = f.endDone;
        f.bAtStart = at == other.start;
        if (!Visited(j)) Enter(j);  // f is not to be used after this
        continue;
      }
    }
    Frame& g = stack_.back();
    if (!g.endDone) {
      g.endDone = true;
    } else {
      g.endDone = false;
      ++g.next;
    }
  }
}

void TaxiPolygons::GenerateRibbon(std::int32_t index) {
  Segment& segment = SegmentAt(index);
  const TaxiwayEdge& e = NetworkEdge(network_, static_cast<std::int32_t>(segment.edge));
  double halfWidth = e.width / 2.0;
  std::int32_t startMark = marks_.Of(e.start), endMark = marks_.Of(e.end);
  BuildRibbon(segment, startMark != 1 ? kJunctionInset : 0.0, endMark != 1 ? kJunctionInset : 0.0, halfWidth);
  QuadStyle style;
  style.pave = (e.flags & kPaved) && e.type != kExitStub && halfWidth != 0;
  style.lineFlags = LineFlagsOf(e.flags);
  // a ribbon with an end point carries no edge lights
  style.leftLights = style.rightLights = style.pave && (e.flags & kEdgeLightFlag) && startMark > 1 && endMark > 1;
  style.step = kRibbonLightStep;
  const auto& c = segment.corners;
  DrawQuad(grid_, style, c[3], c[2], c[1], c[0]);
}

void TaxiPolygons::GenerateJoint(std::int32_t a, std::int32_t b, bool aAtStart, bool bAtStart) {
  if (!joined_.Remember(a, b)) return;
  Segment& segA = SegmentAt(a);
  Segment& segB = SegmentAt(b);
  const TaxiwayEdge& ea = NetworkEdge(network_, static_cast<std::int32_t>(segA.edge));
  const TaxiwayEdge& eb = NetworkEdge(network_, static_cast<std::int32_t>(segB.edge));
  if (ea.type == kExitStub && eb.type == kExitStub) return;
  std::int32_t commonPoint = aAtStart ? ea.start : ea.end;
  TEXPOINT common = NetworkPoint(network_, commonPoint);
  TEXPOINT farA = NetworkPoint(network_, aAtStart ? ea.end : ea.start);
  TEXPOINT farB = NetworkPoint(network_, bAtStart ? eb.end : eb.start);
  std::int32_t commonMark = marks_.Of(commonPoint);

  QuadStyle style;
  std::int32_t either = ea.flags | eb.flags;
  style.pave = (either & kPaved) != 0;
  style.lineFlags = LineFlagsOf(either);
  style.leftLights = style.rightLights = (either & kEdgeLightFlag) && commonMark == 2 && ea.type != kExitStub &&
                                         eb.type != kExitStub && segA.line.length >= kLeastLitJointEdge &&
                                         segB.line.length >= kLeastLitJointEdge;
  style.step = kJointLightStep;

  PlaneLine lineA, lineB;
  lineA.Set(common.x, common.z, farA.x, farA.z);
  lineB.Set(common.x, common.z, farB.x, farB.z);
  double turn = TurnAngle(farA.x, farA.z, common.x, common.z, farB.x, farB.z);

  // the inner side of the bend is the side of the bisector
  PlanePoint centre = AsPlane(common);
  std::int32_t sideA = 1, sideB = 1;
  PlaneLine bisector;
  if (bisector.SetBisector(lineA, lineB, 0)) {
    centre = {bisector.x1, bisector.y1};
    sideA = lineA.SideOf(bisector.x2, bisector.y2);
    sideB = lineB.SideOf(bisector.x2, bisector.y2);
  }
  auto [a0, a1, a2, a3] = segA.corners;
  if (lineA.SideOf(a0.x, a0.z) != sideA) {
    std::swap(a0, a1);
    std::swap(a2, a3);
  }
  if (Distance(a3, centre) > Distance(a0, centre)) {
    std::swap(a0, a3);
    std::swap(a1, a2);
  }
  auto [b0, b1, b2, b3] = segB.corners;
  if (lineB.SideOf(b0.x, b0.z) != sideB) {
    std::swap(b0, b1);
    std::swap(b2, b3);
  }
  if (Distance(b3, centre) < Distance(b0, centre)) {
    std::swap(b0, b3);
    std::swap(b1, b2);
  }

  auto beyond = [turn](double limit) { return turn < -limit || turn > limit; };
  auto narrow = [&] {
    return ea.width < segA.line.LineDistance(farB.x, farB.z) && eb.width < segB.line.LineDistance(farA.x, farA.z);
  };
  bool straight = true;
  if (turn >= -kStraightTurn && turn <= kStraightTurn) {
    straight = true;
  } else if (beyond(kHairpinTurn)) {
    straight = false;
  } else if (beyond(kSharpTurn) && !narrow()) {
    straight = false;
  } else if (beyond(kSharpJunctionTurn) && commonMark > 2) {
    straight = false;
  } else {
    PlaneLine innerA, outerA, innerB, outerB;
    innerA.Set(a0.x, a0.z, a3.x, a3.z);
    outerA.Set(a1.x, a1.z, a2.x, a2.z);
    innerB.Set(b0.x, b0.z, b3.x, b3.z);
    outerB.Set(b1.x, b1.z, b2.x, b2.z);
    PlanePoint inner, outer;
    if (innerA.Intersect(innerB, &inner.x, &inner.z, kLeastFilletCrossing) &&
        outerA.Intersect(outerB, &outer.x, &outer.z, kLeastFilletCrossing)) {
      DrawFillet(grid_, style, AsPlane(a2), outer, AsPlane(b1), AsPlane(a3), inner, AsPlane(b0));
      straight = false;
    }
  }
  if (straight) DrawQuad(grid_, style, a3, a2, b1, b0);
}

}  // namespace bgr
