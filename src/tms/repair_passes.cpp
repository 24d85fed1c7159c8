#include "tms/repair_passes.h"

#include <cmath>

#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "tms/tms_job.h"

namespace bgr {
namespace {

constexpr double kSnapReach = 38400.0;           // 150 ft
constexpr double kStubLength = 51200.0;          // 200 ft, also the overrun of a snap on a runway
constexpr double kRunwayEndClearance = 256000.0;  // 1000 ft
constexpr double kCrossingClearance = 51200.0;   // 200 ft
constexpr double kTaxiwaySnapClearance = 25600.0;  // 100 ft
constexpr double kLeastSnapAngle = 0.3490658503988659;  // 20 degrees
constexpr double kWidestStubTurn = 2.007128639793479;   // 115 degrees
constexpr std::int32_t kMostIntersectedTaxiways = 100;

std::uint32_t Index(std::int32_t point) { return static_cast<std::uint32_t>(point); }

double Distance(double x, double z, const TEXPOINT& p) { return PointDistance(x, z, p.x, p.z); }

// The far end of the first taxiway that ends at q, by rising edge number; -1
// when no taxiway ends there.
std::int32_t FarEnd(TmsJob& job, std::int32_t q) {
  for (std::int32_t i = 0; i < job.EdgeCount(); ++i) {
    const TaxiwayEdge& e = job.Edge(i);
    if (e.type != kTaxiway) continue;
    if (e.start == q) return e.end;
    if (e.end == q) return e.start;
  }
  return -1;
}

// Where the taxiway that ends at q, run on, crosses a runway's line at no
// less than 20 degrees; false when q isn't near the runway or has no taxiway.
bool CrossingOnRunway(TmsJob& job, const PlaneLine& runway, std::int32_t q, double* x, double* z, TEXPOINT* far) {
  TEXPOINT p = job.Point(q);
  if (!runway.IsNear(p.x, p.z, kSnapReach)) return false;
  std::int32_t r = FarEnd(job, q);
  if (r < 0) return false;
  *far = job.Point(r);
  PlaneLine taxiway;
  taxiway.SetFromPoints(p, *far);
  return runway.Intersect(taxiway, x, z, kLeastSnapAngle);
}

void MovePoint(TmsJob& job, std::int32_t point, double x, double z) {
  if (point < 0 || point >= job.network.points.count()) return;
  TEXPOINT p = job.network.points[point];
  job.network.points.SetPoint(point, {TruncToLong(x), p.y, TruncToLong(z)});
}

std::int32_t AppendEdge(TmsJob& job, const TaxiwayEdge& edge) {
  std::int32_t n = job.network.edgeCount++;
  job.Edge(n) = edge;
  return n;
}

// X lies on the line's edge with 'spare' to each end.
bool WithinEdge(double x, double z, const PlaneLine& line, const TEXPOINT& a, const TEXPOINT& b, double spare) {
  double da = Distance(x, z, a), db = Distance(x, z, b);
  return da >= spare && da <= line.length - spare && db >= spare && db <= line.length - spare;
}

}  // namespace

void SnapEndPointsToRunways(TmsJob& job) {
  job.ctx().console().Write("SnapEndPointsToRunways()\n");
  for (std::int32_t i = 0; i < job.runwayList.count(); ++i) {
    Segment& runway = *job.runwayList.At(i);
    const TaxiwayEdge& edge = job.Edge(static_cast<std::int32_t>(runway.edge));
    TEXPOINT s = job.Point(edge.start), e = job.Point(edge.end);
    double reach = PointDistance(s.x, s.z, e.x, e.z) + kStubLength;
    for (std::int32_t q = 0; q < job.network.points.count(); ++q) {
      if (job.Mark(Index(q)) != 1) continue;
      double x, z;
      TEXPOINT far;
      if (!CrossingOnRunway(job, runway.line, q, &x, &z, &far)) continue;
      if (Distance(x, z, s) < reach && Distance(x, z, e) < reach) MovePoint(job, q, x, z);
    }
  }
}

void MakeRunwayExitStubs(TmsJob& job) {
  std::int32_t points = job.network.points.count();  // the stubs' own points are not looked at
  for (std::int32_t i = 0; i < job.runwayList.count(); ++i) {
    Segment& runway = *job.runwayList.At(i);
    const TaxiwayEdge& edge = job.Edge(static_cast<std::int32_t>(runway.edge));
    std::int32_t width = edge.width;
    TEXPOINT s = job.Point(edge.start), e = job.Point(edge.end);
    double length = PointDistance(s.x, s.z, e.x, e.z);
    double limit = length - kRunwayEndClearance;
    // a runway of no length gives steps that are no numbers, and so no stubs
    double stepX = (double(e.x) - s.x) * kStubLength / length;
    double stepZ = (double(e.z) - s.z) * kStubLength / length;
    for (std::int32_t q = 0; q < points; ++q) {
      if (job.Mark(Index(q)) != 1) continue;
      double x, z;
      TEXPOINT r;
      if (!CrossingOnRunway(job, runway.line, q, &x, &z, &r)) continue;
      double ax = x - stepX, az = z - stepZ, bx = x + stepX, bz = z + stepZ;
      bool wantA = Distance(ax, az, e) < limit && std::fabs(TurnAngle(ax, az, x, z, r.x, r.z)) <= kWidestStubTurn;
      bool wantB = Distance(bx, bz, s) < limit && std::fabs(TurnAngle(bx, bz, x, z, r.x, r.z)) <= kWidestStubTurn;
      if (wantA) AddExitStub(job, q, ax, az, width, kExitStub);
      if (wantB) AddExitStub(job, q, bx, bz, width, kExitStub);
    }
  }
}

void AddExitStub(TmsJob& job, std::int32_t from, double x, double z, std::int32_t width, std::int32_t type) {
  TEXPOINTS& points = job.network.points;
  if (points.count() >= points.capacity() || job.EdgeCount() >= TaxiwayList::kMaxEdges) return;
  std::int32_t to = points.Add(TruncToLong(x), 0, TruncToLong(z), 0);
  AppendEdge(job, {from, to, width, type, kAllFlags});
  job.MarkPoint(Index(from), 1);
  job.MarkPoint(Index(to), 1);
}

void MakeTaxiwayTaxiwayIntersections(TmsJob& job) {
  std::int32_t taxiways = 0;
  for (std::int32_t i = 0; i < job.EdgeCount(); ++i) taxiways += job.Edge(i).type == kTaxiway ? 1 : 0;
  job.ctx().console().Printf("MakeTaxiwayTaxiwayIntersections() edges=%d\n", taxiways);
  if (taxiways > kMostIntersectedTaxiways) return;
  TEXPOINTS& points = job.network.points;
  for (std::int32_t a = 0; a < job.EdgeCount(); ++a) {
    if (job.Edge(a).type != kTaxiway) continue;
    for (std::int32_t b = 0; b < job.EdgeCount(); ++b) {
      if (a == b || job.EdgeCount() + 2 >= TaxiwayList::kMaxEdges || job.Edge(b).type != kTaxiway) continue;
      TaxiwayEdge& ea = job.Edge(a);
      TaxiwayEdge& eb = job.Edge(b);
      if (ea.start == eb.start || ea.start == eb.end || ea.end == eb.start || ea.end == eb.end) continue;
      TEXPOINT a0 = job.Point(ea.start), a1 = job.Point(ea.end), b0 = job.Point(eb.start), b1 = job.Point(eb.end);
      PlaneLine la, lb;
      la.SetFromPoints(a0, a1);
      lb.SetFromPoints(b0, b1);
      double x, z;
      if (!la.Intersect(lb, &x, &z, 0)) continue;
      bool clear = true;
      for (std::int32_t c = 0; c < job.EdgeCount() && clear; ++c) {
        const TaxiwayEdge& ec = job.Edge(c);
        if (ec.type != kTaxiway) continue;
        clear = Distance(x, z, job.Point(ec.start)) >= kCrossingClearance &&
                Distance(x, z, job.Point(ec.end)) >= kCrossingClearance;
      }
      if (!clear || !WithinEdge(x, z, la, a0, a1, kCrossingClearance) ||
          !WithinEdge(x, z, lb, b0, b1, kCrossingClearance) || points.count() >= points.capacity())
        continue;
      std::int32_t n = points.Add(TruncToLong(x), 0, TruncToLong(z), 0);
      TaxiwayEdge restA = ea, restB = eb;
      restA.start = n;
      restB.start = n;
      AppendEdge(job, restA);
      AppendEdge(job, restB);
      ea.end = n;
      eb.end = n;
      job.MarkPoint(Index(n), 4);
    }
  }
}

void SnapEndPointsToTaxiways(TmsJob& job) {
  job.ctx().console().Write("SnapEndPointsToTaxiways()\n");
  for (std::int32_t a = 0; a < job.EdgeCount(); ++a) {
    if (job.Edge(a).type != kTaxiway) continue;
    for (std::int32_t b = 0; b < job.EdgeCount(); ++b) {
      if (a == b || job.Edge(b).type != kTaxiway) continue;
      const TaxiwayEdge& ea = job.Edge(a);
      bool startFree = job.Mark(Index(ea.start)) == 1;
      bool endFree = job.Mark(Index(ea.end)) == 1;
      if (!startFree && !endFree) continue;
      const TaxiwayEdge& eb = job.Edge(b);
      TEXPOINT b0 = job.Point(eb.start), b1 = job.Point(eb.end);
      PlaneLine la, lb;
      la.SetFromPoints(job.Point(ea.start), job.Point(ea.end));
      lb.SetFromPoints(b0, b1);
      double x, z;
      if (!la.Intersect(lb, &x, &z, 0) || !WithinEdge(x, z, lb, b0, b1, kTaxiwaySnapClearance)) continue;
      std::int32_t start = ea.start, end = ea.end;
      if (job.Mark(Index(start)) == 1) SplitEdgeAtEndPoint(job, start, x, z, b);
      if (endFree) SplitEdgeAtEndPoint(job, end, x, z, b);
    }
  }
}

void SplitEdgeAtEndPoint(TmsJob& job, std::int32_t point, double x, double z, std::int32_t edge) {
  TEXPOINT p = job.Point(point);
  double d = PointDistance(x, z, p.x, p.z);
  if (job.EdgeCount() >= TaxiwayList::kMaxEdges || d > kSnapReach) return;
  MovePoint(job, point, x, z);
  TaxiwayEdge rest = job.Edge(edge);
  rest.start = point;
  AppendEdge(job, rest);
  job.Edge(edge).end = point;
  job.MarkPoint(Index(point), 2);
}

}  // namespace bgr
