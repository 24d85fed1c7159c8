#include "kit/check.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

#include "formats/bgr_file.h"
#include "formats/edge_kinds.h"
#include "formats/ply_reader.h"
#include "formats/taxiway_list.h"
#include "formats/working_units.h"
#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/text.h"
#include "kit/kit.h"
#include "script/script_network.h"
#include "tms/apron.h"
#include "tms/repair_passes.h"
#include "tms/tms_job.h"
#include "tms/tms_steps.h"

namespace bgr::kit {
namespace {

// beyond it, working units overflow 32 bits
constexpr std::int32_t kWorkingRangeFeet = std::numeric_limits<std::int32_t>::max() / kUnitsPerFoot;
constexpr double kNearMiss = 76800.0;             // 300 ft: an end this close was likely meant to touch

std::string Feet(double v) {
  char text[32];
  auto r = std::to_chars(text, text + sizeof text, std::round(v * 100.0) / 100.0);
  return std::string(text, r.ptr);
}

Finding Make(Severity s, std::string code, std::string object, std::int64_t number, std::string message) {
  Finding f;
  f.severity = s;
  f.code = std::move(code);
  f.object = std::move(object);
  f.number = number;
  f.message = std::move(message);
  return f;
}

Finding At(Finding f, double x, double z) {
  f.placed = true;
  f.x = x;
  f.z = z;
  return f;
}

// Place of an edge: its middle, or the end that exists.
Finding AtEdge(Finding f, const NetworkContent& n, const EdgeRecord& e) {
  bool a = n.HasNode(e.from), b = n.HasNode(e.to);
  if (a && b) return At(std::move(f), (n.Node(e.from).x + n.Node(e.to).x) / 2, (n.Node(e.from).z + n.Node(e.to).z) / 2);
  if (a) return At(std::move(f), n.Node(e.from).x, n.Node(e.from).z);
  if (b) return At(std::move(f), n.Node(e.to).x, n.Node(e.to).z);
  return f;
}

bool IsYellow(const EdgeRecord& e) { return IsYellowLine(e.type, e.flags); }

// True when segments ab and cd cross at a point inside both (touching ends don't count).
bool Cross(double ax, double az, double bx, double bz, double cx, double cz, double dx, double dz, double* x,
           double* z) {
  double rX = bx - ax, rZ = bz - az, sX = dx - cx, sZ = dz - cz;
  double denom = rX * sZ - rZ * sX;
  if (denom == 0) return false;
  double t = ((cx - ax) * sZ - (cz - az) * sX) / denom;
  double u = ((cx - ax) * rZ - (cz - az) * rX) / denom;
  if (t <= 0 || t >= 1 || u <= 0 || u >= 1) return false;
  *x = ax + t * rX;
  *z = az + t * rZ;
  return true;
}

Place InFeet(const TEXPOINT& p) { return {UnitsToFeet(p.x), UnitsToFeet(p.z)}; }

// The points that moved since 'before', as moves in feet.
void MovedPoints(const std::vector<TEXPOINT>& before, const TEXPOINTS& after, std::vector<Foreseen::Move>& moves) {
  for (std::size_t i = 0; i < before.size(); ++i) {
    const TEXPOINT& now = after[static_cast<std::int32_t>(i)];
    if (now.x != before[i].x || now.z != before[i].z) moves.push_back({static_cast<std::int32_t>(i), InFeet(before[i]), InFeet(now)});
  }
}

std::vector<TEXPOINT> Snapshot(const TEXPOINTS& points) { return {points.points().begin(), points.points().end()}; }

// Taxiway ends that no runway pass moved but that lie just beyond a runway's
// reach; a runway's own end is no taxiway end, as the pass has it.
void NearRunways(TmsJob& job, const std::vector<TEXPOINT>& start, Foreseen& f) {
  std::vector<char> taxiwayEnd(start.size(), 0);
  for (std::int32_t i = 0; i < job.EdgeCount(); ++i) {
    const TaxiwayEdge& e = job.Edge(i);
    if (e.type != kTaxiway) continue;
    for (std::int32_t q : {e.start, e.end})
      if (q >= 0 && static_cast<std::size_t>(q) < taxiwayEnd.size()) taxiwayEnd[static_cast<std::size_t>(q)] = 1;
  }
  for (std::int32_t q = 0; q < job.network.points.count(); ++q) {
    const TEXPOINT& p = job.network.points[q];
    if (job.marks.Of(q) != 1 || !taxiwayEnd[static_cast<std::size_t>(q)] || p.x != start[static_cast<std::size_t>(q)].x ||
        p.z != start[static_cast<std::size_t>(q)].z)
      continue;
    for (std::int32_t s = 0; s < job.runwayList.count(); ++s) {
      double d = job.runwayList.At(s)->line.SegmentDistance(p.x, p.z);
      if (d <= kSnapReach || d > kNearMiss) continue;
      f.nearRunway.push_back({q, InFeet(p), UnitsToFeet(d), job.runwayList.At(s)->edge});
      break;
    }
  }
}

// Free taxiway ends whose taxiway's line meets another taxiway just beyond the
// reach of the snap on to taxiways, by that pass's own geometry.
void NearTaxiways(TmsJob& job, Foreseen& f) {
  std::vector<char> reported(static_cast<std::size_t>(job.network.points.count()), 0);
  for (std::int32_t a = 0; a < job.EdgeCount(); ++a) {
    const TaxiwayEdge& ea = job.Edge(a);
    if (ea.type != kTaxiway || (job.marks.Of(ea.start) != 1 && job.marks.Of(ea.end) != 1)) continue;
    PlaneLine la;
    la.SetFromPoints(job.Point(ea.start), job.Point(ea.end));
    for (std::int32_t b = 0; b < job.EdgeCount(); ++b) {
      const TaxiwayEdge& eb = job.Edge(b);
      if (b == a || eb.type != kTaxiway) continue;
      TEXPOINT b0 = job.Point(eb.start), b1 = job.Point(eb.end);
      PlaneLine lb;
      lb.SetFromPoints(b0, b1);
      double x, z;
      if (!la.Intersect(lb, &x, &z, 0) || !WithinEdge(x, z, lb, b0, b1, kTaxiwaySnapClearance)) continue;
      for (std::int32_t q : {ea.start, ea.end}) {
        if (job.marks.Of(q) != 1 || q < 0 || q >= job.network.points.count() || reported[static_cast<std::size_t>(q)]) continue;
        double d = PointDistance(x, z, job.Point(q).x, job.Point(q).z);
        if (d <= kSnapReach || d > kNearMiss) continue;
        reported[static_cast<std::size_t>(q)] = 1;
        f.nearTaxiway.push_back({q, InFeet(job.Point(q)), UnitsToFeet(d), static_cast<std::uint32_t>(b)});
      }
    }
  }
}

}  // namespace

Foreseen ForeseeRepairs(const std::string& path) {
  QuietRun run;
  auto job = std::make_unique<TmsJob>(run.ctx);
  Foreseen f;
  job->Load(path);
  std::vector<TEXPOINT> before;
  std::vector<TaxiwayEdge> edges;
  std::int32_t made = 0;
  // the steps of -tm in their order, up to the end of the repairs
  for (const TmsStep& step : TmsSteps()) {
    if (step.name == "FillTaxiList") break;
    if (step.name == "SnapEndPointsToRunways") {
      before = Snapshot(job->network.points);
    } else if (step.name == "MakeTaxiwayTaxiwayIntersections") {
      f.taxiways = TaxiwayCount(job->network);
      made = job->network.points.count();
    } else if (step.name == "SnapEndPointsToTaxiways") {
      before = Snapshot(job->network.points);
      edges.assign(job->network.edges.begin(), job->network.edges.begin() + job->EdgeCount());
    }
    if (step.name == "Load") {
      if (job->result() == 0) return f;
      f.ran = true;
      continue;  // loaded above
    }
    RunStep(*job, step);
    if (step.name == "SnapEndPointsToRunways") {
      MovedPoints(before, job->network.points, f.toRunway);
      NearRunways(*job, before, f);
    } else if (step.name == "MakeTaxiwayTaxiwayIntersections") {
      for (std::int32_t p = made; p < job->network.points.count(); ++p) f.splits.push_back(InFeet(job->network.points[p]));
    } else if (step.name == "SnapEndPointsToTaxiways") {
      MovedPoints(before, job->network.points, f.toTaxiway);
      // the taxiway split at a moved end is the one whose end became that point
      for (Foreseen::Move& m : f.toTaxiway)
        for (std::size_t i = 0; i < edges.size(); ++i)
          if (edges[i].end != m.point && job->Edge(static_cast<std::int32_t>(i)).end == m.point)
            m.onto = static_cast<std::int32_t>(i);
      NearTaxiways(*job, f);
    }
  }
  return f;
}

bool LoadCheckInput(const std::string& path, CheckInput& input, std::string& error) {
  KitRun run;
  input.path = path;
  if (!FileExists(run.ctx, path)) {
    error = "cannot read '" + path + "': " + WhyUnreadable(path);
    return false;
  }
  input.network = ReadNetworkContent(run.ctx, path);
  std::string ply = path;
  SetExtension(ply, "PLY");
  input.ply = ReadPlyContent(ply);
  if (input.ply.read) input.plyPath = ply;
  if (input.network.read) input.foreseen = ForeseeRepairs(path);
  return true;
}

void CheckFile(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  if (!n.read) {
    std::string what = WhatStandsInstead(in.path);
    out.push_back(Make(Severity::kError, "not-a-network", "file", -1,
                       "'" + in.path + "' does not begin as a BGR network" + (what.empty() ? "" : ": " + what)));
  } else if (IsTileFile(in.path)) {
    out.push_back(Make(Severity::kError, "tile-file", "file", -1,
                       "this is a tile file (TMS), not a network: bgrtool lists it, bgrkit render draws it"));
  } else if (!n.complete) {
    out.push_back(Make(Severity::kError, "damaged-file", "file", -1,
                       "the records stop at byte " + std::to_string(n.stoppedAt) + " of " + std::to_string(n.length) +
                           "; what follows is not read"));
  }
}

void CheckSizes(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  if (n.nodes.size() > static_cast<std::size_t>(TaxiwayList::kMaxPoints))
    out.push_back(Make(Severity::kError, "too-many-points", "network", -1,
                       std::to_string(n.nodes.size()) + " points; -tm reads the first 12000, and then no edge at all"));
  if (n.edges.size() > static_cast<std::size_t>(TaxiwayList::kMaxEdges))
    out.push_back(Make(Severity::kError, "too-many-edges", "network", -1,
                       std::to_string(n.edges.size()) + " edges; -tm reads the first 6000"));
  auto runways = std::count_if(n.edges.begin(), n.edges.end(), [](const EdgeRecord& e) { return e.type == kRunway; });
  if (runways > kRunwaySegments)
    out.push_back(Make(Severity::kError, "too-many-runways", "network", -1,
                       std::to_string(runways) + " runway edges; -tm snaps to the first 32 only"));
}

void CheckDanglingEdges(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  for (std::size_t i = 0; i < n.edges.size(); ++i) {
    const EdgeRecord& e = n.edges[i];
    for (std::int32_t end : {e.from, e.to}) {
      if (n.HasNode(end)) continue;
      out.push_back(AtEdge(Make(Severity::kError, "dangling-edge", "edge", static_cast<std::int64_t>(i),
                                "end point " + std::to_string(end) + " does not exist (the network has " +
                                    std::to_string(n.nodes.size()) + " points)"),
                           n, e));
    }
  }
}

void CheckZeroLengthEdges(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  for (std::size_t i = 0; i < n.edges.size(); ++i) {
    const EdgeRecord& e = n.edges[i];
    if (!n.HasNode(e.from) || !n.HasNode(e.to)) continue;
    const NodeRecord &a = n.Node(e.from), &b = n.Node(e.to);
    if (a.x == b.x && a.y == b.y && a.z == b.z)
      out.push_back(At(Make(Severity::kWarning, "zero-length-edge", "edge", static_cast<std::int64_t>(i),
                            "both ends lie at one place; writing the network back leaves it out"),
                       a.x, a.z));
  }
}

void CheckClosePoints(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  TEXPOINTS kept(static_cast<std::int32_t>(std::min<std::size_t>(n.nodes.size(), INT32_MAX)));
  std::vector<std::int32_t> numberOf;  // table place -> point number
  for (std::size_t i = 0; i < n.nodes.size() && i < static_cast<std::size_t>(INT32_MAX); ++i) {
    const NodeRecord& p = n.nodes[i];
    std::int32_t x = TruncToLong(p.x), y = TruncToLong(p.y), z = TruncToLong(p.z);
    std::int32_t before = kept.count();
    // the search that a script's merge makes
    std::int32_t at = kept.Add(x, y, z, kMergeFeet, nullptr);
    if (at >= 0 && at < before) {
      const TEXPOINT& other = kept[at];
      bool same = other.x == x && other.y == y && other.z == z;
      std::string with = " point " + std::to_string(numberOf[static_cast<std::size_t>(at)]);
      out.push_back(At(same ? Make(Severity::kWarning, "coincident-points", "point", static_cast<std::int64_t>(i),
                                   "lies at the same place as" + with)
                            : Make(Severity::kWarning, "close-points", "point", static_cast<std::int64_t>(i),
                                   "lies within 5 ft of" + with + "; a script's merge would join them"),
                       p.x, p.z));
    } else if (at >= 0) {
      numberOf.push_back(static_cast<std::int32_t>(i));
    }
  }
}

void CheckDuplicateEdges(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  std::map<std::pair<std::int32_t, std::int32_t>, std::size_t> seen;
  for (std::size_t i = 0; i < n.edges.size(); ++i) {
    const EdgeRecord& e = n.edges[i];
    auto [it, fresh] = seen.emplace(std::minmax(e.from, e.to), i);
    if (!fresh)
      out.push_back(AtEdge(Make(Severity::kWarning, "duplicate-edge", "edge", static_cast<std::int64_t>(i),
                                "joins the same points as edge " + std::to_string(it->second)),
                           n, e));
  }
}

// A width comes back from a write and a read as DecodeWidth(EncodeWidth(w)):
// 1 ft less, unless it is a multiple of 25 ft (64 code steps).
void CheckWidthsKept(const NetworkContent& n, Findings& out) {
  std::map<std::int32_t, std::int32_t> shrinking;  // width -> edges
  for (const EdgeRecord& e : n.edges)
    if (e.width >= kMinWidth && e.width <= kMaxWidth && DecodeWidth(EncodeWidth(e.width)) != e.width)
      ++shrinking[e.width];
  if (shrinking.empty()) return;
  std::int32_t edges = 0;
  std::string widths;
  for (const auto& [width, count] : shrinking) {
    edges += count;
    if (widths.size() < 60) {
      widths += (widths.empty() ? "" : ", ") + std::to_string(width) + " ft (" + std::to_string(count) +
                (count == 1 ? " edge)" : " edges)");
    } else if (widths.back() != '.') {
      widths += ", ...";
    }
  }
  out.push_back(Make(Severity::kWarning, "width-shrinks", "network", -1,
                     std::to_string(edges) + (edges == 1 ? " edge loses" : " edges lose") +
                         " 1 ft of width at every write-back by -tm or a script: " + widths +
                         "; only multiples of 25 ft come back as they were written"));
}

void CheckWidths(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  CheckWidthsKept(n, out);
  for (std::size_t i = 0; i < n.edges.size(); ++i) {
    const EdgeRecord& e = n.edges[i];
    if (e.width >= kMinWidth && e.width <= kMaxWidth) continue;
    out.push_back(AtEdge(Make(Severity::kWarning, "width-clamped", "edge", static_cast<std::int64_t>(i),
                              "width " + std::to_string(e.width) + " ft lies outside " + std::to_string(kMinWidth) + ".." +
                                  std::to_string(kMaxWidth) + " ft; a write makes it " +
                                  std::to_string(e.width < kMinWidth ? kMinWidth : kMaxWidth) + " ft"),
                         n, e));
  }
}

void CheckRange(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  for (std::size_t i = 0; i < n.nodes.size(); ++i) {
    const NodeRecord& p = n.nodes[i];
    if (std::fabs(p.x) <= kWorkingRangeFeet && std::fabs(p.z) <= kWorkingRangeFeet) continue;
    out.push_back(At(Make(Severity::kError, "out-of-range", "point", static_cast<std::int64_t>(i),
                          "lies beyond " + std::to_string(kWorkingRangeFeet) +
                              " ft of the origin, where -tm's working units overflow"),
                     p.x, p.z));
  }
}

void CheckYellowLines(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  auto yellow = std::count_if(n.edges.begin(), n.edges.end(), IsYellow);
  if (yellow >= kYellowLinesKept)
    out.push_back(Make(Severity::kWarning, "yellow-lines-dropped", "network", -1,
                       std::to_string(yellow) + " yellow lines; with 100 or more -tm paints them and then leaves "
                                                "them all out of the network it writes back"));
  else if (yellow > 0)
    out.push_back(Make(Severity::kNote, "yellow-lines-kept", "network", -1,
                       std::to_string(yellow) + " yellow line" + (yellow == 1 ? "" : "s") +
                           "; -tm writes them back as taxiways 100 ft wide"));
}

void CheckCrossings(const CheckInput& in, Findings& out) {
  const NetworkContent& n = in.network;
  struct Side {
    std::size_t edge;
    double ax, az, bx, bz;
  };
  std::vector<Side> sides;
  for (std::size_t i = 0; i < n.edges.size(); ++i) {
    const EdgeRecord& e = n.edges[i];
    if (e.type != kTaxiway || IsYellow(e) || !n.HasNode(e.from) || !n.HasNode(e.to)) continue;
    sides.push_back({i, n.Node(e.from).x, n.Node(e.from).z, n.Node(e.to).x, n.Node(e.to).z});
  }
  if (sides.size() < 2) return;
  // a sweep along x: only sides whose x ranges overlap are compared
  std::sort(sides.begin(), sides.end(),
            [](const Side& a, const Side& b) { return std::min(a.ax, a.bx) < std::min(b.ax, b.bx); });
  struct Crossing {
    std::size_t a, b;
    double x, z;
  };
  std::vector<Crossing> crossings;
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const Side& s = sides[i];
    double right = std::max(s.ax, s.bx);
    for (std::size_t j = i + 1; j < sides.size() && std::min(sides[j].ax, sides[j].bx) <= right; ++j) {
      const Side& t = sides[j];
      const EdgeRecord &e = n.edges[s.edge], &f = n.edges[t.edge];
      if (e.from == f.from || e.from == f.to || e.to == f.from || e.to == f.to) continue;
      double x, z;
      if (Cross(s.ax, s.az, s.bx, s.bz, t.ax, t.az, t.bx, t.bz, &x, &z))
        crossings.push_back({std::min(s.edge, t.edge), std::max(s.edge, t.edge), x, z});
    }
  }
  const Foreseen& f = in.foreseen;
  for (const Crossing& c : crossings) {
    std::string what = "crosses edge " + std::to_string(c.b) + " with no shared point";
    if (f.ran && f.taxiways > kMostIntersectedTaxiways) {
      what += "; -tm splits no crossing in a network of more than 100 taxiways (this one has " +
              std::to_string(f.taxiways) + ")";
    } else if (f.ran) {
      bool split = std::any_of(f.splits.begin(), f.splits.end(), [&](const Place& p) {
        return std::fabs(p.x - c.x) <= 1.0 && std::fabs(p.z - c.z) <= 1.0;
      });
      what += split ? "; -tm splits both there" : "; -tm leaves it, the crossing lies within 200 ft of an end";
    }
    out.push_back(At(Make(Severity::kWarning, "crossing-taxiways", "edge", static_cast<std::int64_t>(c.a), what), c.x, c.z));
  }
}

