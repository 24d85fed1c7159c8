// bgrkit osm on whole map extracts, then the chain a user runs: makedb, -te,
// -tm, check and render. What the network holds is held against the map as
// libosmium reads it here. Map data © OpenStreetMap contributors, ODbL 1.0.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
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
  std::map<std::pair<std::int64_t, std::int64_t>, std::set<std::int64_t>> segmentWays;  // that draw it
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
      segmentWays[{std::min(p.ref(), q.ref()), std::max(p.ref(), q.ref())}].insert(w.id());
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
// differs on Windows: that build reads PBF only
#define NEED_OSM_XML() \
  if (OnWindows()) GTEST_SKIP() << "bgrkit.exe reads .osm.pbf only"

// makedb from what bgrkit osm wrote to 'osm', then -te of the airport's script: the network it saves.
bgr::NetworkContent BuiltNetwork(const TempDir& dir, const std::string& code, const std::string& path) {
  EXPECT_EQ(RunTool(BGRKIT_PATH, dir.path(), {"makedb", "osm/airports.csv", "DATABASE/AIRPORT.DBD"}).exitStatus, 0);
  std::filesystem::create_directories(dir / "DATA");
  ToolRun te = RunTool(BGRTOOL_PATH, dir.path(), {"-teosm/" + code + ".txt"});
  EXPECT_EQ(te.exitStatus, 1) << te.out;
  EXPECT_TRUE(dir.Exists(path)) << te.out;
  bgr::QuietRun run;
  return bgr::ReadNetworkContent(run.ctx, dir / path);
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
  std::string bgr = std::string("DATA/") + a.stem + ".BGR";
  bgr::NetworkContent net = BuiltNetwork(dir, a.code, bgr);  // as built, before -tm repairs it
  ASSERT_TRUE(net.complete) << osm.err;

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
    EXPECT_TRUE(found) << "runway " << ref << " from " << p.x << "," << p.z << " to " << q.x << "," << q.z;
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
  for (const auto& [ends, geo] : map.segments) {
    Place p = Feet(net.origin, geo.first), q = Feet(net.origin, geo.second);
    // a segment that a written way draws stays, though a way left out shares its node
    const auto& ways = map.segmentWays.at(ends);
    bool written = std::any_of(ways.begin(), ways.end(), [&](std::int64_t w) { return !left.count({w, 0}); });
    if (Distance(p, origin) > reach || !written) continue;
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
  // every junction of the map is one in the network, and no more: map nodes
  // closer than -te's merge reach are not joined
  EXPECT_EQ(junctions(netNeighbours), junctions(mapNeighbours));

  // every apron, or its name on standard error
  std::string ply = dir.Read(std::string("DATA/") + a.stem + ".PLY");
  for (const auto& [id, corner] : map.aprons) {
    bool far = corner.lat != 0 && Distance(Feet(net.origin, corner), origin) > reach;
    if (!far && ply.find("(" + id) == std::string::npos) {
      EXPECT_NE(osm.err.find("apron " + id), std::string::npos) << id;
    }
  }
}

// A small map in OSM XML: nodes on a grid near 35.85 N 14.48 E, a step of
// 0.0001 degrees (about 36 ft north, 30 ft east).
struct SmallMap {
  std::string body;
  SmallMap& Node(int id, double north, double east, const std::string& tags = "") {
    char text[160];
    std::snprintf(text, sizeof text, "<node id=\"%d\" version=\"1\" lat=\"%.7f\" lon=\"%.7f\"", id,
                  35.85 + north * 0.0001, 14.48 + east * 0.0001);
    body += text;
    body += tags.empty() ? "/>\n" : ">" + tags + "</node>\n";
    return *this;
  }
  SmallMap& Way(int id, const std::vector<int>& nodes, const std::string& tags) {
    body += "<way id=\"" + std::to_string(id) + "\" version=\"1\">";
    for (int n : nodes) body += "<nd ref=\"" + std::to_string(n) + "\"/>";
    body += tags + "</way>\n";
    return *this;
  }
  SmallMap& Relation(int id, const std::string& members, const std::string& tags) {
    body += "<relation id=\"" + std::to_string(id) + "\" version=\"1\">" + members + tags + "</relation>\n";
    return *this;
  }
  std::string Xml() const { return "<?xml version=\"1.0\"?>\n<osm version=\"0.6\">\n" + body + "</osm>\n"; }
};
std::string Tag(const std::string& k, const std::string& v) { return "<tag k=\"" + k + "\" v=\"" + v + "\"/>"; }

// A map with a coded aerodrome, a runway in two pieces, a taxiway that joins
// it, an apron with a hole, a runway drawn only as an area, and things that
// are left out.
SmallMap Airfield() {
  SmallMap m;
  m.Node(1, 0, 0, Tag("aeroway", "aerodrome") + Tag("icao", "LMXX") + Tag("name", "Test"));
  m.Node(10, 0, -40).Node(11, 0, 0).Node(12, 0, 40);  // runway 09/27, two ways
  m.Way(100, {10, 11}, Tag("aeroway", "runway") + Tag("ref", "27/09") + Tag("width", "45"));
  m.Way(101, {11, 12}, Tag("aeroway", "runway") + Tag("ref", "27/09"));
  m.Node(20, -10, 0).Node(21, -10, 10).Node(22, -5, 12).Node(23, -99, -99);
  m.Way(200, {11, 20, 21, 22}, Tag("aeroway", "taxiway") + Tag("width", "60 ft"));
  m.Way(201, {22}, Tag("aeroway", "taxiway"));                   // one node
  m.Way(202, {21, 999, 998}, Tag("aeroway", "taxiway"));         // nodes missing
  m.Way(203, {20, 21}, Tag("aeroway", "taxiway") + Tag("disused", "yes"));
  m.Node(30, 20, -20).Node(31, 20, 20).Node(32, 30, 20).Node(33, 30, -20);
  m.Node(34, 24, -5).Node(35, 24, 5).Node(36, 27, 0);
  m.Way(300, {30, 31, 32, 33, 30}, "").Way(301, {34, 35, 36, 34}, "");
  m.Relation(310, "<member type=\"way\" ref=\"300\" role=\"outer\"/><member type=\"way\" ref=\"301\" role=\"inner\"/>",
             Tag("type", "multipolygon") + Tag("aeroway", "apron") + Tag("name", "North &quot;Apron&quot;"));
  m.Relation(311, "<member type=\"way\" ref=\"777\" role=\"outer\"/>",
             Tag("type", "multipolygon") + Tag("aeroway", "apron"));  // its member is missing
  m.Node(40, -30, -30).Node(41, -30, 30).Node(42, -32, 30).Node(43, -32, -30);
  m.Way(400, {40, 41, 42, 43, 40}, Tag("aeroway", "runway") + Tag("area", "yes") + Tag("ref", "18/36"));
  m.Node(2, 900, 900, Tag("aeroway", "aerodrome") + Tag("name", "No Code"));
  return m;
}

TEST(Kit, OsmWritesScriptsAndNamesWhatItLeavesOut) {
  NEED_OSM_XML();
  TempDir dir;
  dir.Write("a.osm", Airfield().Xml());
  ToolRun run = RunTool(BGRKIT_PATH, dir.path(), {"osm", "a.osm", "--out", "out"});
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  for (const char* says : {"aerodrome node/2 \"No Code\" has no code", "--airport node/2=CODE",
                           "apron relation/310: its 1 hole is left out", "relation/311 lacks members",
                           "2 taxiway nodes are missing", "2 taxiway ways have fewer than two nodes",
                           "LMXX (Test): 2 runways, 3 taxiway ways as 3 edges, 1 apron as 1 polygon"})
    EXPECT_NE(run.err.find(says), std::string::npos) << says << "\n" << run.err;
  std::string script = dir.Read("out/LMXX.txt");
  // two pieces under one ref are one runway from end to end; its ends named by
  // their bearings whatever order the ref gives; 45 m is 147 ft
  EXPECT_NE(script.find("RWY 09 27 way/100+101 osm "), std::string::npos) << script;
  EXPECT_NE(script.find(" 147 N35:51:0.0000 E14:28:33.6000 "), std::string::npos) << script;
  // the area runway of 60 by 2 steps becomes a centre line of its long axis (18/36 by the ref, though it runs east)
  EXPECT_NE(script.find("osm 1"), std::string::npos);
  EXPECT_NE(script.find("PLY \"North 'Apron' (relation/310)\""), std::string::npos) << script;
  EXPECT_NE(script.find("LIN "), std::string::npos);
  EXPECT_EQ(script.find("way/203"), std::string::npos);
  EXPECT_NE(script.find("OpenStreetMap contributors, ODbL 1.0"), std::string::npos);
  EXPECT_NE(dir.Read("out/airports.csv").find("ident,latitude_deg,longitude_deg\nLMXX,35.8"), std::string::npos);

  // the coded aerodrome by its id, and the one without a code by its id and a code given
  ToolRun picked = RunTool(BGRKIT_PATH, dir.path(), {"osm", "a.osm", "--airport", "node/2=ZZNC", "--out", "two"});
  EXPECT_EQ(picked.exitStatus, 0) << picked.err;
  EXPECT_TRUE(dir.Exists("two/ZZNC.txt"));
  EXPECT_FALSE(dir.Exists("two/LMXX.txt"));
  ToolRun none = RunTool(BGRKIT_PATH, dir.path(), {"osm", "a.osm", "--airport", "EGLL", "--out", "three"});
  EXPECT_EQ(none.exitStatus, 1);
  EXPECT_NE(none.err.find("no aerodrome EGLL"), std::string::npos) << none.err;
}

// Map nodes closer than -te's 5 ft merge: a crossing drawn without a shared
// node, and two junctions 4 ft apart. The network has the map's two junctions
// and no third where the crossing lies.
TEST(Kit, OsmKeepsApartWhatTheMergeWouldJoin) {
  NEED_OSM_XML();
  SmallMap m;
  m.Node(1, 0, 0, Tag("aeroway", "aerodrome") + Tag("icao", "LMXX"));
  std::string taxiway = Tag("aeroway", "taxiway");
  m.Node(50, 0, 0).Node(51, 0, 3).Node(52, 0, 6).Node(53, -3, 3.05).Node(54, 0.05, 3.05).Node(55, 3, 3.05);
  m.Way(500, {50, 51, 52}, taxiway).Way(501, {53, 54, 55}, taxiway);  // 51 and 54 lie 2 ft apart
  m.Node(60, -6, 0).Node(61, -6, 3).Node(62, -6, 6).Node(63, -9, 3);
  m.Node(66, -6.1, 3.05).Node(67, -9, 6).Node(68, -9, 9).Node(69, -3, 6);
  m.Way(502, {60, 61, 62}, taxiway).Way(503, {61, 63}, taxiway);  // junction 61
  m.Way(505, {67, 66, 68}, taxiway).Way(506, {66, 69}, taxiway);  // junction 66, 4 ft from 61
  TempDir dir;
  dir.Write("a.osm", m.Xml());
  ToolRun osm = RunTool(BGRKIT_PATH, dir.path(), {"osm", "a.osm", "--out", "osm"});
  ASSERT_EQ(osm.exitStatus, 0) << osm.err;
  EXPECT_NE(osm.err.find("1 taxiway vertices within 5 ft of another node are left out"), std::string::npos)
      << osm.err;
  EXPECT_NE(osm.err.find("1 taxiway junctions within 5 ft of another are moved apart"), std::string::npos) << osm.err;
  bgr::NetworkContent net = BuiltNetwork(dir, "LMXX", "DATA/LMXX.BGR");
  std::map<std::int32_t, std::set<std::int32_t>> neighbours;
  for (const auto& e : net.edges)
    if (e.type == 1) neighbours[e.from].insert(e.to), neighbours[e.to].insert(e.from);
  // ten ends, one of 51 and 54 (the other left out), and 61 and 66 of three ways each
  std::map<std::size_t, int> degrees;  // neighbours: points
  for (const auto& [point, next] : neighbours) ++degrees[next.size()];
  EXPECT_EQ(degrees, (std::map<std::size_t, int>{{1, 10}, {2, 1}, {3, 2}}));
}

TEST(Kit, OsmSimplifiesARingOfTenThousandCorners) {
  NEED_OSM_XML();
  SmallMap m;
  m.Node(1, 0, 0, Tag("aeroway", "aerodrome") + Tag("icao", "LMXX"));
  std::vector<int> ring;
  for (int i = 0; i < 10000; ++i) {
    double a = 2 * 3.14159265358979 * i / 10000;
    m.Node(100 + i, 20 * std::sin(a) + (i % 2) * 0.01, 20 * std::cos(a));
    ring.push_back(100 + i);
  }
  ring.push_back(100);
  m.Way(7, ring, Tag("aeroway", "apron"));
  TempDir dir;
  dir.Write("a.osm", m.Xml());
  ToolRun run = RunTool(BGRKIT_PATH, dir.path(), {"osm", "a.osm"});
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_NE(run.err.find("apron way/7: "), std::string::npos) << run.err;
  std::string script = dir.Read("LMXX.txt");
  std::size_t corners = 0;
  for (std::size_t at = script.find("\nPOI "); at != std::string::npos; at = script.find("\nPOI ", at + 1)) ++corners;
  EXPECT_GE(corners, 3u);
  EXPECT_LE(corners, 127u);  // -tm warns from 128 on
}

TEST(Kit, RunwaysFromTheTable) {
  TempDir dir;
  dir.Write("runways.csv",
            "\"id\",\"airport_ident\",\"length_ft\",\"width_ft\",\"surface\",\"closed\",\"le_ident\",\"le_latitude_deg\","
            "\"le_longitude_deg\",\"he_ident\",\"he_latitude_deg\",\"he_longitude_deg\"\n"
            "1,\"LMML\",7000,148,\"ASP\",0,\"05\",35.5,14.5,\"23\",35.51,14.52\n"
            "2,\"LMML\",5000,100,\"ASP\",1,\"13\",35.5,14.5,\"31\",35.49,14.52\n"
            "3,\"LMML\",5000,100,\"Hard surface\",0,\"18\",35.5,14.5,\"36\",,\n"
            "4,\"ZUUU\",13000,150,\"CON\",0,\"02R\",30,103,\"20L\",30,-103\n"
            "5,\"KSEA\",9000,150,\"CON\",0,\"16L\",47.5,-122.25,\"34R\",47.45,-122.25\n");
  ToolRun run = RunTool(BGRKIT_PATH, dir.path(), {"runways", "runways.csv", "--airport", "LMML", "--airport", "ZUUU",
                                                  "-o", "rwy.txt"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_NE(run.err.find("line 5: ZUUU 02R/20L has its ends"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("1 RWY line in rwy.txt; left out: 1 closed, 1 without both ends, 1 placeholder"),
            std::string::npos)
      << run.err;
  EXPECT_EQ(dir.Read("rwy.txt"),
            "; RWY lines made by bgrkit runways from runways.csv\nSRC \"runways.csv\"\n"
            "RWY 05 23 ASP LMML 7000 148 N35:30:0.0000 E14:30:0.0000 N35:30:36.0000 E14:31:12.0000\nEXI\n");
  ToolRun west = RunTool(BGRKIT_PATH, dir.path(), {"runways", "runways.csv", "--airport", "KSEA", "-o", "k.txt"});
  EXPECT_NE(dir.Read("k.txt").find("RWY 16L 34R CON KSEA 9000 150 N47:30:0.0000 W122:15:0.0000 N47:27:0.0000 "
                                   "W122:15:0.0000\n"),
            std::string::npos);
  ToolRun nothing = RunTool(BGRKIT_PATH, dir.path(), {"runways", "runways.csv", "--airport", "EGLL", "-o", "e.txt"});
  EXPECT_EQ(nothing.exitStatus, 1);
  EXPECT_FALSE(dir.Exists("e.txt"));
}

INSTANTIATE_TEST_SUITE_P(Kit, OsmChain,
                         ::testing::Values(Airport{"malta-latest.osm.pbf", "LMML", "LMML", 2},
                                           Airport{"KORD.osm.pbf", "KORD", "ORD", 8},
                                           Airport{"KCLT.osm", "KCLT", "CLT", 4}),
                         [](const auto& info) { return std::string(info.param.code); });

#endif

}  // namespace
}  // namespace bgrtest
