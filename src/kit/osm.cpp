// bgrkit osm: OpenStreetMap extracts to airport scripts, read through libosmium
// in two passes (multipolygon relations first, then everything with node
// locations), so the input must be a file.
#include "kit/osm.h"

#include <osmium/area/assembler.hpp>
#include <osmium/area/multipolygon_manager.hpp>
#include <osmium/handler.hpp>
#include <osmium/handler/node_locations_for_ways.hpp>
#include <osmium/index/map/flex_mem.hpp>
#include <osmium/io/pbf_input.hpp>
#include <osmium/io/reader.hpp>
#include <osmium/relations/manager_util.hpp>
#include <osmium/tags/tags_filter.hpp>
#include <osmium/util/file.hpp>
#include <osmium/util/progress_bar.hpp>
#include <osmium/visitor.hpp>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <map>
#include <numeric>
#include <set>
#include <unordered_map>

#include "formats/edge_kinds.h"
#include "frame/file_access.h"
#include "frame/text.h"
#include "geometry/planar.h"
#include "geometry/simplify.h"
#include "kit/kit.h"
#include "formats/taxiway_list.h"
#include "formats/tms_content.h"
#include "frame/run_context.h"
#include "script/airport_database.h"
#include "script/geo_parse.h"
#include "script/script_network.h"
#include "tms/tms_job.h"