void CheckSnaps(const CheckInput& in, Findings& out) {
  const Foreseen& f = in.foreseen;
  auto moved = [](const Foreseen::Move& m) {
    return "-tm moves this taxiway end " + Feet(PointDistance(m.from.x, m.from.z, m.to.x, m.to.z)) + " ft";
  };
  for (const Foreseen::Move& m : f.toRunway)
    out.push_back(At(Make(Severity::kNote, "snap-to-runway", "point", m.point,
                          moved(m) + " on to a runway, to (" + Feet(m.to.x) + "," + Feet(m.to.z) + ")"),
                     m.from.x, m.from.z));
  for (const Foreseen::Move& m : f.toTaxiway)
    out.push_back(At(Make(Severity::kNote, "snap-to-taxiway", "point", m.point,
                          moved(m) + " on to taxiway edge " + std::to_string(m.onto) + " and splits that there"),
                     m.from.x, m.from.z));
  for (const auto* list : {&f.nearRunway, &f.nearTaxiway}) {
    bool runway = list == &f.nearRunway;
    for (const Foreseen::NearMiss& n : *list)
      out.push_back(At(Make(Severity::kWarning, runway ? "near-runway" : "near-taxiway", "point", n.point,
                            "this taxiway end lies " + Feet(n.feet) + " ft from " + (runway ? "runway" : "taxiway") +
                                " edge " + std::to_string(n.edge) + ", beyond the 150 ft within which -tm snaps it"),
                       n.at.x, n.at.z));
  }
}

