// bgrkit osm on whole map extracts, then the chain a user runs: makedb, -te,
// -tm, check and render. What the network holds is held against the map as
// libosmium reads it here. Map data © OpenStreetMap contributors, ODbL 1.0.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>

#ifdef BGRKIT_PATH
#include <osmium/handler.hpp>
#include <osmium/handler/node_locations_for_ways.hpp>
#include <osmium/index/map/flex_mem.hpp>
#include <osmium/io/any_input.hpp>
#include <osmium/visitor.hpp>
#endif

#include "formats/network_content.h"
#include "frame/run_context.h"
#include "geometry/planar.h"
#include "script/script_network.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace bgrtest {
namespace {

#ifdef BGRKIT_PATH

struct Geo {
  double lat, lon;
};

// What a user sees on the map: runway lines by ref, taxiway segments by node
// pair, aprons by id.
struct MapFacts : osmium::handler::Handler {
  std::map<std::string, std::vector<std::vector<Geo>>> runways;  // ref: its ways' end nodes
  std::map<std::pair<std::int64_t, std::int64_t>, std::pair<Geo, Geo>> segments;
  std::map<std::int64_t, std::vector<std::int64_t>> taxiwayIds;  // way: its nodes, for left-out ways
  std::map<std::string, Geo> aprons;  // id: a corner, or 0,0 for a relation