namespace bgr::kit {
namespace {

// What one network and its PLY file hold (a script can make 5999 edges; the
// last record of the table is the pen), and the corners a PLY polygon reads.
constexpr std::size_t kMaxPoints = 12000;
constexpr std::size_t kMaxEdges = 5999;
// A PLY polygon holds 255 corners, but -tm reports one of 128 or more as an
// error line: aprons are kept below that.
constexpr std::size_t kMaxCorners = 127;
constexpr double kShortestRunway = 750;  // -te makes no shorter runway
constexpr double kMinWidth = 25, kMaxWidth = 500;  // what a BGR's width code holds
// A feature belongs to an aerodrome whose outline, grown by this margin, holds it.
constexpr double kOutlineMargin = 0.01;  // degrees, about 1 km
// Beyond this, a feature outside every outline belongs to no aerodrome.
constexpr double kNearestAerodrome = 0.06;  // degrees, about 6 km
// An area runway whose centre lies this close to a line runway is that runway.
constexpr double kSameRunwayFeet = 100;
// Curves are simplified up to this for the tiles' sake; beyond it they would
// no longer follow the map.
constexpr double kCurveTolerance = 8;
// A tile layer this close to its capacity counts as full.
constexpr std::size_t kFullMargin = 8;
constexpr int kTaxiwayFlags = kAllFlags;  // pavement, centre line, centre and edge lights
constexpr int kTaxilaneFlags = kPaved | kPaintedLine;  // no lights on an apron lane

struct Geo {
  double lat = 0, lon = 0;  // degrees
};

enum class WayKind { kRunway, kRunwayArea, kTaxiway, kTaxilane };

struct MapWay {
  WayKind kind;
  std::int64_t id;
  std::string ref, width;
  std::vector<std::int64_t> nodes;
  std::vector<Geo> at;
  std::vector<bool> valid;
};

struct MapArea {
  std::string osmId;  // "way/ID" or "relation/ID"
  std::string name;
  std::vector<std::vector<Geo>> outers;
  std::size_t inners = 0;
};

struct Aerodrome {
  std::string osmId;
  std::string code, name;
  Geo at;
  Geo low, high;  // the outline's box; a point for a node
  std::vector<std::size_t> ways, aprons;
};

std::string Tag(const osmium::TagList& tags, const char* key) {
  const char* v = tags[key];
  return v ? v : "";
}

bool LeftOut(const osmium::TagList& tags) {
  return Tag(tags, "disused") == "yes" || Tag(tags, "abandoned") == "yes";
}

// A code that makedb and a file name take: 3 to 5 letters and digits.
std::string Code(const osmium::TagList& tags) {
  for (const char* key : {"icao", "iata", "faa", "ref"}) {
    std::string v = Tag(tags, key);
    if (v.size() < 3 || v.size() > 5) continue;
    if (!std::all_of(v.begin(), v.end(), [](unsigned char c) { return std::isalnum(c); })) continue;
    std::transform(v.begin(), v.end(), v.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return v;
  }
  return "";
}

struct Collector : osmium::handler::Handler {
  std::vector<MapWay> ways;
  std::vector<MapArea> aprons;
  std::vector<Aerodrome> aerodromes;

  void AddAerodrome(const osmium::OSMObject& o, std::string osmId, Geo low, Geo high) {
    Aerodrome a;
    a.osmId = std::move(osmId);
    a.code = Code(o.tags());
    a.name = Tag(o.tags(), "name");
    a.low = low;
    a.high = high;
    a.at = {(low.lat + high.lat) / 2, (low.lon + high.lon) / 2};
    aerodromes.push_back(std::move(a));
  }

  void node(const osmium::Node& n) {
    if (Tag(n.tags(), "aeroway") != "aerodrome" || LeftOut(n.tags()) || !n.location().valid()) return;
    Geo g{n.location().lat(), n.location().lon()};
    AddAerodrome(n, "node/" + std::to_string(n.id()), g, g);
  }

  void way(const osmium::Way& w) {
    const osmium::TagList& tags = w.tags();
    if (LeftOut(tags)) return;
    std::string aeroway = Tag(tags, "aeroway");
    bool closed = w.nodes().size() > 3 && w.nodes().front().ref() == w.nodes().back().ref();
    WayKind kind;
    if (aeroway == "runway") {
      kind = closed && Tag(tags, "area") == "yes" ? WayKind::kRunwayArea : WayKind::kRunway;
    } else if (aeroway.empty() && Tag(tags, "area:aeroway") == "runway" && closed) {
      kind = WayKind::kRunwayArea;
    } else if (aeroway == "taxiway") {
      kind = WayKind::kTaxiway;
    } else if (aeroway == "taxilane") {
      kind = WayKind::kTaxilane;
    } else {
      return;
    }
    MapWay m{kind, w.id(), Tag(tags, "ref"), Tag(tags, "width"), {}, {}, {}};
    for (const osmium::NodeRef& nr : w.nodes()) {
      m.nodes.push_back(nr.ref());
      bool ok = nr.location().valid();
      m.valid.push_back(ok);
      m.at.push_back(ok ? Geo{nr.location().lat(), nr.location().lon()} : Geo{});
    }
    ways.push_back(std::move(m));
  }

  void area(const osmium::Area& a) {
    const osmium::TagList& tags = a.tags();
    if (LeftOut(tags)) return;
    std::string aeroway = Tag(tags, "aeroway");
    std::string osmId = (a.from_way() ? "way/" : "relation/") + std::to_string(a.orig_id());
    std::vector<std::vector<Geo>> outers;
    std::size_t inners = 0;
    for (const osmium::OuterRing& outer : a.outer_rings()) {
      std::vector<Geo> ring;
      for (const osmium::NodeRef& nr : outer)
        if (nr.location().valid()) ring.push_back({nr.location().lat(), nr.location().lon()});
      outers.push_back(std::move(ring));
      inners += static_cast<std::size_t>(std::distance(a.inner_rings(outer).begin(), a.inner_rings(outer).end()));
    }
    if (aeroway == "aerodrome") {
      Geo low{90, 180}, high{-90, -180};
      for (const auto& ring : outers)
        for (const Geo& g : ring) {
          low = {std::min(low.lat, g.lat), std::min(low.lon, g.lon)};
          high = {std::max(high.lat, g.lat), std::max(high.lon, g.lon)};
        }
      if (low.lat > high.lat) return;  // an outline that didn't assemble: the node form, if any, stands
      AddAerodrome(a, osmId, low, high);
    } else if (aeroway == "apron") {
      std::string name = Tag(tags, "name");
      if (name.empty()) name = Tag(tags, "ref");
      aprons.push_back({osmId, name, std::move(outers), inners});
    }
  }
};

// The first valid position of a way or an apron, where it is placed.
bool Anchor(const MapWay& w, Geo& g) {
  for (std::size_t i = 0; i < w.at.size(); ++i)
    if (w.valid[i]) {
      g = w.at[i];
      return true;
    }
  return false;
}

// The aerodrome a feature at 'g' belongs to, or -1.
int Owner(const std::vector<Aerodrome>& aerodromes, Geo g) {
  int best = -1;
  double bestDistance = 1e300;
  bool bestInside = false;
  for (std::size_t i = 0; i < aerodromes.size(); ++i) {
    const Aerodrome& a = aerodromes[i];
    bool inside = g.lat >= a.low.lat - kOutlineMargin && g.lat <= a.high.lat + kOutlineMargin &&
                  g.lon >= a.low.lon - kOutlineMargin && g.lon <= a.high.lon + kOutlineMargin;
    double d = std::hypot(g.lat - a.at.lat, (g.lon - a.at.lon) * std::cos(a.at.lat * kPi / 180));
    if (!inside && d > kNearestAerodrome) continue;
    if ((inside && !bestInside) || (inside == bestInside && d < bestDistance)) {
      best = static_cast<int>(i);
      bestDistance = d;
      bestInside = inside;
    }
  }
  return best;
}

// Feet from the airport's origin, as the script interpreter measures them: the
// origin as makedb stores it, the reference point as the REF line parses.
struct Frame {
  double originLat = 0, originLon = 0;  // arc-seconds
  double shiftX = 0, shiftZ = 0;         // the REF line's place in the network

  static double EastSeconds(double degrees) {
    double east = degrees * 3600.0;
    return east < 0 ? east + 1296000.0 : east;
  }
  PlanePoint Feet(Geo g) const {
    double lat = g.lat * 3600.0, lon = EastSeconds(g.lon);
    return {EastFeet(originLat, originLon, lat, lon, kEquatorFeet, kMeridianFeet) - shiftX,
            NorthFeet(originLat, originLon, lat, lon, kEquatorFeet, kMeridianFeet) - shiftZ};
  }
  // The inverse, for centre lines found in feet.
  Geo Place(PlanePoint p) const {
    double lat = originLat + (p.z + shiftZ) * 1296000.0 / kMeridianFeet;
    double c = std::cos(originLat / 3600.0 * kPi / 180.0);
    double lon = originLon + (p.x + shiftX) * 1296000.0 / (kEquatorFeet * c);
    if (lon > 648000.0) lon -= 1296000.0;
    return {lat / 3600.0, lon / 3600.0};
  }
};

std::string Position(Geo g) { return FormatLatitude(g.lat) + " " + FormatLongitude(g.lon); }

std::string Feet(double v) {
  char text[48];
  std::snprintf(text, sizeof text, "%.2f", v);
  return text;
}

// The whole foot that -te stores for a written coordinate.
std::int32_t Stored(double v, double shift) {
  double back = std::strtod(Feet(v).c_str(), nullptr) + shift;
  return static_cast<std::int32_t>(std::clamp(back, -2.0e9, 2.0e9));
}

double Clamp(double width, int& clamped) {
  if (width < kMinWidth || width > kMaxWidth) ++clamped;
  return std::clamp(width, kMinWidth, kMaxWidth);
}

int DesignatorNumber(std::string_view d) {
  int n = 0, digits = 0;
  while (digits < static_cast<int>(d.size()) && digits < 2 && std::isdigit(static_cast<unsigned char>(d[digits])))
    n = n * 10 + (d[static_cast<std::size_t>(digits++)] - '0');
  return digits > 0 && n >= 1 && n <= 36 ? n : 0;
}

std::string Opposite(std::string_view d) {
  int n = DesignatorNumber(d);
  char text[16];
  std::snprintf(text, sizeof text, "%02d", (n + 17) % 36 + 1);
  std::string out = text;
  std::size_t digits = 0;
  while (digits < d.size() && digits < 2 && std::isdigit(static_cast<unsigned char>(d[digits]))) ++digits;
  std::string_view suffix = d.substr(digits);
  if (suffix == "L") out += "R";
  else if (suffix == "R") out += "L";
  else out += suffix;
  return out;
}

std::string Trim(std::string_view s) {
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
  std::string out;
  for (char c : s)
    if (!std::isspace(static_cast<unsigned char>(c))) out += c;  // a field of a script line holds no blank
  return out;
}

int CircularDistance(int a, int b) {
  int d = std::abs(a - b) % 36;
  return std::min(d, 36 - d);
}

}  // namespace

double WidthFeet(std::string_view tag) {
  std::string text(tag);
  const char* begin = text.c_str();
  char* end = nullptr;
  double v = std::strtod(begin, &end);
  if (end == begin || !std::isfinite(v) || v <= 0) return 0;
  std::string unit = Trim(end);
  std::transform(unit.begin(), unit.end(), unit.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (unit.empty() || unit == "m" || unit == "meters" || unit == "metres") return v / 0.3048;
  if (unit == "ft" || unit == "'" || unit == "feet" || unit == "foot") return v;
  return 0;
}

RunwayEnds NameRunwayEnds(std::string_view ref, double bearing) {
  int expected = static_cast<int>(std::lround(std::fmod(std::fmod(bearing, 360.0) + 360.0, 360.0) / 10.0)) % 36;
  if (expected == 0) expected = 36;
  std::string text = Trim(ref);
  std::size_t slash = text.find('/');
  std::string a = text.substr(0, slash), b = slash == std::string::npos ? "" : text.substr(slash + 1);
  if (DesignatorNumber(a) == 0) a.clear();
  if (DesignatorNumber(b) == 0) b.clear();
  if (a.empty() && b.empty()) {
    char made[8];
    std::snprintf(made, sizeof made, "%02d", expected);
    a = made;
  }
  if (a.empty()) a = Opposite(b);
  if (b.empty()) b = Opposite(a);
  if (CircularDistance(DesignatorNumber(b), expected) < CircularDistance(DesignatorNumber(a), expected)) std::swap(a, b);
  return {a, b};
}

namespace {

struct Runway {
  std::string osmId, first, second;
  Geo from, to;
  double width = 0;
};

struct AirportOut {
  std::string script;
  std::string summary;
  std::vector<std::string> notes;  // what was simplified or left out, and why
};

class AirportBuilder {
 public:
  AirportBuilder(const OsmOptions& o, const Collector& map, const Aerodrome& a, Geo reference)
      : o_(o), map_(map), a_(a), reference_(reference) {
    char csv[64];
    std::snprintf(csv, sizeof csv, "%.7f,%.7f", reference.lat, reference.lon);
    csvPosition_ = csv;
    // the origin exactly as makedb reads the row back, and the REF line's shift as -te parses it
    frame_.originLat = std::strtod(csv, nullptr) * 3600.0;
    frame_.originLon = Frame::EastSeconds(std::strtod(std::strchr(csv, ',') + 1, nullptr));
    refLine_ = "REF " + Position(reference) + "\n";
    double lat = 0, lon = 0;
    ParseLatitude(FormatLatitude(reference.lat), &lat);
    ParseLongitude(FormatLongitude(reference.lon), &lon);
    PlanePoint shift = frame_.Feet({lat / 3600.0, lon / 3600.0 + (lon < 0 ? 360.0 : 0.0)});
    frame_.shiftX = shift.x;
    frame_.shiftZ = shift.z;
  }

  const std::string& CsvPosition() const { return csvPosition_; }

  AirportOut Build() {
    AirportOut out;
    std::string body;
    LineRunways();
    AreaRunways();
    for (const Runway& r : runways_) body += RunwayLine(r);
    body += refLine_;
    std::string aprons = Aprons();  // first: the tile trial of the taxiways tiles them too
    body += Taxiways();
    body += aprons;
    out.script = "; " + a_.code + (a_.name.empty() ? "" : " " + a_.name) + ", made by bgrkit osm from " + o_.input +
                 " (" + a_.osmId + ")\n; Map data \xC2\xA9 OpenStreetMap contributors, ODbL 1.0, "
                 "https://www.openstreetmap.org/copyright\n"
                 "SRC \"" + o_.input + "\"\n" + refLine_ + body + "EXI\n";
    char text[256];
    std::snprintf(text, sizeof text, "%zu runway%s, %zu taxiway ways as %zu edges, %zu apron%s as %zu polygon%s",
                  written_, written_ == 1 ? "" : "s", taxiwayWays_, taxiwayEdges_, apronCount_,
                  apronCount_ == 1 ? "" : "s", polygons_, polygons_ == 1 ? "" : "s");
    out.summary = text;
    out.notes = std::move(notes_);
    return out;
  }

 private:
  void Note(std::string text) { notes_.push_back(std::move(text)); }

  // Runway lines: pieces under one ref that meet end to end are one runway.
  void LineRunways() {
    std::map<std::string, std::vector<std::size_t>> groups;
    for (std::size_t i : a_.ways) {
      const MapWay& w = map_.ways[i];
      if (w.kind != WayKind::kRunway) continue;
      RunwayEnds key = NameRunwayEnds(w.ref, 0);
      std::string k = w.ref.empty() ? "way/" + std::to_string(w.id) : std::min(key.first, key.second) + "/" + std::max(key.first, key.second);
      groups[k].push_back(i);
    }
    for (auto& [key, members] : groups) {
      // joined through shared end nodes
      std::vector<std::size_t> parent(members.size());
      std::iota(parent.begin(), parent.end(), 0);
      auto root = [&](std::size_t x) {
        while (parent[x] != x) x = parent[x] = parent[parent[x]];
        return x;
      };
      for (std::size_t i = 0; i < members.size(); ++i)
        for (std::size_t j = i + 1; j < members.size(); ++j) {
          const MapWay& p = map_.ways[members[i]];
          const MapWay& q = map_.ways[members[j]];
          if (p.nodes.empty() || q.nodes.empty()) continue;
          if (p.nodes.front() == q.nodes.front() || p.nodes.front() == q.nodes.back() ||
              p.nodes.back() == q.nodes.front() || p.nodes.back() == q.nodes.back())
            parent[root(i)] = root(j);
        }
      std::map<std::size_t, std::vector<std::size_t>> pieces;
      for (std::size_t i = 0; i < members.size(); ++i) pieces[root(i)].push_back(members[i]);
      for (auto& [r, ways] : pieces) {
        std::vector<Geo> ends;
        std::string ref, ids;
        double width = 0;
        for (std::size_t i : ways) {
          const MapWay& w = map_.ways[i];
          for (std::size_t k : {std::size_t{0}, w.at.size() - 1})
            if (!w.at.empty() && w.valid[k]) ends.push_back(w.at[k]);
          ref = w.ref;
          width = std::max(width, WidthFeet(w.width));
          ids += (ids.empty() ? "way/" : "+") + std::to_string(w.id);
        }
        AddRunway(ends, ref, ids, width);
      }
    }
  }

  void AddRunway(const std::vector<Geo>& ends, const std::string& ref, const std::string& ids, double width) {
    if (ends.size() < 2) {
      Note("runway " + ids + " has no two ends on the map: left out");
      return;
    }
    std::size_t bi = 0, bj = 1;
    double longest = -1;
    for (std::size_t i = 0; i < ends.size(); ++i)
      for (std::size_t j = i + 1; j < ends.size(); ++j) {
        PlanePoint p = frame_.Feet(ends[i]), q = frame_.Feet(ends[j]);
        double d = std::hypot(p.x - q.x, p.z - q.z);
        if (d > longest) {
          longest = d;
          bi = i;
          bj = j;
        }
      }
    PlanePoint p = frame_.Feet(ends[bi]), q = frame_.Feet(ends[bj]);
    RunwayEnds names = NameRunwayEnds(ref, std::atan2(q.x - p.x, q.z - p.z) * 180 / kPi);
    Runway r{ids, names.first, names.second, ends[bi], ends[bj], width > 0 ? width : o_.runwayWidth};
    if (DesignatorNumber(r.first) > DesignatorNumber(r.second)) {
      std::swap(r.first, r.second);
      std::swap(r.from, r.to);
    }
    runways_.push_back(r);
  }

  // A runway drawn only as an area gets the area's long axis as its centre line.
  void AreaRunways() {
    for (std::size_t i : a_.ways) {
      const MapWay& w = map_.ways[i];
      if (w.kind != WayKind::kRunwayArea) continue;
      std::vector<PlanePoint> ring;
      for (std::size_t k = 0; k + 1 < w.at.size(); ++k)
        if (w.valid[k]) ring.push_back(frame_.Feet(w.at[k]));
      std::string id = "way/" + std::to_string(w.id);
      if (ring.size() < 3) {
        Note("runway area " + id + " has fewer than 3 corners on the map: left out");
        continue;
      }
      double cx = 0, cz = 0;
      for (const PlanePoint& p : ring) cx += p.x, cz += p.z;
      cx /= static_cast<double>(ring.size());
      cz /= static_cast<double>(ring.size());
      double sxx = 0, szz = 0, sxz = 0;
      for (const PlanePoint& p : ring) {
        sxx += (p.x - cx) * (p.x - cx);
        szz += (p.z - cz) * (p.z - cz);
        sxz += (p.x - cx) * (p.z - cz);
      }
      double angle = 0.5 * std::atan2(2 * sxz, sxx - szz);
      double ux = std::cos(angle), uz = std::sin(angle);
      double lo = 1e300, hi = -1e300, across0 = 1e300, across1 = -1e300;
      for (const PlanePoint& p : ring) {
        double t = (p.x - cx) * ux + (p.z - cz) * uz, s = -(p.x - cx) * uz + (p.z - cz) * ux;
        lo = std::min(lo, t), hi = std::max(hi, t), across0 = std::min(across0, s), across1 = std::max(across1, s);
      }
      double mid = (across0 + across1) / 2;
      PlanePoint a{cx + lo * ux - mid * uz, cz + lo * uz + mid * ux};
      PlanePoint b{cx + hi * ux - mid * uz, cz + hi * uz + mid * ux};
      PlanePoint centre{(a.x + b.x) / 2, (a.z + b.z) / 2};
      bool drawn = false;
      for (const Runway& r : runways_) {
        if (!r.osmId.starts_with("way/") || r.osmId.find("area") != std::string::npos) continue;
        double reach = (across1 - across0) / 2 + kSameRunwayFeet;
        if (SegmentPointDistance(frame_.Feet(r.from), frame_.Feet(r.to), centre) <= reach) drawn = true;
      }
      if (drawn) continue;  // the line runway stands for it
      double width = WidthFeet(w.width);
      AddRunway({frame_.Place(a), frame_.Place(b)}, w.ref, id, width > 0 ? width : across1 - across0);
    }
  }

  std::string RunwayLine(const Runway& r) {
    PlanePoint p = frame_.Feet(r.from), q = frame_.Feet(r.to);
    double length = std::hypot(q.x - p.x, q.z - p.z);
    if (length < kShortestRunway) {
      Note("runway " + r.first + "/" + r.second + " (" + r.osmId + ") is " + std::to_string(static_cast<int>(length)) +
           " ft long: -te makes runways from 750 ft, so it is left out");
      return "";
    }
    int clamped = 0;
    double width = Clamp(r.width, clamped);
    if (clamped) Note("runway " + r.first + "/" + r.second + " (" + r.osmId + "): its width is held to 25..500 ft");
    ++written_;
    trialRunways_.push_back({p, q, static_cast<int>(width)});
    // -te measures the second end east of the first at the first end's latitude,
    // not the origin's: its longitude is written so that it lands on the map's node
    double lat1 = 0, lon1 = 0;
    ParseLatitude(FormatLatitude(r.from.lat), &lat1);
    ParseLongitude(FormatLongitude(r.from.lon), &lon1);
    PlanePoint first = frame_.Feet({lat1 / 3600.0, lon1 / 3600.0});
    double c = std::cos(lat1 / 3600.0 * kPi / 180.0);
    double lon2 = lon1 + (q.x - first.x) * 1296000.0 / (kEquatorFeet * c);
    Geo second{r.to.lat, lon2 / 3600.0};
    char text[256];
    std::snprintf(text, sizeof text, "RWY %s %s %s osm %d %d %s %s\n", r.first.c_str(), r.second.c_str(),
                  r.osmId.substr(0, 120).c_str(), static_cast<int>(length), static_cast<int>(width),
                  Position(r.from).c_str(), Position(second).c_str());
    return text;
  }

  // Taxiways and taxilanes, split where the map lacks a node; a node that two
  // ways (or a runway) share is a junction that simplification keeps.
  void PrepareTaxiways() {
    std::unordered_map<std::int64_t, int> uses;
    std::set<std::int64_t> runwayNodes;
    std::size_t missing = 0, single = 0;
    for (std::size_t i : a_.ways) {
      const MapWay& w = map_.ways[i];
      if (w.kind == WayKind::kRunway) runwayNodes.insert(w.nodes.begin(), w.nodes.end());
      if (w.kind != WayKind::kTaxiway && w.kind != WayKind::kTaxilane) continue;
      ++taxiwayWays_;
      Piece piece{&w, {}};
      bool any = false;
      auto flush = [&] {
        if (piece.at.size() >= 2) {
          any = true;
          pieces_.push_back(piece);
        }
        piece.at.clear();
      };
      for (std::size_t k = 0; k < w.nodes.size(); ++k) {
        if (!w.valid[k]) {
          ++missing;
          flush();
          continue;
        }
        if (!piece.at.empty() && w.nodes[piece.at.back()] == w.nodes[k]) continue;
        piece.at.push_back(k);
      }
      flush();
      if (!any) ++single;
    }
    if (missing) Note(std::to_string(missing) + " taxiway nodes are missing from the map: the ways are cut there");
    if (single) Note(std::to_string(single) + " taxiway ways have fewer than two nodes on the map: left out");
    for (const Piece& p : pieces_)
      for (std::size_t k : p.at) ++uses[p.way->nodes[k]];
    chains_.resize(pieces_.size());
    keeps_.resize(pieces_.size());
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      for (std::size_t k : pieces_[i].at) {
        std::int64_t id = pieces_[i].way->nodes[k];
        chains_[i].push_back(frame_.Feet(pieces_[i].way->at[k]));
        keeps_[i].push_back(uses[id] >= 2 || runwayNodes.count(id) > 0);
      }
    }
  }

  // The points kept of every piece at 'tolerance' (0: all), and whether they
  // fit a network's tables beside the runways.
  bool Thin(double tolerance, std::vector<std::vector<std::size_t>>& kept) const {
    std::set<std::int64_t> points;
    std::size_t edges = 0;
    kept.assign(pieces_.size(), {});
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      if (tolerance == 0) {
        kept[i].resize(chains_[i].size());
        std::iota(kept[i].begin(), kept[i].end(), 0);
      } else {
        kept[i] = SimplifyChain(chains_[i], keeps_[i], tolerance);
      }
      edges += kept[i].size() - 1;
      for (std::size_t k : kept[i]) points.insert(pieces_[i].way->nodes[pieces_[i].at[k]]);
    }
    return points.size() <= kMaxPoints - 2 * written_ && edges <= kMaxEdges - written_;
  }

  std::string DrawTaxiways(const std::vector<std::vector<std::size_t>>& kept) {
    std::string text;
    char line[160];
    int clamped = 0;
    // a stretch that two ways share is drawn once: drawn back the other way, -te
    // would keep it as a second edge
    std::set<std::pair<std::int64_t, std::int64_t>> drawn;
    taxiwayEdges_ = 0;
    trialTaxiways_.clear();
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      const MapWay& w = *pieces_[i].way;
      bool lane = w.kind == WayKind::kTaxilane;
      double width = WidthFeet(w.width);
      int feet = static_cast<int>(Clamp(width > 0 ? width : lane ? o_.taxilaneWidth : o_.taxiwayWidth, clamped));
      int flags = lane ? kTaxilaneFlags : kTaxiwayFlags;
      std::int64_t previous = 0;
      for (std::size_t n = 0; n < kept[i].size(); ++n) {
        std::int64_t node = w.nodes[pieces_[i].at[kept[i][n]]];
        bool draw = n > 0 && drawn.insert({std::min(previous, node), std::max(previous, node)}).second;
        previous = node;
        const PlanePoint& p = chains_[i][kept[i][n]];
        std::snprintf(line, sizeof line, "%s %s 0 %s %d %d\n", draw ? "LIN" : "MOV", Feet(p.x).c_str(),
                      Feet(p.z).c_str(), feet, flags);
        text += line;
        trialTaxiways_.push_back({draw, p, feet, flags});
        if (draw) ++taxiwayEdges_;
      }
    }
    if (clamped) Note(std::to_string(clamped) + " taxiway widths are held to 25..500 ft");
    return text;
  }