void CheckAprons(const CheckInput& in, Findings& out) {
  if (in.plyPath.empty()) return;
  // the polygons as drawn
  std::int64_t k = 0;
  using Corners = std::vector<std::pair<std::int32_t, std::int32_t>>;
  std::map<Corners, std::int64_t> seen;  // corners -> first polygon
  Corners before;
  for (const std::vector<TEXPOINT>& corners : in.ply.polygons) {
    ++k;
    const TEXPOINT& first = corners.front();
    auto make = [&](Severity s, const char* code, std::string text) {
      out.push_back(At(Make(s, code, "polygon", k, std::move(text)), first.x, first.z));
    };
    Corners key;
    for (const TEXPOINT& c : corners) key.emplace_back(c.x, c.z);
    auto [earlier, fresh] = seen.emplace(key, k);
    // right behind its twin -tm makes it once (a note below); anywhere else it lays it again
    bool twinBefore = key == before;
    before = std::move(key);
    if (!fresh && !twinBefore)
      make(Severity::kWarning, "repeated-apron",
           "repeats polygon " + std::to_string(earlier->second) +
               " corner for corner, and -tm lays it again; a script run twice appends its aprons a second time");
    bool ring = corners.size() > 1 && corners.back().Equals(first.x, first.y, first.z);
    std::size_t n = corners.size() - (ring ? 1 : 0);
    if (ring)
      make(Severity::kWarning, "closed-ring",
           "the ring repeats its first corner at its end; -tm moves the repeat by a foot and keeps it as a corner");
    std::set<std::pair<std::int32_t, std::int32_t>> distinct;
    for (std::size_t i = 0; i < n; ++i) distinct.emplace(corners[i].x, corners[i].z);
    if (distinct.size() < n)
      make(Severity::kWarning, "repeated-corner",
           "a corner repeats another; -tm moves the repeat by a foot, which may leave it out as complex");
    bool crossed = false;
    for (std::size_t i = 0; i < n && !crossed; ++i) {
      for (std::size_t j = i + 2; j < n && !crossed; ++j) {
        if (i == 0 && j == n - 1) continue;  // neighbours through the closing side
        const TEXPOINT &a = corners[i], &b = corners[i + 1], &c = corners[j], &d = corners[(j + 1) % n];
        double x, z;
        if (Cross(a.x, a.z, b.x, b.z, c.x, c.z, d.x, d.z, &x, &z)) {
          crossed = true;
          out.push_back(At(Make(Severity::kError, "self-intersecting", "polygon", k,
                                "sides " + std::to_string(i) + " and " + std::to_string(j) + " cross"),
                           x, z));
        }
      }
    }
  }
  QuietRun run;
  PlyReader ply(run.ctx);
  if (!ply.Open(in.plyPath)) return;
  TEXPOINTS points;
  points.Attach(&run.ctx);
  TEXTURE polygon;
  // the polygons as -tm reads them, with its verdict on each
  std::int32_t lastHash = 0;
  k = 0;
  for (ApronFate fate; (fate = NextApron(ply, points, polygon, lastHash)) != ApronFate::kEnd;) {
    ++k;
    const TEXPOINT first = polygon.count > 0 ? points[polygon.verts[0].point] : TEXPOINT{};
    auto make = [&](Severity s, const char* code, const char* text) {
      bool scaled = fate == ApronFate::kMade;
      out.push_back(At(Make(s, code, "polygon", k, text), scaled ? UnitsToFeet(first.x) : first.x,
                       scaled ? UnitsToFeet(first.z) : first.z));
    };
    switch (fate) {
      case ApronFate::kTooFew: make(Severity::kWarning, "short-polygon", "fewer than 3 corners; -tm leaves it out"); break;
      case ApronFate::kRepeat:
        make(Severity::kNote, "repeated-polygon", "its hash equals that of the apron made before it; -tm makes it once");
        break;
      case ApronFate::kComplex:
        make(Severity::kWarning, "complex-polygon", "it touches itself or has holes; -tm leaves it out");
        break;
      case ApronFate::kMade:
        if (!ForEachApronTriangle(points, polygon, [](const TEXPOINT&, const TEXPOINT&, const TEXPOINT&) {}))
          make(Severity::kError, "triangulation-fails", "the triangulation gives no triangle; -tm leaves it out");
        break;
      case ApronFate::kEnd: break;
    }
  }
}