  static bool Gone(const osmium::OSMObject& o) {
    const char* d = o.tags()["disused"];
    const char* a = o.tags()["abandoned"];
    return (d && std::string_view(d) == "yes") || (a && std::string_view(a) == "yes");
  }
  void way(const osmium::Way& w) {
    const char* aeroway = w.tags()["aeroway"];
    if (!aeroway || Gone(w)) return;
    std::string kind = aeroway;
    const char* area = w.tags()["area"];
    bool closed = w.nodes().size() > 3 && w.nodes().front().ref() == w.nodes().back().ref();
    if (kind == "apron" && closed && w.nodes().front().location().valid())
      aprons["way/" + std::to_string(w.id())] = {w.nodes().front().location().lat(), w.nodes().front().location().lon()};
    if (kind == "runway" && !(closed && area && std::string_view(area) == "yes") && w.nodes().size() >= 2) {
      const char* ref = w.tags()["ref"];
      const auto& a = w.nodes().front().location();
      const auto& b = w.nodes().back().location();
      runways[ref ? ref : "way/" + std::to_string(w.id())].push_back({{a.lat(), a.lon()}, {b.lat(), b.lon()}});
    }
    if (kind != "taxiway" && kind != "taxilane") return;
    for (std::size_t i = 1; i < w.nodes().size(); ++i) {
      const auto& p = w.nodes()[i - 1];
      const auto& q = w.nodes()[i];
      if (!p.location().valid() || !q.location().valid() || p.ref() == q.ref()) continue;
      segments[{std::min(p.ref(), q.ref()), std::max(p.ref(), q.ref())}] = {
          {p.location().lat(), p.location().lon()}, {q.location().lat(), q.location().lon()}};
      taxiwayIds[w.id()].push_back(p.ref());
    }
  }
  void relation(const osmium::Relation& r) {
    const char* aeroway = r.tags()["aeroway"];
    if (aeroway && std::string_view(aeroway) == "apron" && !Gone(r)) aprons["relation/" + std::to_string(r.id())] = {0, 0};
  }
};

MapFacts ReadMap(const std::string& path) {
  using Index = osmium::index::map::FlexMem<osmium::unsigned_object_id_type, osmium::Location>;
  Index index;
  osmium::handler::NodeLocationsForWays<Index> locations{index};
  locations.ignore_errors();
  MapFacts facts;
  osmium::io::Reader reader{path};
  osmium::apply(reader, locations, facts);
  reader.close();
  return facts;
}

// Feet east and north of the network's origin, as -te measures them.
struct Place {
  double x, z;
};
Place Feet(const bgr::OriginRecord& o, Geo g) {
  double lat = g.lat * 3600, lon = g.lon * 3600;
  if (lon < 0) lon += 1296000;
  return {bgr::EastFeet(o.latitude, o.longitude, lat, lon, bgr::kEquatorFeet, bgr::kMeridianFeet),
          bgr::NorthFeet(o.latitude, o.longitude, lat, lon, bgr::kEquatorFeet, bgr::kMeridianFeet)};
}
double Distance(Place a, Place b) { return std::hypot(a.x - b.x, a.z - b.z); }

struct Airport {
  const char* extract;
  const char* code;
  const char* stem;  // of DATA\STEM.BGR: a K in front of four letters is left out
  int runways;       // as the map has them, of 750 ft and more
};

bool OnWindows() {
  const char* other = std::getenv("BGRKIT_TEST_BINARY");
  return other && std::string_view(other).ends_with(".exe");
}

class OsmChain : public ::testing::TestWithParam<Airport> {};

TEST_P(OsmChain, TheNetworkHoldsWhatTheMapHolds) {
  const Airport& a = GetParam();
  std::string extract = std::string(SHARED_DATA "/osm/extracts/") + a.extract;
  if (!std::filesystem::exists(extract)) GTEST_SKIP() << extract << " is not on this machine";
  TempDir dir;
  ToolRun osm = RunTool(BGRKIT_PATH, dir.path(), {"osm", extract, "--airport", a.code, "--out", "osm"});
  if (OnWindows() && std::string_view(a.extract).ends_with(".osm")) {
    // differs on Windows: that build reads PBF only and says so
    EXPECT_EQ(osm.exitStatus, 1);
    EXPECT_NE(osm.err.find(".osm.pbf only"), std::string::npos) << osm.err;
    return;
  }
  ASSERT_EQ(osm.exitStatus, 0) << osm.err;
  ASSERT_EQ(RunTool(BGRKIT_PATH, dir.path(), {"makedb", "osm/airports.csv", "DATABASE/AIRPORT.DBD"}).exitStatus, 0);
  std::filesystem::create_directories(dir / "DATA");
  ToolRun te = RunTool(BGRTOOL_PATH, dir.path(), {std::string("-teosm/") + a.code + ".txt"});
  ASSERT_EQ(te.exitStatus, 1) << te.out;
  std::string bgr = std::string("DATA/") + a.stem + ".BGR";
  ASSERT_TRUE(dir.Exists(bgr)) << osm.err;
  std::filesystem::copy_file(dir / bgr, dir / "built.BGR");

  ToolRun tm = RunTool(BGRTOOL_PATH, dir.path(), {"-tm", std::string("DATA\\") + a.stem + ".BGR"});
  EXPECT_EQ(tm.exitStatus, 1);
  EXPECT_EQ(tm.out.find("table full"), std::string::npos) << tm.out;
  ToolRun check = RunTool(BGRKIT_PATH, dir.path(), {"check", bgr});
  EXPECT_NE(check.out.find(": 0 errors"), std::string::npos) << check.out;
  std::string picture = std::string(a.code) + (OnWindows() ? ".svg" : ".png");
  ToolRun render = RunTool(BGRKIT_PATH, dir.path(), {"render", std::string("DATA/") + a.stem + ".TMS", "-o", picture});
  if (render.err.find("librsvg2-2") == std::string::npos) {
    EXPECT_EQ(render.exitStatus, 0) << render.err;
    EXPECT_TRUE(dir.Exists(picture));
  }

  MapFacts map = ReadMap(extract);
  bgr::QuietRun run;
  bgr::NetworkContent net = bgr::ReadNetworkContent(run.ctx, dir / "built.BGR");
  ASSERT_TRUE(net.complete);
  auto at = [&](std::int32_t p) { return Place{net.Node(p).x, net.Node(p).z}; };
  Place origin{0, 0};
  const double reach = 20000;  // the airport's own objects, not those of the rest of the extract

  // every runway of 750 ft and more, its ends within 3 ft of the map's
  int runways = 0;
  for (const auto& [ref, ways] : map.runways) {
    std::vector<Place> ends;
    for (const auto& w : ways)
      for (Geo g : w) ends.push_back(Feet(net.origin, g));
    if (Distance(ends.front(), origin) > reach) continue;
    Place p = ends[0], q = ends[0];
    for (Place e : ends)
      for (Place f : ends)
        if (Distance(e, f) > Distance(p, q)) p = e, q = f;
    if (Distance(p, q) < 750) {
      EXPECT_NE(osm.err.find("is " + std::to_string(static_cast<int>(Distance(p, q)))), std::string::npos) << ref;
      continue;
    }
    ++runways;
    bool found = false;
    for (const auto& e : net.edges) {
      if (e.type != 0 || !net.HasNode(e.from) || !net.HasNode(e.to)) continue;
      Place s = at(e.from), t = at(e.to);
      if ((Distance(s, p) <= 3 && Distance(t, q) <= 3) || (Distance(s, q) <= 3 && Distance(t, p) <= 3)) found = true;
    }
    std::string edges;
    for (const auto& e : net.edges)
      if (e.type == 0 && net.HasNode(e.from) && net.HasNode(e.to))
        edges += " (" + std::to_string(at(e.from).x) + "," + std::to_string(at(e.from).z) + ")-(" +
                 std::to_string(at(e.to).x) + "," + std::to_string(at(e.to).z) + ")";
    EXPECT_TRUE(found) << "runway " << ref << " from " << p.x << "," << p.z << " to " << q.x << "," << q.z
                       << "; the network's runways:" << edges;
  }
  EXPECT_EQ(runways, a.runways);

  // taxiways: the length within 2 %, and every junction, but for ways named as left out
  std::set<std::pair<std::int64_t, std::int64_t>> left;
  for (const auto& [id, nodes] : map.taxiwayIds)
    if (osm.err.find("way/" + std::to_string(id) + " ") != std::string::npos ||
        osm.err.find("way/" + std::to_string(id) + "\n") != std::string::npos)
      left.insert({id, 0});
  double mapFeet = 0, netFeet = 0;
  std::map<std::int64_t, std::set<std::int64_t>> mapNeighbours;
  std::set<std::int64_t> leftNodes;
  for (const auto& [id, nodes] : map.taxiwayIds)
    if (left.count({id, 0})) leftNodes.insert(nodes.begin(), nodes.end());
  for (const auto& [ends, geo] : map.segments) {
    Place p = Feet(net.origin, geo.first), q = Feet(net.origin, geo.second);
    if (Distance(p, origin) > reach || leftNodes.count(ends.first) || leftNodes.count(ends.second)) continue;
    mapFeet += Distance(p, q);
    mapNeighbours[ends.first].insert(ends.second);
    mapNeighbours[ends.second].insert(ends.first);
  }
  std::map<std::int32_t, std::set<std::int32_t>> netNeighbours;
  for (const auto& e : net.edges) {
    if (e.type != 1 || !net.HasNode(e.from) || !net.HasNode(e.to)) continue;
    netFeet += Distance(at(e.from), at(e.to));
    netNeighbours[e.from].insert(e.to);
    netNeighbours[e.to].insert(e.from);
  }
  EXPECT_NEAR(netFeet, mapFeet, mapFeet * 0.02);
  auto junctions = [](const auto& neighbours) {
    return std::count_if(neighbours.begin(), neighbours.end(), [](const auto& n) { return n.second.size() >= 3; });
  };
  // every junction of the map is one in the network; a few more come where -te's
  // 5 ft merge joins map nodes that lie closer than that
  EXPECT_GE(junctions(netNeighbours), junctions(mapNeighbours));
  EXPECT_LE(junctions(netNeighbours), junctions(mapNeighbours) * 1.015);

  // every apron, or its name on standard error
  std::string ply = dir.Read(std::string("DATA/") + a.stem + ".PLY");
  for (const auto& [id, corner] : map.aprons) {
    bool far = corner.lat != 0 && Distance(Feet(net.origin, corner), origin) > reach;
    if (!far && ply.find("(" + id) == std::string::npos) {
      EXPECT_NE(osm.err.find("apron " + id), std::string::npos) << id;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kit, OsmChain,
                         ::testing::Values(Airport{"malta-latest.osm.pbf", "LMML", "LMML", 2},
                                           Airport{"KORD.osm.pbf", "KORD", "ORD", 8},
                                           Airport{"KCLT.osm", "KCLT", "CLT", 4}),
                         [](const auto& info) { return std::string(info.param.code); });

#endif

}  // namespace
}  // namespace bgrtest
