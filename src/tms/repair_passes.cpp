#include "tms/repair_passes.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "tms/tms_job.h"

namespace bgr {
namespace {

constexpr double kStubLength = 51200.0;          // 200 ft, also the overrun of a snap on a runway
constexpr double kRunwayEndClearance = 256000.0;  // 1000 ft
constexpr double kCrossingClearance = 51200.0;   // 200 ft
constexpr double kLeastSnapAngle = 0.3490658503988659;  // 20 degrees
constexpr double kWidestStubTurn = 2.007128639793479;   // 115 degrees

double Distance(double x, double z, const TEXPOINT& p) { return PointDistance(x, z, p.x, p.z); }

// For each point, the far end of the first taxiway that ends there, by rising
// edge number; -1 where no taxiway ends. The runway passes add no taxiways, so
// one table serves a whole pass.
std::vector<std::int32_t> FarEnds(const TaxiwayList& network) {
  std::vector<std::int32_t> far(static_cast<std::size_t>(network.points.count()), -1);
  std::vector<char> found(far.size(), 0);
  auto set = [&](std::int32_t at, std::int32_t other) {
    if (at < 0 || static_cast<std::size_t>(at) >= far.size() || found[static_cast<std::size_t>(at)]) return;
    found[static_cast<std::size_t>(at)] = 1;
    far[static_cast<std::size_t>(at)] = other;
  };
  for (std::int32_t i = 0; i < network.edgeCount; ++i) {
    const TaxiwayEdge& e = NetworkEdge(network, i);
    if (e.type != kTaxiway) continue;
    set(e.start, e.end);
    set(e.end, e.start);
  }
  return far;
}

// Where the taxiway that ends at q, run on, crosses a runway's line at no
// less than 20 degrees; false when q isn't near the runway or has no taxiway.
bool CrossingOnRunway(const TaxiwayList& network, const std::vector<std::int32_t>& farEnds, const PlaneLine& runway,
                      std::int32_t q, double* x, double* z, TEXPOINT* far) {
  TEXPOINT p = NetworkPoint(network, q);
  if (!runway.IsNear(p.x, p.z, kSnapReach)) return false;
  // a far end of no point counts as no taxiway at all
  std::int32_t r = farEnds[static_cast<std::size_t>(q)];
  if (r < 0) return false;
  *far = NetworkPoint(network, r);
  PlaneLine taxiway;
  taxiway.SetFromPoints(p, *far);
  return runway.Intersect(taxiway, x, z, kLeastSnapAngle);
}

void MovePoint(TaxiwayList& network, std::int32_t point, double x, double z) {
  if (point < 0 || point >= network.points.count()) return;
  TEXPOINT p = network.points[point];
  network.points.SetPoint(point, {TruncToLong(x), p.y, TruncToLong(z)});
}

std::int32_t AppendEdge(TaxiwayList& network, const TaxiwayEdge& edge) {
  std::int32_t n = network.edgeCount++;
  NetworkEdge(network, n) = edge;
  return n;
}

}  // namespace

bool WithinEdge(double x, double z, const PlaneLine& line, const TEXPOINT& a, const TEXPOINT& b, double spare) {
  double da = Distance(x, z, a), db = Distance(x, z, b);
  return da >= spare && da <= line.length - spare && db >= spare && db <= line.length - spare;
}

void SnapEndPointsToRunways(TaxiwayList& network, const PointMarks& marks, const SegmentList& runways) {
  std::vector<std::int32_t> farEnds = FarEnds(network);
  for (std::int32_t i = 0; i < runways.count(); ++i) {
    const Segment& runway = *runways.At(i);
    const TaxiwayEdge& edge = NetworkEdge(network, static_cast<std::int32_t>(runway.edge));
    TEXPOINT s = NetworkPoint(network, edge.start), e = NetworkPoint(network, edge.end);
    double reach = PointDistance(s.x, s.z, e.x, e.z) + kStubLength;
    for (std::int32_t q = 0; q < network.points.count(); ++q) {
      if (marks.Of(q) != 1) continue;
      double x, z;
      TEXPOINT far;
      if (!CrossingOnRunway(network, farEnds, runway.line, q, &x, &z, &far)) continue;
      if (Distance(x, z, s) < reach && Distance(x, z, e) < reach) MovePoint(network, q, x, z);
    }
  }
}

void MakeRunwayExitStubs(TaxiwayList& network, PointMarks& marks, const SegmentList& runways) {
  std::int32_t points = network.points.count();  // the stubs' own points are not looked at
  std::vector<std::int32_t> farEnds = FarEnds(network);
  for (std::int32_t i = 0; i < runways.count(); ++i) {
    const Segment& runway = *runways.At(i);
    const TaxiwayEdge& edge = NetworkEdge(network, static_cast<std::int32_t>(runway.edge));
    std::int32_t width = edge.width;
    TEXPOINT s = NetworkPoint(network, edge.start), e = NetworkPoint(network, edge.end);
    double length = PointDistance(s.x, s.z, e.x, e.z);
    double limit = length - kRunwayEndClearance;
    // a runway of no length gives steps that are no numbers, and so no stubs
    double stepX = (double(e.x) - s.x) * kStubLength / length;
    double stepZ = (double(e.z) - s.z) * kStubLength / length;
    for (std::int32_t q = 0; q < points; ++q) {
      if (marks.Of(q) != 1) continue;
      double x, z;
      TEXPOINT r;
      if (!CrossingOnRunway(network, farEnds, runway.line, q, &x, &z, &r)) continue;
      double ax = x - stepX, az = z - stepZ, bx = x + stepX, bz = z + stepZ;
      bool wantA = Distance(ax, az, e) < limit && std::fabs(TurnAngle(ax, az, x, z, r.x, r.z)) <= kWidestStubTurn;
      bool wantB = Distance(bx, bz, s) < limit && std::fabs(TurnAngle(bx, bz, x, z, r.x, r.z)) <= kWidestStubTurn;
      if (wantA) AddExitStub(network, marks, q, ax, az, width, kExitStub);
      if (wantB) AddExitStub(network, marks, q, bx, bz, width, kExitStub);
    }
  }
}

void AddExitStub(TaxiwayList& network, PointMarks& marks, std::int32_t from, double x, double z, std::int32_t width, std::int32_t type) {
  TEXPOINTS& points = network.points;
  if (points.count() >= points.capacity() || network.edgeCount >= TaxiwayList::kMaxEdges) return;
  std::int32_t to = points.Add(TruncToLong(x), 0, TruncToLong(z), 0);
  AppendEdge(network, {from, to, width, type, kAllFlags});
  marks.Add(from, 1);
  marks.Add(to, 1);
}

std::int32_t TaxiwayCount(const TaxiwayList& network) {
  std::int32_t taxiways = 0;
  for (std::int32_t i = 0; i < network.edgeCount; ++i) taxiways += network.edges[static_cast<std::size_t>(i)].type == kTaxiway;
  return taxiways;
}

void MakeTaxiwayTaxiwayIntersections(TaxiwayList& network, PointMarks& marks) {
  if (TaxiwayCount(network) > kMostIntersectedTaxiways) return;
  TEXPOINTS& points = network.points;
  for (std::int32_t a = 0; a < network.edgeCount; ++a) {
    if (NetworkEdge(network, a).type != kTaxiway) continue;
    for (std::int32_t b = 0; b < network.edgeCount; ++b) {
      if (a == b || network.edgeCount + 2 >= TaxiwayList::kMaxEdges || NetworkEdge(network, b).type != kTaxiway) continue;
      TaxiwayEdge& ea = NetworkEdge(network, a);
      TaxiwayEdge& eb = NetworkEdge(network, b);
      if (ea.start == eb.start || ea.start == eb.end || ea.end == eb.start || ea.end == eb.end) continue;
      TEXPOINT a0 = NetworkPoint(network, ea.start), a1 = NetworkPoint(network, ea.end), b0 = NetworkPoint(network, eb.start), b1 = NetworkPoint(network, eb.end);
      PlaneLine la, lb;
      la.SetFromPoints(a0, a1);
      lb.SetFromPoints(b0, b1);
      double x, z;
      if (!la.Intersect(lb, &x, &z, 0)) continue;
      bool clear = true;
      for (std::int32_t c = 0; c < network.edgeCount && clear; ++c) {
        const TaxiwayEdge& ec = NetworkEdge(network, c);
        if (ec.type != kTaxiway) continue;
        clear = Distance(x, z, NetworkPoint(network, ec.start)) >= kCrossingClearance &&
                Distance(x, z, NetworkPoint(network, ec.end)) >= kCrossingClearance;
      }
      if (!clear || !WithinEdge(x, z, la, a0, a1, kCrossingClearance) ||
          !WithinEdge(x, z, lb, b0, b1, kCrossingClearance) || points.count() >= points.capacity())
        continue;
      std::int32_t n = points.Add(TruncToLong(x), 0, TruncToLong(z), 0);
      TaxiwayEdge restA = ea, restB = eb;
      restA.start = n;
      restB.start = n;
      AppendEdge(network, restA);
      AppendEdge(network, restB);
      ea.end = n;
      eb.end = n;
      marks.Add(n, 4);
    }
  }
}

bool SnapEndPointsToTaxiway(TaxiwayList& network, PointMarks& marks, std::int32_t a, std::int32_t b) {
  if (a == b || NetworkEdge(network, b).type != kTaxiway) return false;
  const TaxiwayEdge& ea = NetworkEdge(network, a);
  bool startFree = marks.Of(ea.start) == 1;
  bool endFree = marks.Of(ea.end) == 1;
  if (!startFree && !endFree) return false;
  const TaxiwayEdge& eb = NetworkEdge(network, b);
  TEXPOINT b0 = NetworkPoint(network, eb.start), b1 = NetworkPoint(network, eb.end);
  PlaneLine la, lb;
  la.SetFromPoints(NetworkPoint(network, ea.start), NetworkPoint(network, ea.end));
  lb.SetFromPoints(b0, b1);
  double x, z;
  if (!la.Intersect(lb, &x, &z, 0) || !WithinEdge(x, z, lb, b0, b1, kTaxiwaySnapClearance)) return false;
  std::int32_t edges = network.edgeCount;
  std::int32_t start = ea.start, end = ea.end;
  if (marks.Of(start) == 1) SplitEdgeAtEndPoint(network, marks, start, x, z, b);
  if (endFree) SplitEdgeAtEndPoint(network, marks, end, x, z, b);
  return network.edgeCount != edges;
}

namespace {

// Which taxiways a free end could be snapped on to. A snap on to edge b needs a
// crossing X with |XA| and |XB| at most L - 100 ft (A, B its ends, L its
// length) and X within 150 ft of the end; then |XM|^2 = (|XA|^2 + |XB|^2)/2 -
// L^2/4 bounds X to a disc round the midpoint M. Each taxiway sits in the grid
// cells under that disc widened by the reach, and follows its points as the pass
// moves them.
class SnapReachIndex {
 public:
  explicit SnapReachIndex(const TaxiwayList& network) : network_(network) {
    for (std::int32_t i = 0; i < network.edgeCount; ++i) Insert(i);
  }