void CheckPlyLines(const CheckInput& in, Findings& out) {
  std::int32_t run = 0;  // POI lines of the polygon under way
  std::int64_t runStart = 0;
  for (std::size_t i = 0; i < in.ply.lines.size(); ++i) {
    const std::string& line = in.ply.lines[i];
    auto number = static_cast<std::int64_t>(i + 1);
    if (line.rfind("EXI", 0) == 0) break;
    long v[6];
    if (line.rfind("LGT", 0) == 0) {
      int got = std::sscanf(line.c_str(), "LGT %ld %ld %ld %ld %ld %ld", &v[0], &v[1], &v[2], &v[3], &v[4], &v[5]);
      if (got != 3 && got != 6)
        out.push_back(Make(Severity::kWarning, "light-numbers", "line", number,
                           "a light needs 3 or 6 numbers (kind, x, z[, x2, z2, count]); with " +
                               std::to_string(got < 0 ? 0 : got) + " -tm passes over it"));
    } else if (std::sscanf(line.c_str(), "POI %ld %ld", &v[0], &v[1]) == 2) {
      if (run == 0) runStart = number;
      if (++run == kMaxPlyCorners) {
        out.push_back(Make(Severity::kError, "too-many-corners", "line", number,
                           "the polygon begun on line " + std::to_string(runStart) +
                               " reaches " + std::to_string(kMaxPlyCorners) + " corners here; -tm ends it and makes a polygon of its own of the rest"));
        run = 0;
      }
    } else if (line.rfind("PLY ", 0) == 0) {
      if (run == 0)
        out.push_back(Make(Severity::kError, "empty-polygon", "line", number,
                           "a PLY line with no corners before it ends -tm's reading of aprons: it makes none "
                           "of the polygons after it"));
      run = 0;
    }
  }
  if (run > 0)
    out.push_back(Make(Severity::kWarning, "open-polygon", "line", runStart,
                       "corners with no PLY line after them form no polygon"));
}

