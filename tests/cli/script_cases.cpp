// Airport scripts, run as a user runs them: the networks and PLY files that a
// script builds in DATA, with the airports of a database made by the test.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "cli/cli_case.h"
#include "support/airport_db.h"
#include "support/bgr_builder.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace bgrtest {
namespace {

constexpr double kEquator = 131479658.79265094;
constexpr double kMeridian = 131256561.67979005;
constexpr double kPi = 3.14159265358979323846;

// Feet north and east between two positions in arc-seconds, as the frame of a script has them.
double North(double lat1, double lat2) { return (lat2 - lat1) * kMeridian / 1296000; }
double East(double lat1, double lon1, double lon2) {
  return (lon2 - lon1) * kEquator * std::cos(lat1 / 3600 * kPi / 180) / 1296000;
}

// A position field: the hemisphere letter and degrees:minutes:seconds.
std::string Angle(double seconds, char positive, char negative) {
  char text[64];
  double a = std::fabs(seconds);
  int d = static_cast<int>(a / 3600);
  int m = static_cast<int>((a - d * 3600) / 60);
  std::snprintf(text, sizeof text, "%c%d:%d:%.9f", seconds < 0 ? negative : positive, d, m, a - d * 3600 - m * 60);
  return text;
}
std::string Lat(double s) { return Angle(s, 'N', 'S'); }
std::string Lon(double s) { return Angle(s, 'E', 'W'); }
std::string Ref(double lat, double lon) { return "REF " + Lat(lat) + " " + Lon(lon) + "\n"; }
std::string Rwy(int length, double lat1, double lon1, double lat2, double lon2, const std::string& width = "148") {
  return "RWY a b c d " + std::to_string(length) + " " + width + " " + Lat(lat1) + " " + Lon(lon1) + " " + Lat(lat2) +
         " " + Lon(lon2) + "\n";
}

constexpr double kLatA = 100000, kLonA = 50000;  // N27:46:40 E13:53:20
const DbAirport kA{"LMMX", kLatA, kLonA};

constexpr std::int32_t kW75 = 17032, kW90 = 17070, kW60 = 16993, kW148 = 17218;

const std::vector<std::string> kNoExclusions = {"INFO: WrapFileOpen(excllist.txt, [00] r) failed"};

// The database, the script and the rest, and the DATA folder that networks go to.
FileList With(FileList files, const FileList& more) {
  files.insert(files.end(), more.begin(), more.end());
  files.push_back({"DATA/keep", ""});
  return files;
}

// The summary on standard error that ends a script run: lines read, networks
// written and what is worth saying besides.
std::string Summary(int lines, int written, int fresh, const std::string& more = "") {
  return "bgrtool: script 's.txt': " + std::to_string(lines) + (lines == 1 ? " line" : " lines") + " read, " +
         std::to_string(written) + (written == 1 ? " network" : " networks") + " written (" + std::to_string(fresh) +
         " new, " + std::to_string(written - fresh) + " updated)\n" + more;
}

// A script run that succeeds, prints nothing and finds no exclusion list.
CliCase Script(std::string name, FileList files, FileList expect, std::vector<std::string> absent, std::string err) {
  return {std::move(name), {"-tes.txt"},        std::move(files), "",   1, kNoExclusions,
          std::move(expect), std::move(absent), true,             std::move(err)};
}

std::string Org(double lat, double lon) {
  char text[96];
  std::snprintf(text, sizeof text, "ORG %f %f\n", lat, lon);
  return text;
}

std::vector<CliCase> Cases() {
  std::vector<CliCase> cases;
  FileList db = DatabaseFiles({kA, {"KSEA", 170000, 1296000 - 440000}, {"ABC", 120000, 60000}, {"ABCDE", 130000, 60000},
                               {"NZXX", 150000, 647990}});
  {
    std::string script = Ref(kLatA, kLonA) +
                         "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\nLIN 100 0 200 75 15\n"
                         "LIN 102 0 203 50 15\n"  // within 5 ft of the pen: no edge
                         "LIN 0 0 0 60 15\nMOV 0 0 0 0 0\n"
                         "LIN 100 0 0 90 15\n"  // drawn twice: the wider
                         "LIN 0 0 0 75 15\n"    // back the other way: an edge of its own
                         "POI 0 0 0\nPOI 10 0 0\nPOI 0 0 10\nPLY apron\nLGT 2 5 0 5\n";
    BgrBuilder bgr;
    bgr.Origin(kLatA, kLonA).Node(0, 0, 0).Node(100, 0, 0).Node(100, 0, 200);
    bgr.Edge(0, 1, kW90, 15, 1).Edge(1, 2, kW75, 15, 1).Edge(2, 0, kW60, 15, 1).Edge(1, 0, kW75, 15, 1).End();
    cases.push_back(
        Script("a script builds an airport's network and its PLY file", With(db, {{"s.txt", script}}),
               {{"DATA/LMMX.BGR", bgr.data},
                {"DATA/LMMX.PLY", Org(kLatA, kLonA) + "POI 0 0\nPOI 10 0\nPOI 0 10\nPLY \"apron\"\nLGT 2 5 5\n"}},
               {}, Summary(14, 1, 1)));
  }
  {
    // B lies 1000 arc-seconds north of A: far beyond 15000 ft
    DbAirport b{"EGXX", kLatA + 1000, kLonA};
    std::string script = Ref(kLatA, kLonA) + "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\nPOI 1 0 1\n" +
                         Ref(b.lat, b.lon) + "MOV 0 0 0 75 15\nLIN 0 0 100 75 15\n" + Ref(kLatA, kLonA) +
                         "MOV 0 0 50 75 15\nLIN 0 0 100 75 15\nPOI 2 0 2\n";
    BgrBuilder a;
    a.Origin(kLatA, kLonA).Node(0, 0, 0).Node(100, 0, 0).Node(0, 0, 50).Node(0, 0, 100);
    a.Edge(0, 1, kW75, 15, 1).Edge(2, 3, kW75, 15, 1).End();
    BgrBuilder bb;
    bb.Origin(b.lat, b.lon).Node(0, 0, 0).Node(0, 0, 100).Edge(0, 1, kW75, 15, 1).End();
    cases.push_back(Script("back at an airport its network is read again and its PLY file appended to",
                           With(DatabaseFiles({kA, b}), {{"s.txt", script}}),
                           {{"DATA/LMMX.BGR", a.data}, {"DATA/EGXX.BGR", bb.data},
                            {"DATA/LMMX.PLY", Org(kLatA, kLonA) + "POI 1 1\nPOI 2 2\n"},
                            {"DATA/EGXX.PLY", Org(b.lat, b.lon)}},
                           {}, Summary(11, 2, 2)));
  }
  for (double feet : {14999.5, 15000.5}) {
    // the second reference point lies this far north of A, and B 500 ft beyond it:
    // only a fresh reference point asks the database, and then B is the nearer
    double second = kLatA + feet * 1296000 / kMeridian;
    DbAirport b{"EGYY", kLatA + (feet + 500.5) * 1296000 / kMeridian, kLonA};
    std::string script = Ref(kLatA, kLonA) + "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\n" + Ref(second, kLonA) +
                         "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\n";
    bool stays = feet < 15000;
    BgrBuilder a;
    a.Origin(kLatA, kLonA).Node(0, 0, 0).Node(100, 0, 0);
    if (stays) {
      double z = std::trunc(North(kLatA, second));
      a.Node(0, 0, z).Node(100, 0, z).Edge(0, 1, kW75, 15, 1).Edge(2, 3, kW75, 15, 1).End();
    } else {
      a.Edge(0, 1, kW75, 15, 1).End();
    }
    CliCase c = Script(stays ? "a reference point 14999 ft away stays with the open network"
                             : "a reference point 15000 ft away leaves it and finds its own airport",
                       With(DatabaseFiles({kA, b}), {{"s.txt", script}}), {{"DATA/LMMX.BGR", a.data}}, {},
                       stays ? Summary(6, 1, 1) : Summary(6, 2, 2));
    if (stays) {
      c.absent = {"DATA/EGYY.BGR", "DATA/EGYY.PLY"};
    } else {
      double z = std::trunc(North(b.lat, second));
      BgrBuilder bb;
      bb.Origin(b.lat, b.lon).Node(0, 0, z).Node(100, 0, z).Edge(0, 1, kW75, 15, 1).End();
      c.expectFiles.push_back({"DATA/EGYY.BGR", bb.data});
    }
    cases.push_back(c);
  }
  cases.push_back(Script("work far from every airport is thrown away",
                         With(db, {{"s.txt", Ref(0, 0) + "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\nPOI 1 0 1\nPLY x\n"}}), {},
                         {"DATA/NONE.BGR", "DATA/NONE.PLY", "DATA/LMMX.BGR"},
                         Summary(5, 0, 0, "bgrtool: reference points that opened no network: 1 with no airport of the "
                                          "database within about 283\" (line 1)\n")));
  {
    // a runway from A 10 arc-seconds north: 1012.78 ft
    cases.push_back(Script("a runway of 749 ft makes nothing at all",
                           With(db, {{"s.txt", Rwy(749, kLatA, kLonA, kLatA + 10, kLonA)}}), {},
                           {"DATA/LMMX.BGR", "DATA/LMMX.PLY"},
                           Summary(1, 0, 0, "bgrtool: runways: 0 drawn, 1 refused: 1 shorter than 750 ft (line 1)\n")));
    BgrBuilder bgr;
    bgr.Origin(kLatA, kLonA).Node(0, 0, 0).Node(0, 0, std::trunc(North(kLatA, kLatA + 10)));
    bgr.Edge(0, 1, kW148, 0, 0).End();
    cases.push_back(Script("a runway of 750 ft is an edge from end to end",
                           With(db, {{"s.txt", Rwy(750, kLatA, kLonA, kLatA + 10, kLonA, "148.9")}}),
                           {{"DATA/LMMX.BGR", bgr.data}, {"DATA/LMMX.PLY", Org(kLatA, kLonA)}}, {},
                           Summary(1, 1, 1, "bgrtool: runways: 1 drawn, 0 refused\n")));
  }
  {
    // a second runway drawn the other way, each end within 1000 ft of the old
    // one's: it replaces it; a third beside it, 1346 ft east, stays. Offsets
    // in whole arc-seconds, so that the text gives the same numbers.
    double n = kLatA + 50;
    std::string script = Rwy(5000, kLatA, kLonA, n, kLonA) + Rwy(5000, n, kLonA + 7, kLatA, kLonA + 7) +
                         Rwy(5000, kLatA, kLonA + 22, n, kLonA + 22);
    double z = std::trunc(North(kLatA, n));
    double x7 = std::trunc(East(kLatA, kLonA, kLonA + 7)), x22 = std::trunc(East(kLatA, kLonA, kLonA + 22));
    BgrBuilder bgr;
    bgr.Origin(kLatA, kLonA).Node(0, 0, 0).Node(0, 0, z).Node(x7, 0, z).Node(x7, 0, 0).Node(x22, 0, 0).Node(x22, 0, z);
    bgr.Edge(2, 3, kW148, 0, 0).Edge(4, 5, kW148, 0, 0).End();
    cases.push_back(Script("a runway redrawn the other way replaces the old one", With(db, {{"s.txt", script}}),
                           {{"DATA/LMMX.BGR", bgr.data}}, {},
                           Summary(3, 1, 1, "bgrtool: runways: 3 drawn, 0 refused\n")));
  }
  {
    std::string excl = "ARE 5 \"C:\\SCENERY\\MALTA\"\nXCL 10 99000 49000 101000 51000 1\nXCL 99 0 0 1 1 0\n";
    std::string body = Ref(kLatA, kLonA) + "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\nPOI 1 0 1\nPLY x\nEXI\n" +
                       "LIN 0 0 100 75 15\n";
    // an area below the box's: everything but the reference point itself is passed over, EXI too
    CliCase c = Script("an excluded box drops the lines behind its reference point",
                       With(db, {{"s.txt", "SRC \"c:\\scenery\\malta\\lmml.txt\"\n" + body}, {"excllist.txt", excl}}),
                       {{"DATA/LMMX.PLY", Org(kLatA, kLonA)}}, {"DATA/LMMX.BGR"}, Summary(8, 0, 0));
    c.report = {};
    cases.push_back(c);
  }
  {
    CliCase c = Script("a cell restriction leaves out the airports of other cells",
                       With(db, {{"s.txt", Ref(kLatA, kLonA) + "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\n"}}), {},
                       {"DATA/LMMX.BGR", "DATA/LMMX.PLY"},
                       Summary(3, 0, 0, "bgrtool: reference points that opened no network: 1 at an airport outside "
                                        "the -ti cell (line 1)\n"));
    c.args.insert(c.args.begin(), "-ti000000");
    cases.push_back(c);
  }
  {
    BgrBuilder sea;
    sea.Origin(170000, 1296000 - 440000).Node(0, 0, 0).Node(100, 0, 0).Edge(0, 1, kW75, 15, 1).End();
    const std::string line = "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\n";
    cases.push_back(Script("a code with a leading K names its network by the other three letters",
                           With(db, {{"s.txt", Ref(170000, -440000) + line}}), {{"DATA/SEA.BGR", sea.data}},
                           {"DATA/KSEA.BGR"}, Summary(3, 1, 1)));
    cases.push_back(Script("codes of three and five letters name no network",
                           With(db, {{"s.txt", Ref(120000, 60000) + line + Ref(130000, 60000) + line}}), {},
                           {"DATA/ABC.BGR", "DATA/ABCDE.BGR", "DATA/NONE.BGR"},
                           Summary(6, 0, 0, "bgrtool: reference points that opened no network: 2 with no airport of "
                                            "the database within about 283\" (first on line 1)\n")));
    // 10 arc-seconds west of the 180th meridian finds the airport 10 east of it
    double x = std::trunc(East(150000, 647990, 1296000 - 647990));
    BgrBuilder nz;
    nz.Origin(150000, 647990).Node(x, 0, 0).Node(x + 100, 0, 0).Edge(0, 1, kW75, 15, 1).End();
    cases.push_back(Script("the search for an airport crosses the 180th meridian",
                           With(db, {{"s.txt", Ref(150000, -647990) + line}}), {{"DATA/NZXX.BGR", nz.data}}, {},
                           Summary(3, 1, 1)));
  }
  {
    // two reference points far apart: each asks the database anew, the message comes once
    std::string script = Ref(kLatA, kLonA) + Ref(kLatA + 1000, kLonA);
    std::string noDb = "INFO: WrapFileOpen(DATABASE\\AIRPORT.DBD, [00] rb) failed";
    cases.push_back({"without a database a script says so once", {"-tes.txt"}, With({}, {{"s.txt", script}}), "", 1,
                     {kNoExclusions[0], noDb, noDb}, {}, {}, true,
                     "bgrtool: the airport database 'DATABASE\\AIRPORT.DBD' can't be used: No such file or directory; "
                     "no reference point finds an airport\n" +
                         Summary(2, 0, 0, "bgrtool: reference points that opened no network: 2 with no airport of the "
                                          "database within about 283\" (first on line 1)\n")});
  }
  {
    FileList files = db;
    files.push_back({"s.txt", Ref(kLatA, kLonA) + "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\n"});
    cases.push_back({"without a DATA folder the networks are not saved, and the script says why", {"-tes.txt"}, files,
                     "", 1,
                     {kNoExclusions[0], "INFO: WrapFileOpen(DATA\\LMMX.PLY, [00] w) failed",
                      "WARNING: TaxiwayList::OpenPly() polygon file 'DATA\\LMMX.PLY' not open",
                      "INFO: WrapFileOpen(DATA\\LMMX.BGR, [00] wb) failed"},
                     {}, {"DATA"}, true,
                     "bgrtool: the network 'DATA\\LMMX.BGR' is not saved: No such file or directory\n"
                     "bgrtool: there is no folder 'DATA' here, where a script's networks go\n"
                     "bgrtool: script 's.txt': 3 lines read, 0 networks written (0 new, 0 updated), 1 not saved\n"});
  }
  {
    // runways of every fate at an airport whose network is there already
    std::string script = "SRC \"c:\\scenery\\malta\\lmml.txt\"\n" + Rwy(749, kLatA, kLonA, kLatA + 10, kLonA) +
                         Rwy(5000, kLatA, kLonA, kLatA + 50, kLonA) +
                         Rwy(5000, kLatA, kLonA + 30, kLatA + 1000, kLonA + 30) +  // 101278 ft apart
                         Rwy(5000, 120480, 60500, 120530, 60500) +  // its middle in the box
                         Rwy(5000, 0, 0, 50, 0);                    // far from every airport
    std::string excl = "ARE 5 \"C:\\SCENERY\\MALTA\"\nXCL 10 120000 60000 121000 61000 1\n";
    BgrBuilder old;
    old.Origin(kLatA, kLonA).Node(0, 0, 0).Node(100, 0, 0).Edge(0, 1, kW75, 15, 1).End();
    cases.push_back({"the summary counts the runways drawn and refused, and why", {"-tes.txt"},
                     With(db, {{"s.txt", script}, {"excllist.txt", excl}, {"DATA/LMMX.BGR", old.data}}), "", 1, {},
                     {}, {}, true,
                     Summary(6, 1, 0,
                             "bgrtool: runways: 2 drawn, 3 refused: 1 shorter than 750 ft (line 2), 1 in an excluded "
                             "box (line 5), 1 with no airport of the database at their first end (line 6)\n"
                             "bgrtool: warning: 1 runway whose ends don't fit the length (line 4): 101278 ft between "
                             "the ends, 5000 ft stated\n"
                             "bgrtool: reference points that opened no network: 1 with no airport of the database "
                             "within about 283\" (line 6)\n")});
  }
  {
    // records of latitude, code, longitude; the dbt's latitude entry stops after its
    // tag, so the latitude is read where the code lies: a position next to 0
    Bytes dbd;
    dbd.Long(0).Long(0).Long(0).Long(0).Long(1).Long(24);
    for (int i = 0; i < 8; ++i) dbd.Long(0);
    const std::string code("LMMX\0\0\0\0", 8);
    dbd.Double(kLatA).Raw(code).Double(kLonA);
    double codeAsLat = 0;
    std::memcpy(&codeAsLat, code.data(), sizeof codeAsLat);
    BgrBuilder bgr;
    bgr.Origin(codeAsLat, kLonA).Node(0, 0, 0).Node(100, 0, 0).Edge(0, 1, kW75, 15, 1).End();
    cases.push_back(Script("a dbt entry that doesn't parse keeps the offset parsed before it",
                           With({{"DATABASE/AIRPORT.DBD", dbd.data},
                                 {"DATABASE/AIRPORT.dbt", "alatitude\naica,8,8,C\nalon,16,8,N\n"}},
                                {{"s.txt", Ref(0, kLonA) + "MOV 0 0 0 75 15\nLIN 100 0 0 75 15\n"}}),
                           {{"DATA/LMMX.BGR", bgr.data}, {"DATA/LMMX.PLY", Org(0, kLonA)}}, {}, Summary(3, 1, 1)));
  }
  CliCase none = Script("a script that can't be opened fails and writes nothing", db, {}, {"DATA/LMMX.BGR"},
                        "bgrtool: cannot read the script 'none.txt': No such file or directory\n");
  none.args = {"-tenone.txt"};
  none.exit = 0;
  none.report.insert(none.report.begin(), "INFO: WrapFileOpen(none.txt, [00] r) failed");
  cases.push_back(none);
  return cases;
}

CLI_CASE_SUITE(ScriptCli, Cases());

}  // namespace
}  // namespace bgrtest
