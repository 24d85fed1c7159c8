#include "script/script_network.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "geometry/geo_angle.h"
#include "geometry/planar.h"
#include "platform/platform.h"
#include "script/airport_database.h"

namespace bgr {
namespace {

constexpr double kFullCircle = 1296000.0;
constexpr std::int32_t kLastScriptEdge = TaxiwayList::kMaxEdges - 1;  // the table's last record stays the pen

}  // namespace

void ScriptNetwork::ToLocalFeet(double lat, double lon, double* z, double* x) const {
  *z = NorthFeet(net_.originLat, net_.originLon, lat, lon, kEquatorFeet, kMeridianFeet);
  *x = EastFeet(net_.originLat, net_.originLon, lat, lon, kEquatorFeet, kMeridianFeet);
}

std::int32_t ScriptNetwork::SetReference(double lat, double lon) {
  if (lon < 0.0) lon += kFullCircle;
  for (int round = 0; round < 2; ++round) {
    bool fresh = net_.state == NetState::kEmpty;
    if (fresh) {
      net_.originLat = lat;
      net_.originLon = lon;
      std::string name;
      database_.FindAirport(&net_.originLat, &net_.originLon, name);
      TellDatabaseOnce();
      tally.why = name == "NONE" ? ScriptTally::NoNetwork::kNoAirport : ScriptTally::NoNetwork::kNone;
      if (net_.refCell.column != -1) {
        GeoAngle a, b;
        a.SetLatitude(net_.originLat);
        b.SetLongitude(net_.originLon);
        RefCell cell;
        cell.Set(a, b);
        if (!cell.Matches(net_.refCell) && name != "NONE") {
          name = "NONE";
          tally.why = ScriptTally::NoNetwork::kOtherCell;
        }
      }
      if (tally.why == ScriptTally::NoNetwork::kNoAirport && tally.noAirport++ == 0) tally.firstNoAirport = tally.line;
      if (tally.why == ScriptTally::NoNetwork::kOtherCell && tally.otherCell++ == 0) tally.firstOtherCell = tally.line;
      net_.bgrName = "DATA\\" + name + ".BGR";
      if (name != "NONE") tally.existed.emplace(net_.bgrName, net_.Load(net_.bgrName, 1) != 0);
      ForgetEdges();
    }
    ToLocalFeet(lat, lon, &net_.shiftZ, &net_.shiftX);
    if (fresh) break;
    if (std::fabs(net_.shiftZ) < kSameNetworkFeet && std::fabs(net_.shiftX) < kSameNetworkFeet) break;
    SaveNetwork();
    ForgetEdges();
  }
  net_.state = NetState::kOpen;
  return 1;
}

void ScriptNetwork::TellDatabaseOnce() {
  if (tally.toldDatabase || database_.Usable()) return;
  tally.toldDatabase = true;
  std::string why = WhyUnreadable(kAirportDatabase);
  if (why.empty()) why = "its field list (dbt) beside it is missing or empty, or its records are cut short";
  ctx_.diagnostics().Printf(
      "bgrtool: the airport database '%s' can't be used: %s; no reference point finds an airport\n", kAirportDatabase,
      why.c_str());
}

void ScriptNetwork::SaveNetwork() {
  // the script goes on whatever a save gives: a failed write has said so in the
  // report, and the count of networks not saved tells it at the end
  std::string name = net_.bgrName;
  bool hasWork = name != kNoneBgr && net_.points.count() >= 1 && net_.edgeCount >= 1;
  if (net_.Save(name) != 0) {
    tally.written.insert(name);
  } else if (hasWork) {
    ++tally.notSaved;
    if (!tally.toldDataFolder && platform::KindOf("DATA") != platform::PathKind::kDirectory) {
      tally.toldDataFolder = true;
      ctx_.diagnostics().Printf("bgrtool: there is no folder 'DATA' here, where a script's networks go\n");
    }
  }
}

bool ScriptNetwork::WithinDistance(std::int32_t a, std::int32_t b, std::int32_t distance) const {
  // a number outside the table reads as the origin, as the table's unused places hold
  auto at = [this](std::int32_t n) { return n >= 0 && n < net_.points.count() ? net_.points[n] : TEXPOINT{}; };
  TEXPOINT p = at(a), q = at(b);
  return std::llabs(std::int64_t{p.x} - q.x) <= distance && std::llabs(std::int64_t{p.z} - q.z) <= distance;
}

std::int32_t ScriptNetwork::PenPoint(double x, double y, double z) {
  return net_.points.Add(TruncToLong(x + net_.shiftX), TruncToLong(y), TruncToLong(z + net_.shiftZ), kMergeFeet,
                         nullptr);
}

std::int32_t ScriptNetwork::MoveTo(double x, double y, double z, std::int32_t, std::int32_t) {
  if (net_.edgeCount >= kLastScriptEdge) return 0;
  std::int32_t index = PenPoint(x, y, z);
  net_.edges[static_cast<std::size_t>(net_.edgeCount)].start = index;
  net_.state = NetState::kPenPlaced;
  return 1;
}

std::uint64_t ScriptNetwork::Key(std::int32_t start, std::int32_t end, std::int32_t type) {
  std::uint64_t h = static_cast<std::uint32_t>(start);
  h = h * 0x9E3779B97F4A7C15ull ^ static_cast<std::uint32_t>(end);
  h = h * 0x9E3779B97F4A7C15ull ^ static_cast<std::uint32_t>(type);
  return h;
}

void ScriptNetwork::IndexUpTo(std::int32_t count) {
  if (indexed_ > count) ForgetEdges();
  for (; indexed_ < count; ++indexed_) {
    const TaxiwayEdge& e = net_.edges[static_cast<std::size_t>(indexed_)];
    byEnds_[Key(e.start, e.end, e.type)].push_back(indexed_);
  }
}

void ScriptNetwork::Unindex(std::int32_t edge) {
  if (edge >= indexed_) return;
  const TaxiwayEdge& e = net_.edges[static_cast<std::size_t>(edge)];
  auto it = byEnds_.find(Key(e.start, e.end, e.type));
  if (it == byEnds_.end()) return;
  auto& list = it->second;
  auto at = std::lower_bound(list.begin(), list.end(), edge);
  if (at != list.end() && *at == edge) list.erase(at);
}

void ScriptNetwork::Reindex(std::int32_t edge) {
  if (edge >= indexed_) return;
  const TaxiwayEdge& e = net_.edges[static_cast<std::size_t>(edge)];
  auto& list = byEnds_[Key(e.start, e.end, e.type)];
  list.insert(std::lower_bound(list.begin(), list.end(), edge), edge);
}

std::int32_t ScriptNetwork::FindEdgeByWalk(std::int32_t start, std::int32_t end, std::int32_t type) const {
  for (std::int32_t i = 0; i < net_.edgeCount; ++i) {
    const TaxiwayEdge& e = net_.edges[static_cast<std::size_t>(i)];
    if (e.start == start && e.end == end && e.type == type) return i;
  }
  return -1;
}

std::int32_t ScriptNetwork::FindEdge(std::int32_t start, std::int32_t end, std::int32_t type) {
  IndexUpTo(net_.edgeCount);
  auto it = byEnds_.find(Key(start, end, type));
  if (it == byEnds_.end()) return -1;
  for (std::int32_t i : it->second) {
    const TaxiwayEdge& e = net_.edges[static_cast<std::size_t>(i)];
    if (e.start == start && e.end == end && e.type == type) return i;  // keys may collide
  }
  return -1;
}

std::int32_t ScriptNetwork::LineTo(double x, double y, double z, std::int32_t width, std::int32_t flags,
                                   std::int32_t type) {
  if (net_.edgeCount >= kLastScriptEdge) return 0;
  std::int32_t index = PenPoint(x, y, z);
  TaxiwayEdge& pen = net_.edges[static_cast<std::size_t>(net_.edgeCount)];
  pen.end = index;
  pen.width = width;
  pen.flags = flags;
  pen.type = type;
  std::int32_t same = FindEdge(pen.start, pen.end, pen.type);
  if (same >= 0) {
    TaxiwayEdge& e = net_.edges[static_cast<std::size_t>(same)];
    e.width = std::max(e.width, width);  // drawn twice: one edge, the wider
  } else if (pen.end != pen.start) {
    ++net_.edgeCount;
  }
  TaxiwayEdge& next = net_.edges[static_cast<std::size_t>(net_.edgeCount)];
  next.start = index;
  next.width = width;
  net_.state = NetState::kLineDrawn;
  return 1;
}

std::int32_t ScriptNetwork::AddRunway(double lat1, double lon1, double lat2, double lon2, std::int32_t length,
                                      std::int32_t width) {
  if (length < kShortestRunway) return 0;
  SetReference(lat1, lon1);
  MoveTo(0.0, 0.0, 0.0, width, 0);
  double z = NorthFeet(lat1, lon1, lat2, lon2, kEquatorFeet, kMeridianFeet);
  double x = EastFeet(lat1, lon1, lat2, lon2, kEquatorFeet, kMeridianFeet);
  LineTo(x, 0.0, z, width, 0, 0);
  std::int32_t last = net_.edgeCount - 1;
  if (last < 0) return 1;
  IndexUpTo(net_.edgeCount);
  const TaxiwayEdge& fresh = net_.edges[static_cast<std::size_t>(last)];
  for (std::int32_t i = 0; i < last; ++i) {
    TaxiwayEdge& e = net_.edges[static_cast<std::size_t>(i)];
    if (e.start == -1 || e.type != 0) continue;
    bool along = WithinDistance(e.start, fresh.start, kRunwayReplaceFeet) &&
                 WithinDistance(e.end, fresh.end, kRunwayReplaceFeet);
    bool across = WithinDistance(e.start, fresh.end, kRunwayReplaceFeet) &&
                  WithinDistance(e.end, fresh.start, kRunwayReplaceFeet);
    if (along || across) {
      Unindex(i);
      e.start = -1;  // the later runway replaces the one it lies on; the points stay
      Reindex(i);    // a pen left at -1 by an earlier network still finds it, as the walk does
    }
  }
  return 1;
}

}  // namespace bgr