Findings CheckAll(const CheckInput& in) {
  Findings out;
  CheckFile(in, out);
  if (in.network.read) {
    for (auto check : {CheckSizes, CheckDanglingEdges, CheckZeroLengthEdges, CheckClosePoints, CheckDuplicateEdges,
                       CheckWidths, CheckRange, CheckYellowLines, CheckCrossings, CheckSnaps})
      check(in, out);
  }
  CheckAprons(in, out);
  CheckPlyLines(in, out);
  static const std::map<std::string, int> kObjectOrder{{"file", 0}, {"network", 1}, {"point", 2},
                                                       {"edge", 3}, {"polygon", 4}, {"line", 5}};
  std::stable_sort(out.begin(), out.end(), [](const Finding& a, const Finding& b) {
    return std::tuple(static_cast<int>(a.severity), kObjectOrder.at(a.object), a.number) <
           std::tuple(static_cast<int>(b.severity), kObjectOrder.at(b.object), b.number);
  });
  return out;
}

const char* SeverityName(Severity s) {
  return s == Severity::kError ? "error" : s == Severity::kWarning ? "warning" : "note";
}

std::string FormatFinding(const Finding& f) {
  std::string text = std::string(SeverityName(f.severity)) + " " + f.code + " " + f.object;
  if (f.number >= 0) text += " " + std::to_string(f.number);
  if (f.placed) text += " (" + Feet(f.x) + "," + Feet(f.z) + ")";
  return text + ": " + f.message;
}

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