  // The taxiways above 'after' that may reach one of the points, by rising number.
  void Candidates(const std::vector<TEXPOINT>& ends, std::int32_t after, std::vector<std::int32_t>& out) const {
    out.clear();
    for (const TEXPOINT& p : ends) {
      auto add = [&](const std::vector<std::int32_t>& list) {
        for (std::int32_t e : list) {
          if (e > after && Reaches(e, p)) out.push_back(e);
        }
      };
      auto cell = cells_.find(Key(Cell(p.x), Cell(p.z)));
      if (cell != cells_.end()) add(cell->second);
      add(wide_);
    }
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
  }

  // After a split of b at point p that made edge 'added': b, the new edge and
  // every taxiway at p (which moved) have new ends. Splits are few; a walk over
  // the edges finds those at p.
  void Split(std::int32_t b, std::int32_t added, std::int32_t p) {
    Insert(added);
    Update(b);
    for (std::int32_t e = 0; e < network_.edgeCount; ++e) {
      const TaxiwayEdge& edge = NetworkEdge(network_, e);
      if (e != b && e != added && (edge.start == p || edge.end == p)) Update(e);
    }
  }

 private:
  static constexpr double kCell = 262144.0;
  static constexpr std::int64_t kMostCells = 64;
  static constexpr double kSlack = 256.0;  // rounding of the crossing and the distances