  // The taxiways at the smallest tolerance at which the network's tables and
  // -tm's tiles hold the airport. Where the tiles overflow even so (a tile
  // dense with junctions, as a de-icing pad is), the shortest ways in the full
  // tiles are left out, each named.
  std::string Taxiways() {
    PrepareTaxiways();
    std::vector<std::vector<std::size_t>> kept;
    double tolerance = 0;
    int steps = 0;
    while (!Thin(tolerance, kept) && ++steps < 16) tolerance = tolerance == 0 ? 0.5 : tolerance * 2;
    bool tables = steps < 16;
    std::string text = DrawTaxiways(kept);
    bool tiles = TilesFit();
    for (; !tiles && tolerance < kCurveTolerance; ++steps) {
      tolerance = tolerance == 0 ? 0.5 : tolerance * 4;  // each trial tiles the whole airport: few of them
      tables = Thin(tolerance, kept);
      text = DrawTaxiways(kept);
      tiles = TilesFit();
    }
    if (tolerance > 0)
      Note("curves simplified within " + Feet(tolerance) + " ft (junctions kept) so that the network's tables " +
           "and -tm's tiles hold the airport: " + std::to_string(taxiwayEdges_) + " taxiway edges");
    std::vector<std::string> dropped;
    for (int round = 0; !tiles && round < 24; ++round) {
      std::vector<std::pair<double, std::size_t>> inFull;  // length, piece
      for (std::size_t i = 0; i < pieces_.size(); ++i) {
        if (kept[i].empty()) continue;
        bool inside = false;
        double length = 0;
        for (std::size_t n = 0; n < kept[i].size(); ++n) {
          const PlanePoint& p = chains_[i][kept[i][n]];
          if (n) length += std::hypot(p.x - chains_[i][kept[i][n - 1]].x, p.z - chains_[i][kept[i][n - 1]].z);
          for (const Box& t : fullTiles_)
            if (p.x + frame_.shiftX >= t.x0 && p.x + frame_.shiftX <= t.x1 && p.z + frame_.shiftZ >= t.z0 &&
                p.z + frame_.shiftZ <= t.z1)
              inside = true;
        }
        if (inside) inFull.push_back({length, i});
      }
      if (inFull.empty()) break;
      std::sort(inFull.begin(), inFull.end());
      std::size_t batch = std::max<std::size_t>(1, inFull.size() / 4);
      for (std::size_t k = 0; k < batch; ++k) {
        std::size_t i = inFull[k].second;
        kept[i].clear();
        dropped.push_back("way/" + std::to_string(pieces_[i].way->id));
      }
      text = DrawTaxiways(kept);
      tiles = TilesFit();
    }
    if (!dropped.empty()) {
      std::string list;
      for (const std::string& d : dropped) list += " " + d;
      Note(std::to_string(dropped.size()) + " short taxiway pieces left out where -tm's tiles were full:" + list);
    }
    if (!tables) Note("the taxiways don't fit a network even so: -te will leave out what lies beyond its tables");
    if (!tiles) Note("the tiles don't hold the airport even so: -tm will report a full table");
    return text;
  }