using Counts = std::array<int, 3>;  // errors, warnings, notes

std::string Counted(int n, const char* what) { return std::to_string(n) + " " + what + (n == 1 ? "" : "s"); }

nlohmann::ordered_json Document(const std::string& path, const std::string& ply, const Findings& findings,
                                const Counts& counts) {
  nlohmann::ordered_json doc;
  doc["file"] = path;
  doc["ply"] = ply.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(ply);
  doc["findings"] = nlohmann::ordered_json::array();
  for (const Finding& f : findings) {
    nlohmann::ordered_json j;
    j["severity"] = SeverityName(f.severity);
    j["code"] = f.code;
    j["object"] = f.object;
    j["number"] = f.number >= 0 ? nlohmann::ordered_json(f.number) : nlohmann::ordered_json();
    j["location"] = f.placed ? nlohmann::ordered_json{{"x", f.x}, {"z", f.z}} : nlohmann::ordered_json();
    j["message"] = f.message;
    doc["findings"].push_back(std::move(j));
  }
  doc["summary"] = {{"errors", counts[0]}, {"warnings", counts[1]}, {"notes", counts[2]}};
  return doc;
}

// One file: its findings and summary line, or its JSON document; adds its counts to 'total'.
void CheckOne(const Options& o, const std::string& path, Counts& total, nlohmann::ordered_json& docs) {
  CheckInput input;
  std::string error;
  Findings findings;
  if (LoadCheckInput(path, input, error)) {
    findings = CheckAll(input);
  } else {
    // the file can't be read: one error, so that every file has its summary
    std::cerr << "bgrkit check: " << error << "\n";
    findings.push_back(Make(Severity::kError, "unreadable", "file", -1, error));
  }
  Counts counts{0, 0, 0};
  for (const Finding& f : findings) ++counts[static_cast<std::size_t>(f.severity)];
  for (std::size_t i = 0; i < counts.size(); ++i) total[i] += counts[i];
  if (o.json) {
    docs.push_back(Document(path, input.plyPath, findings, counts));
    return;
  }
  std::string prefix = o.files.size() > 1 ? path + ": " : "";
  for (const Finding& f : findings) std::cout << prefix << FormatFinding(f) << "\n";
  std::cout << path << ": " << Counted(counts[0], "error") << ", " << Counted(counts[1], "warning") << ", "
            << Counted(counts[2], "note") << "\n";
}