  struct Disc {
    double x = 0, z = 0, radius = -1;
    std::int64_t x0 = 0, x1 = -1, z0 = 0, z1 = -1;  // cells held; x1 < x0 for none
    bool wide = false;
  };

  static std::int64_t Cell(double v) { return static_cast<std::int64_t>(std::floor(v / kCell)); }
  static std::uint64_t Key(std::int64_t cx, std::int64_t cz) {
    return (static_cast<std::uint64_t>(cx) << 32) ^ static_cast<std::uint64_t>(cz & 0xFFFFFFFF);
  }

  bool Reaches(std::int32_t e, const TEXPOINT& p) const {
    const Disc& d = discs_[static_cast<std::size_t>(e)];
    return PointDistance(d.x, d.z, p.x, p.z) <= d.radius;
  }

  void Insert(std::int32_t e) {
    if (static_cast<std::size_t>(e) >= discs_.size()) discs_.resize(static_cast<std::size_t>(e) + 1);
    const TaxiwayEdge& edge = NetworkEdge(network_, e);
    if (edge.type != kTaxiway) return;
    Place(e);
  }

  void Update(std::int32_t e) {
    // an edge of the same snap that is not in yet is placed by its own Split
    if (static_cast<std::size_t>(e) >= discs_.size() || NetworkEdge(network_, e).type != kTaxiway) return;
    Remove(e);
    Place(e);
  }