  // -tm's tiles hold 2000 points a layer: the network and aprons as -te would
  // build them, tiled in a scratch folder, tell whether the airport fits.
  bool TilesFit() {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path folder = fs::temp_directory_path(ec) /
                      ("bgrkit-osm-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "-" + a_.code);
    fs::create_directories(folder, ec);
    std::string bgr = (folder / "trial.BGR").string();
    QuietRun run;
    {
      TaxiwayList network(run.ctx);
      AirportDatabase none(run.ctx);
      ScriptNetwork pen(run.ctx, network, none);
      network.shiftX = frame_.shiftX;
      network.shiftZ = frame_.shiftZ;
      for (const TrialRunway& r : trialRunways_) {
        pen.MoveTo(r.from.x, 0, r.from.z, r.width, 0);
        pen.LineTo(r.to.x, 0, r.to.z, r.width, 0, 0);
      }
      for (const TrialStep& t : trialTaxiways_) {
        if (t.draw) pen.LineTo(t.at.x, 0, t.at.z, t.width, t.flags, 1);
        else pen.MoveTo(t.at.x, 0, t.at.z, t.width, t.flags);
      }
      if (network.Save(bgr) != 1) return true;  // nothing to tile
    }
    std::string ply = "ORG 0 0\n" + trialAprons_;
    if (std::FILE* f = std::fopen((folder / "trial.PLY").string().c_str(), "wb")) {
      std::fwrite(ply.data(), 1, ply.size(), f);
      std::fclose(f);
    }
    auto job = std::make_unique<TmsJob>(run.ctx);
    job->Run(bgr);
    job.reset();
    bool fits = run.console.Take().find("table full") == std::string::npos;
    fullTiles_.clear();
    if (!fits) {
      // a full table stops at its capacity: the tiles with a layer at it are the full ones
      TmsContent tms = ReadTmsContent(run.ctx, (folder / "trial.TMS").string());
      for (int x = 0; x < kTmsGrid; ++x)
        for (int z = 0; z < kTmsGrid; ++z)
          for (int layer = 0; layer < kTmsSections; ++layer) {
            std::set<std::pair<std::int32_t, std::int32_t>> points;
            for (const TmsShape& shape : tms.tiles[x][z][layer]) points.insert(shape.corners.begin(), shape.corners.end());
            if (points.size() + kFullMargin < TEXPOINTS::kDefaultCapacity) continue;
            double x0 = tms.lowl[0] + x * double{tms.tileFeet}, z0 = tms.lowl[2] + z * double{tms.tileFeet};
            fullTiles_.push_back({x0, z0, x0 + tms.tileFeet, z0 + tms.tileFeet});
            break;
          }
    }
    (void)run.console.Take();
    fs::remove_all(folder, ec);
    return fits;
  }

  std::string Aprons() {
    std::string text;
    for (std::size_t i : a_.aprons) {
      const MapArea& apron = map_.aprons[i];
      ++apronCount_;
      std::string name = apron.name.empty() ? "apron" : apron.name;
      std::replace(name.begin(), name.end(), '"', '\'');
      if (apron.outers.empty()) {
        Note("apron " + apron.osmId + " has no outline that closes: left out");
        continue;
      }
      if (apron.inners)
        Note("apron " + apron.osmId + ": its " + std::to_string(apron.inners) +
             (apron.inners == 1 ? " hole is" : " holes are") + " left out (the tiles' aprons have none)");
      for (std::size_t r = 0; r < apron.outers.size(); ++r) {
        std::string label = apron.outers.size() == 1 ? apron.osmId
                                                      : apron.osmId + ", part " + std::to_string(r + 1) + " of " +
                                                            std::to_string(apron.outers.size());
        std::vector<PlanePoint> ring = Corners(apron.outers[r]);
        if (ring.size() > kMaxCorners) {
          RingFit fit = FitRing(ring, kMaxCorners, 0.5);
          std::vector<PlanePoint> thinned;
          for (std::size_t k : fit.kept) thinned.push_back(ring[k]);
          Note("apron " + label + ": " + std::to_string(ring.size()) + " corners simplified within " +
               Feet(fit.tolerance) + " ft to " + std::to_string(thinned.size()));
          ring = Deduplicated(thinned);
        }
        if (ring.size() < 3 || std::fabs(RingArea2(ring)) < 1.0) {
          Note("apron " + label + " has no area in whole feet: left out");
          continue;
        }
        for (const PlanePoint& p : ring) {
          text += "POI " + Feet(p.x) + " 0 " + Feet(p.z) + "\n";
          trialAprons_ += "POI " + std::to_string(Stored(p.x, frame_.shiftX)) + " " +
                          std::to_string(Stored(p.z, frame_.shiftZ)) + "\n";
        }
        trialAprons_ += "PLY \"trial\"\n";
        text += "PLY \"" + name.substr(0, 120) + " (" + label + ")\"\n";
        ++polygons_;
      }
    }
    return text;
  }

  // A ring's corners without its closing one, and without corners that -te
  // would store on the whole foot of the corner before (a PLY polygon that
  // repeats a corner fails to triangulate).
  std::vector<PlanePoint> Corners(const std::vector<Geo>& outline) {
    std::vector<PlanePoint> ring;
    for (const Geo& g : outline) ring.push_back(frame_.Feet(g));
    return Deduplicated(ring);
  }

  std::vector<PlanePoint> Deduplicated(const std::vector<PlanePoint>& ring) {
    std::vector<PlanePoint> out;
    auto same = [&](const PlanePoint& a, const PlanePoint& b) {
      return Stored(a.x, frame_.shiftX) == Stored(b.x, frame_.shiftX) &&
             Stored(a.z, frame_.shiftZ) == Stored(b.z, frame_.shiftZ);
    };
    for (const PlanePoint& p : ring)
      if (out.empty() || !same(out.back(), p)) out.push_back(p);
    while (out.size() > 1 && same(out.front(), out.back())) out.pop_back();
    return out;
  }

  struct Piece {
    const MapWay* way;
    std::vector<std::size_t> at;  // indexes into the way
  };
  struct Box {
    double x0, z0, x1, z1;  // feet in the network
  };
  struct TrialRunway {
    PlanePoint from, to;
    int width;
  };
  struct TrialStep {
    bool draw;
    PlanePoint at;
    int width, flags;
  };

  const OsmOptions& o_;
  const Collector& map_;
  const Aerodrome& a_;
  Geo reference_;
  Frame frame_;
  std::string csvPosition_, refLine_;
  std::vector<Runway> runways_;
  std::vector<Piece> pieces_;
  std::vector<std::vector<PlanePoint>> chains_;
  std::vector<std::vector<bool>> keeps_;
  std::vector<TrialRunway> trialRunways_;
  std::vector<TrialStep> trialTaxiways_;
  std::string trialAprons_;  // the PLY lines that -te would write
  std::vector<Box> fullTiles_;  // of the last trial
  std::vector<std::string> notes_;
  std::size_t written_ = 0, taxiwayWays_ = 0, taxiwayEdges_ = 0, apronCount_ = 0, polygons_ = 0;
};

// The reference point: the middle of everything the aerodrome holds, so that
// the whole airport lies as close to its origin as it can.
Geo Reference(const Collector& map, const Aerodrome& a) {
  Geo low{90, 180}, high{-90, -180};
  bool any = false;
  auto take = [&](Geo g) {
    low = {std::min(low.lat, g.lat), std::min(low.lon, g.lon)};
    high = {std::max(high.lat, g.lat), std::max(high.lon, g.lon)};
    any = true;
  };
  for (std::size_t i : a.ways)
    for (std::size_t k = 0; k < map.ways[i].at.size(); ++k)
      if (map.ways[i].valid[k]) take(map.ways[i].at[k]);
  for (std::size_t i : a.aprons)
    for (const auto& ring : map.aprons[i].outers)
      for (const Geo& g : ring) take(g);
  return any ? Geo{(low.lat + high.lat) / 2, (low.lon + high.lon) / 2} : a.at;
}

// --airport: a code, or an OSM id with an optional code behind '='.
bool Wanted(const OsmOptions& o, Aerodrome& a, std::vector<bool>& used) {
  if (o.airports.empty()) return !a.code.empty();
  for (std::size_t i = 0; i < o.airports.size(); ++i) {
    std::string want = o.airports[i], code;
    if (std::size_t eq = want.find('='); eq != std::string::npos) {
      code = want.substr(eq + 1);
      want.resize(eq);
    }
    bool byId = want == a.osmId;
    bool byCode = !a.code.empty() && CompareNoCase(want, a.code) == 0;
    if (!byId && !byCode) continue;
    used[i] = true;
    if (!code.empty()) a.code = code;
    if (a.code.empty()) {
      // an aerodrome without a code, named by its id: X and the id's last three
      // digits, a four-character code that -te keeps
      std::string digits = a.osmId.substr(a.osmId.find('/') + 1);
      a.code = "X" + digits.substr(digits.size() > 3 ? digits.size() - 3 : 0);
    }
    return true;
  }
  return false;
}

bool WriteText(RunContext& ctx, const std::string& path, const std::string& text) {
  OutputFile out;
  if (!out.Open(ctx, path)) return false;
  bool ok = std::fwrite(text.data(), 1, text.size(), out.get()) == text.size();
  return out.Finish(ctx, ok, "bgrkit osm");
}

}  // namespace

int ConvertOsm(const OsmOptions& o, std::ostream& err) {
  Collector map;
  try {
    osmium::io::File file{o.input};
    if (file.format() == osmium::io::file_format::xml && !OsmReadsXml()) {
      err << "bgrkit osm: this build reads .osm.pbf only, not '" << o.input << "'\n";
      return kFailed;
    }
    if (!std::filesystem::is_regular_file(o.input)) {
      err << "bgrkit osm: cannot read '" << o.input << "': no such file (the input is read twice, so no pipe)\n";
      return kFailed;
    }
    osmium::TagsFilter filter{false};
    filter.add_rule(true, osmium::TagMatcher{"aeroway", "aerodrome"});
    filter.add_rule(true, osmium::TagMatcher{"aeroway", "apron"});
    osmium::area::Assembler::config_type config;
    osmium::area::MultipolygonManager<osmium::area::Assembler> areas{config, filter};
    osmium::relations::read_relations(file, areas);

    using Index = osmium::index::map::FlexMem<osmium::unsigned_object_id_type, osmium::Location>;
    Index index;
    osmium::handler::NodeLocationsForWays<Index> locations{index};
    locations.ignore_errors();  // a cut extract lacks nodes: the ways say so below
    osmium::io::Reader reader{file, osmium::osm_entity_bits::nwr};
    osmium::ProgressBar progress{reader.file_size(), o.progress && osmium::util::isatty(2)};
    auto handler = areas.handler([&map](osmium::memory::Buffer&& buffer) { osmium::apply(buffer, map); });
    while (osmium::memory::Buffer buffer = reader.read()) {
      progress.update(reader.offset());
      osmium::apply(buffer, locations, map, handler);
    }
    progress.done();
    reader.close();
    areas.for_each_incomplete_relation([&](const osmium::relations::RelationHandle& handle) {
      const char* aeroway = handle->tags()["aeroway"];
      if (aeroway && (std::strcmp(aeroway, "apron") == 0 || std::strcmp(aeroway, "aerodrome") == 0))
        err << "bgrkit osm: " << aeroway << " relation/" << handle->id()
            << " lacks members in the input: left out\n";
    });
  } catch (const std::exception& e) {
    err << "bgrkit osm: cannot read '" << o.input << "': " << e.what() << "\n";
    return kFailed;
  }

  // every feature to its aerodrome
  std::size_t orphans = 0;
  for (std::size_t i = 0; i < map.ways.size(); ++i) {
    Geo g;
    int owner = Anchor(map.ways[i], g) ? Owner(map.aerodromes, g) : -1;
    if (owner < 0) ++orphans;
    else map.aerodromes[static_cast<std::size_t>(owner)].ways.push_back(i);
  }
  for (std::size_t i = 0; i < map.aprons.size(); ++i) {
    int owner = -1;
    for (const auto& ring : map.aprons[i].outers)
      if (!ring.empty()) {
        owner = Owner(map.aerodromes, ring.front());
        break;
      }
    if (owner < 0) ++orphans;
    else map.aerodromes[static_cast<std::size_t>(owner)].aprons.push_back(i);
  }
  if (orphans && !map.aerodromes.empty())
    err << "bgrkit osm: " << orphans << " runways, taxiways or aprons lie near no aerodrome: left out\n";

  std::error_code ec;
  std::filesystem::create_directories(o.out, ec);
  KitRun run;
  std::vector<bool> used(o.airports.size(), false);
  std::set<std::string> codes;
  std::string csv = "ident,latitude_deg,longitude_deg\n";
  std::size_t written = 0;
  bool failed = false;
  for (Aerodrome& a : map.aerodromes) {
    if (!Wanted(o, a, used)) {
      if (a.code.empty() && o.airports.empty())
        err << "bgrkit osm: aerodrome " << a.osmId << (a.name.empty() ? "" : " \"" + a.name + "\"")
            << " has no code (icao, iata, faa or ref): skipped; --airport " << a.osmId << "=CODE takes it\n";
      continue;
    }
    if (!codes.insert(a.code).second) {
      err << "bgrkit osm: aerodrome " << a.osmId << " has the code " << a.code << " of another: skipped\n";
      continue;
    }
    AirportBuilder builder(o, map, a, Reference(map, a));
    AirportOut out = builder.Build();
    std::string path = (std::filesystem::path(o.out) / (a.code + ".txt")).string();
    if (!WriteText(run.ctx, path, out.script)) {
      failed = true;
      continue;
    }
    csv += a.code + "," + builder.CsvPosition() + "\n";
    ++written;
    std::string stem = a.code.size() == 4 && (a.code[0] == 'K' || a.code[0] == 'k') ? a.code.substr(1) : a.code;
    err << "bgrkit osm: " << a.code << (a.name.empty() ? "" : " (" + a.name + ")") << ": " << out.summary << " -> "
        << path << " (-te builds DATA\\" << stem << ".BGR)\n";
    for (const std::string& note : out.notes) err << "bgrkit osm: " << a.code << ": " << note << "\n";
    if (a.code.size() != 4)
      err << "bgrkit osm: " << a.code << ": -te keeps only airports with a four-character code; this one builds nothing\n";
  }
  for (std::size_t i = 0; i < used.size(); ++i)
    if (!used[i]) err << "bgrkit osm: no aerodrome " << o.airports[i] << " in '" << o.input << "'\n";
  if (written == 0) {
    err << "bgrkit osm: no airport written\n";
    return kFailed;
  }
  if (!WriteText(run.ctx, (std::filesystem::path(o.out) / "airports.csv").string(), csv)) return kFailed;
  return failed || std::find(used.begin(), used.end(), false) != used.end() ? kFailed : kDone;
}

std::function<int()> SetupOsm(CLI::App& command) {
  auto o = std::make_shared<OsmOptions>();
  command.add_option("input", o->input, "OpenStreetMap data: .osm.pbf, or .osm XML (also .osm.gz, .osm.bz2)")
      ->required();
  command.add_option("--airport", o->airports,
                     "an aerodrome to convert, by code (icao, iata, faa or ref) or by OSM id as way/ID[=CODE]; "
                     "all with a code by default");
  command.add_option("--out", o->out, "folder for CODE.txt and airports.csv")->default_val(".");
  command.add_option("--runway-width", o->runwayWidth, "feet, for runways with no width on the map")
      ->default_val(150);
  command.add_option("--taxiway-width", o->taxiwayWidth, "feet, for taxiways with no width on the map")
      ->default_val(75);
  command.add_option("--taxilane-width", o->taxilaneWidth, "feet, for taxilanes with no width on the map")
      ->default_val(50);
  command.footer(
      "Then: bgrkit makedb DIR/airports.csv DATABASE/AIRPORT.DBD; bgrtool -teDIR/CODE.txt; bgrtool -tm DATA\\CODE.BGR.\n"
      "Map data (c) OpenStreetMap contributors, ODbL 1.0: keep the attribution with what you make of it.");
  return [o] { return ConvertOsm(*o, std::cerr); };
}

}  // namespace bgr::kit