int Check(const Options& o) {
  Counts total{0, 0, 0};
  nlohmann::ordered_json docs = nlohmann::ordered_json::array();
  for (const std::string& path : o.files) CheckOne(o, path, total, docs);
  if (o.json) {
    // one file keeps the one document; several make an array of them
    std::cout << (docs.size() == 1 ? docs[0] : docs).dump(2) << "\n";
  } else if (o.files.size() > 1) {
    std::cout << "total: " << Counted(static_cast<int>(o.files.size()), "file") << ", " << Counted(total[0], "error")
              << ", " << Counted(total[1], "warning") << ", " << Counted(total[2], "note") << "\n";
  }
  return total[0] + total[1] > 0 ? kFailed : kDone;
}

}  // namespace

std::function<int()> SetupCheck(CLI::App& command) {
  auto o = std::make_shared<Options>();
  command.add_option("networks", o->files, "BGR networks; the PLY companion beside each is checked too")->required();
  command.add_flag("--json", o->json, "write the findings as one JSON document (an array of them for several files)");
  command.footer(
      "One line a finding: severity code object location: message, sorted by severity, then object,\n"
      "then a summary line per file and, for several files, a total. Notes foresee what -tm repairs;\n"
      "errors and warnings are problems, and make the exit value 1. A file that can't be read is an error.");
  return [o] { return Check(*o); };
}

}  // namespace bgr::kit
