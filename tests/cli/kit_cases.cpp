// bgrkit, run as a user runs it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>
#include <string_view>

#ifdef BGRKIT_PATH
#include <nlohmann/json.hpp>
#endif

#include "support/airport_db.h"
#include "support/bgr_builder.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace bgrtest {
namespace {

#ifdef BGRKIT_PATH
ToolRun Kit(const TempDir& dir, const std::vector<std::string>& args) { return RunTool(BGRKIT_PATH, dir.path(), args); }

TEST(Kit, UsageExitValues) {
  TempDir dir;
  struct Case {
    std::vector<std::string> args;
    int exit;
    const char* says;
  } cases[] = {
      {{}, 2, "Subcommands:"},
      {{"help"}, 0, "makedb"},
      {{"makedb", "--help"}, 0, "--code"},
      {{"makedb"}, 2, "required"},
      {{"help", "nosuch"}, 2, "no subcommand 'nosuch'"},
      {{"render", "a.bgr"}, 2, "--output"},
      {{"render", "a.bgr", "-o", "a.svg", "--layers", "pave,roads"}, 2, "roads"},
      {{"check"}, 2, "required"},
      {{"--version"}, 0, "bgrkit v1.03\n"},
      {{"help", "makedb"}, 0, "Usage: bgrkit makedb"},
      {{"view"}, 2, "required"},
  };
  for (const Case& c : cases) {
    ToolRun run = Kit(dir, c.args);
    EXPECT_EQ(run.exitStatus, c.exit) << ::testing::PrintToString(c.args);
    EXPECT_NE((run.out + run.err).find(c.says), std::string::npos) << ::testing::PrintToString(c.args);
  }
}

TEST(Kit, MakeDbReadsCsvByNamedColumnsAndSkipsBadRows) {
  TempDir dir;
  dir.Write("a.csv",
            "\"id\",\"ident\",\"name\",\"latitude_deg\",\"longitude_deg\"\n"
            "1,\"LMML\",\"Malta, International\",35.857498,14.4775\n"
            "2,\"KSEA\",\"Seattle \"\"Tacoma\"\"\",47.449001,-122.308998\n"
            "3,\"AB\",\"too short\",1,1\n"               // line 4
            "4,\"ABCDEF\",\"too long\",1,1\n"            // line 5
            "5,\"EGLL\",\"no longitude\",51.4775\n"     // line 6
            "6,\"NZCH\",\"south\",-43.489399,172.531998\n"
            "7,\"XXXX\",\"off the globe\",91,0\n"       // line 8
            "8,\"YYYY\",\"not a number\",1,east\n");   // line 9
  ToolRun run = Kit(dir, {"makedb", "a.csv", "DATABASE/AIRPORT.DBD"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_NE(run.err.find("5 rows skipped"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("line 4, 5, 6, 8, 9"), std::string::npos) << run.err;
  EXPECT_EQ(dir.Read("DATABASE/AIRPORT.DBD"),
            DbdBytes({{"LMML", 35.857498 * 3600, 14.4775 * 3600},
                      {"KSEA", 47.449001 * 3600, -122.308998 * 3600 + 1296000},
                      {"NZCH", -43.489399 * 3600, 172.531998 * 3600}}));
  EXPECT_EQ(dir.Read("DATABASE/AIRPORT.dbt"), kDbtText);

  // columns named, and a code on more than one row
  dir.Write("a.csv",
            "id,ident,gps_code,latitude_deg,longitude_deg\n"
            "1,AZ-0001,KAZ1,1,2\n"  // a local code of 7 characters, a GPS code of 4
            "2,LMML,LMML,35.857498,14.4775\n"
            "3,LMML,,35.9,14.5\n");
  for (const char* option : {"--code", "--lat", "--lon"}) {
    ToolRun run = Kit(dir, {"makedb", "a.csv", "DB/A.DBD", option, "icao"});
    EXPECT_EQ(run.exitStatus, 2) << option;
    EXPECT_NE(run.err.find("'a.csv' has no column 'icao' (" + std::string(option) + ")"), std::string::npos) << run.err;
    EXPECT_FALSE(dir.Exists("DB/A.DBD"));
  }
  ToolRun one = Kit(dir, {"makedb", "a.csv", "DB/A.DBD", "--code", "ident,nosuch"});
  EXPECT_EQ(one.exitStatus, 2);
  EXPECT_NE(one.err.find("no column 'nosuch' (--code)"), std::string::npos) << one.err;

  ToolRun both = Kit(dir, {"makedb", "a.csv", "DB/A.DBD", "--code", "ident,gps_code"});
  EXPECT_EQ(both.exitStatus, 0) << both.err;
  EXPECT_NE(both.err.find("1 code stands on more than one row, and each row is kept: LMML (lines 3, 4)"),
            std::string::npos)
      << both.err;
  EXPECT_EQ(dir.Read("DB/A.DBD"),
            DbdBytes({{"KAZ1", 3600, 7200}, {"LMML", 35.857498 * 3600, 14.4775 * 3600}, {"LMML", 35.9 * 3600, 14.5 * 3600}}));
  ToolRun plain = Kit(dir, {"makedb", "a.csv", "DB/A.DBD"});  // ident alone: AZ-0001 is no code
  EXPECT_NE(plain.err.find("1 row skipped"), std::string::npos) << plain.err;
}

// A runway and a taxiway whose end lies 30 ft past the runway's line, and a
// light line that -tm passes over.
std::string Network() {
  BgrBuilder b;
  b.Origin(0, 0).Node(-2000, 0, 0).Node(2000, 0, 0).Node(0, 0, -570).Node(0, 0, 30);
  return b.Edge(0, 1, 17224, 15, 0).Edge(2, 3, 17096, 15, 1).End().data;
}

TEST(Kit, CheckPrintsFindingsOrJsonForOneFileOrSeveral) {
  TempDir dir;
  dir.Write("a.bgr", Network());
  dir.Write("a.PLY", "ORG 0 0\nLGT 1 0 0 5\n");
  ToolRun run = Kit(dir, {"check", "a.bgr"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out,
            "warning light-numbers line 2: a light needs 3 or 6 numbers (kind, x, z[, x2, z2, count]); with 4 -tm "
            "passes over it\n"
            "note snap-to-runway point 3 (0,30): -tm moves this taxiway end 30 ft on to a runway, to (0,0)\n"
            "a.bgr: 0 errors, 1 warning, 1 note\n");
  ToolRun json = Kit(dir, {"check", "--json", "a.bgr"});
  EXPECT_EQ(json.exitStatus, 1);
  auto doc = nlohmann::json::parse(json.out);
  EXPECT_EQ(doc["summary"]["warnings"], 1);
  EXPECT_EQ(doc["findings"][1]["code"], "snap-to-runway");
  EXPECT_EQ(doc["findings"][1]["location"]["z"], 30.0);
  EXPECT_TRUE(doc["findings"][0]["location"].is_null());
  dir.Write("a.PLY", "ORG 0 0\n");
  EXPECT_EQ(Kit(dir, {"check", "a.bgr"}).exitStatus, 0);  // notes alone are no problem

  // several files: each line named by its file, and what can't be read named
  dir.Write("b.bgr", Network());
  dir.Write("d/keep", "");
  ASSERT_EQ(RunTool(BGRTOOL_PATH, dir.path(), {"-tm", "b.bgr"}).exitStatus, 1);
  ToolRun several = Kit(dir, {"check", "a.bgr", "d", "b.TMS"});
  EXPECT_EQ(several.exitStatus, 1);
  EXPECT_EQ(several.out,
            "a.bgr: note snap-to-runway point 3 (0,30): -tm moves this taxiway end 30 ft on to a runway, to (0,0)\n"
            "a.bgr: 0 errors, 0 warnings, 1 note\n"
            "d: error unreadable file: cannot read 'd': it is a folder\n"
            "d: 1 error, 0 warnings, 0 notes\n"
            "b.TMS: error tile-file file: this is a tile file (TMS), not a network: bgrtool lists it, bgrkit render "
            "draws it\n"
            "b.TMS: 1 error, 0 warnings, 0 notes\n"
            "total: 3 files, 2 errors, 0 warnings, 1 note\n");
  EXPECT_EQ(several.err, "bgrkit check: cannot read 'd': it is a folder\n");
  // a file that can't be read still gives its document; several give an array of them
  ToolRun none = Kit(dir, {"check", "--json", "none.bgr"});
  EXPECT_EQ(none.exitStatus, 1);
  auto unread = nlohmann::json::parse(none.out);
  EXPECT_EQ(unread["file"], "none.bgr");
  EXPECT_EQ(unread["findings"][0]["code"], "unreadable");
  EXPECT_EQ(unread["findings"][0]["message"], "cannot read 'none.bgr': No such file or directory");
  EXPECT_EQ(unread["summary"]["errors"], 1);
  auto docs = nlohmann::json::parse(Kit(dir, {"check", "--json", "a.bgr", "none.bgr"}).out);
  ASSERT_TRUE(docs.is_array());
  EXPECT_EQ(docs[0]["summary"]["notes"], 1);
  EXPECT_EQ(docs[1]["summary"]["errors"], 1);
}

TEST(Kit, RefusedAndDamagedInputsGiveAMessageAndWriteNothing) {
  TempDir dir;
  std::string whole = Network();
  dir.Write("a.bgr", whole);
  dir.Write("cut.bgr", whole.substr(0, whole.size() - 20));
  dir.Write("junk.bgr", "junk");
  dir.Write("old.svg", "old");
  std::filesystem::create_directory(dir / "folder.bgr");
  struct {
    std::vector<std::string> args;
    int exit;
    const char* says;
  } cases[] = {
      {{"render", "cut.bgr", "-o", "old.svg"}, 1, "bgrkit render: 'cut.bgr' is damaged: its records stop at byte"},
      {{"render", "junk.bgr", "-o", "old.svg"}, 1, "bgrkit render: 'junk.bgr' is no BGR network"},
      {{"check", "cut.bgr"}, 1, "error damaged-file file: the records stop at byte"},
      {{"check", "junk.bgr"}, 1, "error not-a-network file"},
      {{"render", "a.bgr", "-o", "a.jpg"}, 2, "bgrkit render: 'a.jpg' names no picture this program writes"},
      {{"render", "a.bgr", "-o", "picture"}, 2, "bgrkit render: 'picture' names no picture"},
      {{"render", "folder.bgr", "-o", "a.svg"}, 1, "bgrkit render: cannot read 'folder.bgr': it is a folder"},
      {{"render", "none.bgr", "-o", "a.svg"}, 1, "bgrkit render: cannot read 'none.bgr': No such file or directory"},
      {{"render", "a.bgr", "-o", "nosuch/a.svg"}, 1,
       "bgrkit render: cannot write 'nosuch/a.svg': No such file or directory"},
      {{"view", "none.bgr"}, 1, "bgrkit view: cannot read 'none.bgr': No such file or directory"},
      {{"view", "a.bgr", "-o", "nosuch/a.html"}, 1, "bgrkit view: cannot write 'nosuch/a.html': No such file or directory"},
      {{"view", "a.bgr", "--leaflet", "nosuch"}, 1, "install the package libjs-leaflet"},
      {{"view", "a.bgr", "-o", "./a.bgr"}, 2, "bgrkit view: './a.bgr' is one of the files shown"},
  };
  for (const auto& c : cases) {
    ToolRun run = Kit(dir, c.args);
    EXPECT_EQ(run.exitStatus, c.exit) << ::testing::PrintToString(c.args);
    EXPECT_NE((run.err + run.out).find(c.says), std::string::npos) << run.err << run.out;
    EXPECT_EQ(run.err.find("INFO"), std::string::npos) << run.err;  // no report line of the library
  }
  EXPECT_EQ(dir.Read("old.svg"), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 5);  // nothing written, no part file
}

// The legend's entries and the drawing's layers, by id and colour, from the SVG.
std::map<std::string, std::string> SvgGroups(const std::string& svg, const char* pattern) {
  std::map<std::string, std::string> out;
  std::regex re(pattern);
  for (auto it = std::sregex_iterator(svg.begin(), svg.end(), re); it != std::sregex_iterator(); ++it)
    out[(*it)[1]] = (*it)[2];
  return out;
}
const char* const kLayerPattern = "<g id=\"([a-z0-9-]+)\" class=\"layer\" data-colour=\"(#[0-9a-f]{6})\"";
const char* const kLegendPattern =
    "<g class=\"legend-entry\" data-layer=\"([a-z0-9-]+)\"><[a-z]+ [^>]*?(?:fill|stroke)=\"(#[0-9a-f]{6})\"";

TEST(Kit, RenderWritesSvgAndPngWithALegendOfWhatIsDrawn) {
  TempDir dir;
  // a runway, a taxiway, a painted line (flags 2 alone), an apron and a string of PLY lights,
  // at a place west of Greenwich
  BgrBuilder b;
  b.Origin(39.86 * 3600, 1296000 - 104.67 * 3600).Node(-2000, 0, 0).Node(2000, 0, 0).Node(0, 0, -570).Node(0, 0, 30);
  b.Node(300, 0, -300).Node(300, 0, -500);
  std::string network = b.Edge(0, 1, 17224, 15, 0).Edge(2, 3, 17096, 15, 1).Edge(4, 5, 17096, 2, 1).End().data;
  dir.Write("a.bgr", network);
  dir.Write("a.PLY", "ORG 0 0\nPOI -500 -200\nPOI -300 -200\nPOI -300 -400\nPLY \"gate\"\nLGT 1 -500 -100 -300 -100 5\n");
  ASSERT_EQ(RunTool(BGRTOOL_PATH, dir.path(), {"-tm", "a.bgr"}).exitStatus, 1);
  dir.Write("a.bgr", network);  // the network as drawn, not as repaired
  ToolRun run = Kit(dir, {"render", "a.bgr", "-o", "a.svg"});
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.err, "");  // tiles made of this very network: no warning
  std::string svg = dir.Read("a.svg");
  auto layers = SvgGroups(svg, kLayerPattern), legend = SvgGroups(svg, kLegendPattern);
  EXPECT_EQ(layers, legend);
  for (const char* id : {"grid", "apron", "pave", "runway", "taxiway", "paint", "centre", "plylight", "origin"})
    EXPECT_EQ(layers.count(id), 1u) << id;
  for (const auto& [id, colour] : layers)
    EXPECT_TRUE(id.rfind("lite-", 0) != 0 || colour != layers.at("plylight")) << id << " looks like the PLY lights";
  EXPECT_NE(layers["paint"], layers["centre"]);
  EXPECT_LT(svg.find("<g id=\"grid\""), svg.find("<g id=\"runway\""));  // the grid lies under the network
  EXPECT_NE(svg.find("<g id=\"north\">"), std::string::npos);
  EXPECT_NE(svg.find("origin 39.860000 -104.670000"), std::string::npos);
  // layers left out are left out of the legend too
  ASSERT_EQ(Kit(dir, {"render", "a.bgr", "-o", "b.svg", "--layers", "net,ply"}).exitStatus, 0);
  std::string fewer = dir.Read("b.svg");
  EXPECT_EQ(SvgGroups(fewer, kLayerPattern), SvgGroups(fewer, kLegendPattern));
  EXPECT_EQ(SvgGroups(fewer, kLegendPattern).count("grid"), 0u);
  EXPECT_EQ(SvgGroups(fewer, kLegendPattern).count("pave"), 0u);

  // the tile file drawn, and a PNG
  ToolRun tiles = Kit(dir, {"render", "a.TMS", "-o", "t.svg", "--labels"});
  ASSERT_EQ(tiles.exitStatus, 0) << tiles.err;
  std::string text = dir.Read("t.svg");
  EXPECT_EQ(text.rfind("<?xml", 0), 0u);
  EXPECT_NE(text.find("a.BGR, a.PLY, a.TMS"), std::string::npos);  // a TMS brings its network and PLY along
  // tile corners are working units shown in feet, fractions kept
  std::size_t tile = text.find("<polygon", text.find("id=\"pave\""));
  ASSERT_NE(tile, std::string::npos);
  std::string shape = text.substr(tile, text.find("/>", tile) - tile);
  EXPECT_NE(shape.find('.'), std::string::npos) << shape;
  ToolRun png = Kit(dir, {"render", "a.bgr", "-o", "a.PNG", "--width", "300"});
  const char* other = std::getenv("BGRKIT_TEST_BINARY");
  if (other && std::string_view(other).ends_with(".exe")) {
    // differs on Windows: that build has no cairo, so it refuses a PNG and leaves no file
    EXPECT_EQ(png.exitStatus, 1);
    EXPECT_NE(png.err.find("SVG only"), std::string::npos) << png.err;
    EXPECT_FALSE(dir.Exists("a.PNG"));
    return;
  }
  if (png.exitStatus == 1 && png.err.find("librsvg2-2") != std::string::npos) GTEST_SKIP() << png.err;
  ASSERT_EQ(png.exitStatus, 0) << png.err;
  EXPECT_EQ(dir.Read("a.PNG").substr(0, 8), "\x89PNG\r\n\x1a\n");
}

TEST(Kit, TilesOfAnotherStateOfTheNetworkAreWarnedOf) {
  TempDir dir;
  dir.Write("a.bgr", Network());
  ASSERT_EQ(RunTool(BGRTOOL_PATH, dir.path(), {"-tm", "a.bgr"}).exitStatus, 1);
  auto tiles = std::filesystem::last_write_time(dir / "a.TMS");
  std::filesystem::last_write_time(dir / "a.bgr", tiles + std::chrono::minutes(2));
  ToolRun stale = Kit(dir, {"render", "a.bgr", "-o", "a.svg"});
  EXPECT_EQ(stale.exitStatus, 0);
  EXPECT_NE(stale.err.find("bgrkit render: warning: 'a.TMS' is older than 'a.bgr'"), std::string::npos) << stale.err;
  BgrBuilder far;
  far.Origin(0, 0).Node(-2000, 0, 0).Node(90000, 0, 0);
  dir.Write("a.bgr", far.Edge(0, 1, 17224, 15, 0).End().data);
  std::filesystem::last_write_time(dir / "a.bgr", tiles);
  ToolRun moved = Kit(dir, {"view", "a.bgr"});
  EXPECT_EQ(moved.exitStatus, 0);
  EXPECT_NE(moved.err.find("bgrkit view: warning: the grid of 'a.TMS' doesn't cover the network: 1 of the points its "
                           "edges use lie outside it, the first point 1"),
            std::string::npos)
      << moved.err;
}

TEST(Kit, ViewWritesOneSelfContainedPage) {
  TempDir dir;
  dir.Write("a.bgr", Network());
  dir.Write("a.PLY", "ORG 0 0\nLGT 1 0 0 5\n");
  // a stand-in for the map library, whose files must end up inside the page
  std::filesystem::create_directory(dir / "lib");
  dir.Write("lib/leaflet.js", "var L = {}; /* the library </script> */\n//# sourceMappingURL=leaflet.js.map\n");
  dir.Write("lib/leaflet.css", ".x { background-image: url(images/layers.png); }\n");
  ToolRun run = Kit(dir, {"view", "a.bgr", "--attribution", "data: <ours>", "--leaflet", "lib"});
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  std::string page = dir.Read("a.html");
  EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0u);
  EXPECT_NE(page.find("var L = {}; /* the library <\\/script> */"), std::string::npos);
  EXPECT_NE(page.find(".x { background-image: none; }"), std::string::npos);
  for (const char* outside : {"<script src", "<link", "url(", "sourceMappingURL"})
    EXPECT_EQ(page.find(outside), std::string::npos) << outside;
  EXPECT_NE(page.find("L.CRS.Simple"), std::string::npos);
  EXPECT_NE(page.find("\"attribution\":\"data: <ours>\""), std::string::npos);  // as data, not markup
  EXPECT_NE(page.find("warning light-numbers line 2"), std::string::npos);        // check's findings beside the map
}

#endif

}  // namespace
}  // namespace bgrtest