  void Place(std::int32_t e) {
    const TaxiwayEdge& edge = NetworkEdge(network_, e);
    TEXPOINT a = NetworkPoint(network_, edge.start), b = NetworkPoint(network_, edge.end);
    double length = PointDistance(a.x, a.z, b.x, b.z);
    double room = length - kTaxiwaySnapClearance;
    double squared = room * room - length * length / 4;
    Disc& d = discs_[static_cast<std::size_t>(e)];
    d = Disc{};
    if (room < 0 || squared < 0) return;  // no point lies far enough from both ends
    d.x = (double(a.x) + b.x) / 2;
    d.z = (double(a.z) + b.z) / 2;
    d.radius = std::sqrt(squared) + kSnapReach + kSlack;
    d.x0 = Cell(d.x - d.radius);
    d.x1 = Cell(d.x + d.radius);
    d.z0 = Cell(d.z - d.radius);
    d.z1 = Cell(d.z + d.radius);
    if ((d.x1 - d.x0 + 1) * (d.z1 - d.z0 + 1) > kMostCells) {
      d.wide = true;
      wide_.push_back(e);
      return;
    }
    for (std::int64_t cx = d.x0; cx <= d.x1; ++cx)
      for (std::int64_t cz = d.z0; cz <= d.z1; ++cz) cells_[Key(cx, cz)].push_back(e);
  }

  void Remove(std::int32_t e) {
    Disc& d = discs_[static_cast<std::size_t>(e)];
    auto drop = [e](std::vector<std::int32_t>& list) {
      auto it = std::find(list.begin(), list.end(), e);
      if (it != list.end()) list.erase(it);
    };
    if (d.wide) {
      drop(wide_);
    } else {
      for (std::int64_t cx = d.x0; cx <= d.x1; ++cx)
        for (std::int64_t cz = d.z0; cz <= d.z1; ++cz) drop(cells_[Key(cx, cz)]);
    }
    d = Disc{};
  }

  const TaxiwayList& network_;
  std::vector<Disc> discs_;
  std::unordered_map<std::uint64_t, std::vector<std::int32_t>> cells_;
  std::vector<std::int32_t> wide_;  // discs too large for the cells
};

}  // namespace

void SnapEndPointsToTaxiways(TaxiwayList& network, PointMarks& marks) {
  SnapReachIndex index(network);
  std::vector<std::int32_t> candidates;
  std::vector<TEXPOINT> ends;
  for (std::int32_t a = 0; a < network.edgeCount; ++a) {
    if (NetworkEdge(network, a).type != kTaxiway) continue;
    std::int32_t last = -1;
    for (bool again = true; again;) {
      again = false;
      // the ends' marks only rise, so an end that isn't free now stays so
      const TaxiwayEdge& ea = NetworkEdge(network, a);
      bool startFree = marks.Of(ea.start) == 1, endFree = marks.Of(ea.end) == 1;
      if (!startFree && !endFree) break;
      ends.clear();
      if (startFree) ends.push_back(NetworkPoint(network, ea.start));
      if (endFree) ends.push_back(NetworkPoint(network, ea.end));
      index.Candidates(ends, last, candidates);
      for (std::int32_t b : candidates) {
        std::int32_t edges = network.edgeCount;
        if (!SnapEndPointsToTaxiway(network, marks, a, b)) continue;
        // each split made one edge that starts at the point it moved
        for (std::int32_t n = edges; n < network.edgeCount; ++n) index.Split(b, n, NetworkEdge(network, n).start);
        last = b;
        again = true;
        break;
      }
    }
  }
}

void SplitEdgeAtEndPoint(TaxiwayList& network, PointMarks& marks, std::int32_t point, double x, double z, std::int32_t edge) {
  TEXPOINT p = NetworkPoint(network, point);
  double d = PointDistance(x, z, p.x, p.z);
  if (network.edgeCount >= TaxiwayList::kMaxEdges || d > kSnapReach) return;
  MovePoint(network, point, x, z);
  TaxiwayEdge rest = NetworkEdge(network, edge);
  rest.start = point;
  AppendEdge(network, rest);
  NetworkEdge(network, edge).end = point;
  marks.Add(point, 2);
}

}  // namespace bgr
