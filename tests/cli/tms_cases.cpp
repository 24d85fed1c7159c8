// The -tm job, run as a user runs it: progress lines, the tile file, and the
// network written back.
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "cli/cli_case.h"
#include "support/bgr_builder.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "formats/tms_content.h"
#include "support/test_run.h"

namespace bgrtest {
namespace {

constexpr std::int32_t kFlags = 15;
constexpr std::int32_t kWidth75 = 17032;
constexpr std::int32_t kWidth100 = 17096;
constexpr std::int32_t kWidth150 = 17224;

std::string Progress(const std::string& load, int taxiways, const std::string& tms) {
  return load + "\nSnapEndPointsToRunways()\nMakeTaxiwayTaxiwayIntersections() edges=" + std::to_string(taxiways) +
         "\nSnapEndPointsToTaxiways()\nGenerateApron(0)\nGenerateTaxiPolygons()\nGenerateIsYellow()\n"
         "GenerateApron(1)\nGeneratePlyLights()\nGenerateOutputFile(" +
         tms + ")\n";
}

// The report lines of a missing PLY companion, and what the run reports after them.
std::vector<std::string> NoPly(const std::string& ply, const std::string& then = "") {
  std::vector<std::string> lines{"INFO: WrapFileOpen(" + ply + ", [00] r) failed",
                                 "WARNING: TaxiwayList::OpenPly() polygon file '" + ply + "' not open"};
  if (!then.empty()) lines.push_back(then);
  return lines;
}

// 64 tiles, each with its four sections and nothing in them.
std::string EmptyTiles(double lowX, double lowZ, float feet) {
  Bytes b;
  b.Tag("<bgno>").Tag("<orgn>").Double(0).Double(0).Double(0).Long(1);
  b.Tag("<tlxz>").Long(8).Long(8).Tag("<feet>").Float(feet).Tag("<lowl>").Double(lowX).Double(0).Double(lowZ);
  for (int x = 0; x < 8; ++x) {
    for (int z = 0; z < 8; ++z) {
      b.Tag("<tile>").Tag("<bgno>").Tag("<indx>").Long(x).Long(z);
      for (const char* tag : {"<pave>", "<edmk>", "<cntr>"}) b.Tag(tag).Long(24).Long(20).Long(0x10000).Long(2).Long(0).Long(0).Long(0);
      b.Tag("<lite>").Long(4).Long(0);
      b.Tag("<endo>");
    }
  }
  b.Tag("<endo>");
  return b.data;
}

enum class Lines { kPainted, kWrittenBack, kLeftOut };

// Lines painted and nothing else, each from its own pair of points.
std::string YellowLines(int n, Lines lines) {
  BgrBuilder b;
  b.Origin(0, 0);
  for (int i = 0; i < n; ++i) b.Node(i * 10, 0, 0).Node(i * 10, 0, 300);
  for (int i = 0; i < n && lines != Lines::kLeftOut; ++i) {
    // written back as a taxiway 100 ft wide, flags cleared
    b.Edge(2 * i, 2 * i + 1, lines == Lines::kPainted ? kWidth75 : kWidth100, lines == Lines::kPainted ? 2 : 0, 1);
  }
  return b.End().data;
}

std::vector<CliCase> Cases() {
  std::vector<CliCase> cases;
  // what stands there instead of a network is said on standard error (the listing's cases name the other
  // kinds); all else is as for a missing file, and the source stays as it was
  for (const auto& [name, files, err] : std::vector<std::tuple<std::string, FileList, std::string>>{
           {"without a network the job writes 64 empty tiles and fails", {}, NoSuchSource("x.bgr")},
           {"a file cut inside its first tag is no network", {{"x.bgr", "<bgn"}},
            "bgrtool: 'x.bgr': it ends at byte 4, inside its first record\n"}}) {
    FileList keep = files;
    keep.push_back({"x.TMS", EmptyTiles(38562.49609375, 38562.49609375, 500.0f)});
    const std::string error = "ERROR: BgrTms source file 'x.bgr' not found";
    cases.push_back({name, {"-tm", "x.bgr"}, files, error + "\n" + Progress("Load(x.bgr) points=0 edges=0", 0, "x.TMS"),
                     0, NoPly("x.PLY", error), keep, {}, true, err});
  }
  {
    // a runway from (-2000, 0) to (2000, 0) ft and a taxiway that ends 30 ft short of it
    BgrBuilder in;
    in.Origin(0, 0).Node(-2000, 0, 0).Node(2000, 0, 0).Node(0, 0, -570).Node(0, 0, 30);
    in.Edge(0, 1, kWidth150, kFlags, 0).Edge(2, 3, kWidth75, kFlags, 1).End();
    // the end snapped on to the runway, the stubs' points kept, the stubs left out
    BgrBuilder out;
    out.Origin(0, 0).Node(-2000, 0, 0).Node(2000, 0, 0).Node(0, 0, -570).Node(0, 0, 0).Node(-200, 0, 0).Node(200, 0, 0);
    out.Edge(0, 1, kWidth150, 0, 0).Edge(2, 3, kWidth75, 0, 1).End();
    // a folder in the tile file's place: the open says so in the report alone, and the job goes on
    cases.push_back({"a taxiway end is snapped on to the runway and written back beside a folder named as the tile file",
                     {"-tm", "sq.bgr"}, {{"sq.bgr", in.data}, {"sq.TMS/keep", "k"}},
                     Progress("Load(sq.bgr) points=4 edges=2", 1, "sq.TMS"), 1, NoPly("sq.PLY", NotWritten("sq.TMS")),
                     {{"sq.bgr", out.data}, {"sq.TMS/keep", "k"}}});
  }
  for (int n : {99, 100}) {
    cases.push_back({std::to_string(n) + (n < 100 ? " yellow lines come back as taxiways" : " yellow lines are left out"),
                     {"-tm", "y.bgr"}, {{"y.bgr", YellowLines(n, Lines::kPainted)}},
                     Progress("Load(y.bgr) points=" + std::to_string(2 * n) + " edges=" + std::to_string(n), 0, "y.TMS"),
                     1, NoPly("y.PLY"), {{"y.bgr", YellowLines(n, n < 100 ? Lines::kWrittenBack : Lines::kLeftOut)}}});
  }
  {
    BgrBuilder in;
    in.Origin(0, 0).Node(0, 0, 0).Node(100, 0, 0).Edge(0, 1, kWidth75, 0, 1).End();
    const std::string same = "ERROR: BgrTms source and destination are the same file 'same.TMS'";
    cases.push_back({"a source named as its tile file is not overwritten by its tiles", {"-tm", "same.tms"},
                     {{"same.tms", in.data}}, Progress("Load(same.tms) points=2 edges=1", 0, "same.TMS") + same + "\n",
                     1, NoPly("same.PLY", same)});
  }
  return cases;
}

CLI_CASE_SUITE(TmsCli, Cases());

std::vector<std::pair<std::int32_t, std::int32_t>> Sorted(std::vector<std::pair<std::int32_t, std::int32_t>> c) {
  std::sort(c.begin(), c.end());
  return c;
}

TEST(TmsJob, ARightAngleBendLiesInOneTileWithItsFillet) {
  // a runway far to the south-west sizes the grid so that the bend needs no cutting
  BgrBuilder b;
  b.Origin(0, 0).Node(0, 0, 0).Node(1000, 0, 0).Node(1000, 0, 1000).Node(-13500, 0, -13500).Node(-13499, 0, -13500);
  b.Edge(0, 1, kWidth100, kFlags, 1).Edge(1, 2, kWidth100, kFlags, 1).Edge(3, 4, kWidth100, kFlags, 0).End();
  TempDir dir;
  dir.Write("a.bgr", b.data);
  EXPECT_EQ(RunTool(BGRTOOL_PATH, dir.path(), {"-tm", "a.bgr"}).exitStatus, 1);
  TestRun reader;
  bgr::TmsContent tiles = bgr::ReadTmsContent(reader.ctx, dir / "a.TMS");
  ASSERT_TRUE(tiles.read);
  EXPECT_EQ(tiles.tileFeet, 1937.0f);  // 496000 units, cut to whole feet
  EXPECT_EQ(tiles.lowl[0], -14000.0);
  const auto& pave = tiles.tiles[7][7][0];
  ASSERT_EQ(pave.size(), 14u);
  ASSERT_EQ(tiles.Count(0), 14u);
  // the file gives the last made first: the fillet, then ribbon 1, then ribbon 0
  EXPECT_EQ(Sorted(pave[13].corners), Sorted({{0, 12800}, {0, -12800}, {217600, -12800}, {217600, 12800}}));
  EXPECT_EQ(Sorted(pave[12].corners), Sorted({{243200, 38400}, {268800, 38400}, {268800, 256000}, {243200, 256000}}));
  auto has = [](const bgr::TmsShape& s, std::pair<std::int32_t, std::int32_t> c) {
    return std::find(s.corners.begin(), s.corners.end(), c) != s.corners.end();
  };
  EXPECT_TRUE(has(pave[11], {243200, 38400}) && has(pave[11], {268800, 38400}));
  EXPECT_TRUE(has(pave[0], {217600, -12800}) && has(pave[0], {217600, 12800}));
  EXPECT_EQ(tiles.Count(1), 0u);
  EXPECT_EQ(tiles.Count(2), 14u);
  // lights: the ribbons' centre strings, three strings on six fillet quads
  const auto& lights = tiles.tiles[7][7][3];
  ASSERT_EQ(lights.size(), 20u);
  EXPECT_EQ(lights.back().lightType, 0);
  EXPECT_EQ(lights.back().lightStep, 100.0f);
  EXPECT_EQ(Sorted(lights.back().corners), Sorted({{0, 0}, {217600, 0}}));  // positions in whole feet, back in units
  EXPECT_EQ(std::count_if(lights.begin(), lights.end(), [](const bgr::TmsShape& s) { return s.lightType == 1; }), 12);
}

}  // namespace
}  // namespace bgrtest
