// The checks of bgrkit check, each on a good and a bad network, and the
// foreseen repairs against what the -tm job then does to the same files.
#include <gtest/gtest.h>

#include <algorithm>

#include "formats/network_content.h"
#include "kit/check.h"
#include "support/bgr_builder.h"
#include "support/temp_dir.h"
#include "support/test_run.h"
#include "tms/tms_job.h"

namespace bgrtest {
namespace {

using bgr::kit::CheckInput;
using bgr::kit::Findings;

struct N {
  double x, z;
};
struct E {
  std::int32_t from, to, type = 1, width = 50, flags = 15;
};

CheckInput Net(std::vector<N> nodes, std::vector<E> edges) {
  CheckInput in;
  in.network.read = in.network.complete = true;
  for (N n : nodes) in.network.nodes.push_back({n.x, 0, n.z});
  for (E e : edges) in.network.edges.push_back({e.from, e.to, e.width, e.type, 0, e.flags});
  return in;
}

std::vector<std::string> Codes(const Findings& f) {
  std::vector<std::string> codes;
  for (const auto& x : f) codes.push_back(x.code);
  return codes;
}

using Check = void (*)(const CheckInput&, Findings&);
struct Case {
  const char* name;
  Check check;
  CheckInput in;
  std::vector<std::string> codes;
};

std::vector<E> Runways(std::size_t n) { return std::vector<E>(n, {0, 1, 0}); }
std::vector<E> Yellow(std::size_t n, std::int32_t flags) { return std::vector<E>(n, {0, 1, 1, 50, flags}); }
CheckInput Cut(bool read) {
  CheckInput in = Net({}, {});
  in.network.read = read;
  in.network.complete = false;
  return in;
}
CheckInput Ply(std::vector<std::string> lines) {
  CheckInput in;
  in.ply.lines = std::move(lines);
  return in;
}
std::vector<std::string> Corners(int n) {
  std::vector<std::string> lines;
  for (int i = 0; i < n; ++i) lines.push_back("POI " + std::to_string(i) + " " + std::to_string(i * i % 7));
  return lines;
}
std::vector<std::string> With(std::vector<std::string> a, std::vector<std::string> b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

TEST(Check, EachCheckOnGoodAndBadNetworks) {
  using namespace bgr::kit;
  const Case cases[] = {
      {"whole file", CheckFile, Net({}, {}), {}},
      {"no network", CheckFile, Cut(false), {"not-a-network"}},
      {"cut file", CheckFile, Cut(true), {"damaged-file"}},
      {"ends exist", CheckDanglingEdges, Net({{0, 0}, {1, 0}}, {{0, 1}}), {}},
      {"end beyond", CheckDanglingEdges, Net({{0, 0}, {1, 0}}, {{0, 2}}), {"dangling-edge"}},
      {"both ends below", CheckDanglingEdges, Net({{0, 0}}, {{-1, -2}}), {"dangling-edge", "dangling-edge"}},
      {"apart", CheckZeroLengthEdges, Net({{0, 0}, {1, 0}}, {{0, 1}}), {}},
      {"one point", CheckZeroLengthEdges, Net({{0, 0}}, {{0, 0}}), {"zero-length-edge"}},
      {"two points at one place", CheckZeroLengthEdges, Net({{3, 4}, {3, 4}}, {{0, 1}}), {"zero-length-edge"}},
      {"6 ft apart", CheckClosePoints, Net({{0, 0}, {6, 0}, {0, -6}}, {}), {}},
      {"5 ft apart on each axis", CheckClosePoints, Net({{0, 0}, {5, -5}}, {}), {"close-points"}},
      {"same place", CheckClosePoints, Net({{7, 7}, {100, 0}, {7, 7}}, {}), {"coincident-points"}},
      {"fractions cut", CheckClosePoints, Net({{0.9, 0}, {0.1, 0}}, {}), {"coincident-points"}},
      {"other points", CheckDuplicateEdges, Net({}, {{0, 1}, {1, 2}}), {}},
      {"drawn twice", CheckDuplicateEdges, Net({}, {{0, 1}, {1, 2}, {1, 0}}), {"duplicate-edge"}},
      {"25 and 500, multiples of 25 that come back", CheckWidths, Net({}, {{0, 1, 1, 25}, {0, 1, 1, 500}}), {}},
      {"24 and 501", CheckWidths, Net({}, {{0, 1, 1, 24}, {0, 1, 1, 501}}), {"width-clamped", "width-clamped"}},
      {"at the edge of the range", CheckRange, Net({{8388607, -8388607}}, {}), {}},
      {"beyond it", CheckRange, Net({{8388607.5, 0}, {0, -8388608}}, {}), {"out-of-range", "out-of-range"}},
      {"32 runways", CheckSizes, Net({}, Runways(32)), {}},
      {"33 runways", CheckSizes, Net({}, Runways(33)), {"too-many-runways"}},
      {"flags 0 are all flags", CheckYellowLines, Net({}, Yellow(120, 0)), {}},
      {"99 yellow lines", CheckYellowLines, Net({}, Yellow(99, 2)), {"yellow-lines-kept"}},
      {"100 yellow lines", CheckYellowLines, Net({}, Yellow(100, 18)), {"yellow-lines-dropped"}},
      {"lights of 3 and 6", CheckPlyLines, Ply({"LGT 1 2 3", "LGT 1 2 3 4 5 6", "ORG 1 2", "", "EXI", "LGT 1"}), {}},
      {"lights of 4 and 1", CheckPlyLines, Ply({"LGT 1 2 3 4", "LGT 1", "LGT x"}),
       {"light-numbers", "light-numbers", "light-numbers"}},
      {"254 corners", CheckPlyLines, Ply(With(Corners(254), {"PLY \"a\""})), {}},
      {"255 corners and the PLY line", CheckPlyLines, Ply(With(Corners(255), {"PLY \"a\""})),
       {"too-many-corners", "empty-polygon"}},
      {"open at the end", CheckPlyLines, Ply(With({"PLY \"lone\""}, Corners(3))), {"empty-polygon", "open-polygon"}},
  };
  for (const Case& c : cases) {
    Findings f;
    c.check(c.in, f);
    EXPECT_EQ(Codes(f), c.codes) << c.name;
  }
}

// A width is written as w * 128 / 50 + 16840 and read back as (code - 16840) * 50 / 128,
// both cut: 128 / 50 = 64 / 25, so only a multiple of 25 ft is a whole number of
// steps; every other width comes back 1 ft narrower, at each write.
TEST(Check, WidthsThatAWriteChanges) {
  for (std::int32_t w = 25; w <= 500; ++w)
    EXPECT_EQ(bgr::DecodeWidth(bgr::EncodeWidth(w)), w % 25 == 0 ? w : w - 1) << w;
  Findings f;
  bgr::kit::CheckWidths(Net({}, {{0, 1, 1, 148}, {0, 1, 1, 146}, {0, 1, 1, 148}, {0, 1, 1, 150}}), f);
  ASSERT_EQ(f.size(), 1u);
  EXPECT_NE(f[0].message.find("3 edges lose 1 ft of width at every write-back by -tm or a script: 146 ft (1 edge), "
                              "148 ft (2 edges); only multiples of 25 ft come back as they were written"),
            std::string::npos)
      << f[0].message;
}

// Aprons repeated anywhere in the PLY file (a script run twice) are laid again
// by -tm; one right behind its twin is made once, which another note says.
TEST(Check, RepeatedApronsAnywhere) {
  CheckInput in;
  in.plyPath = "not-there.PLY";  // the polygons as drawn alone
  std::vector<bgr::TEXPOINT> a{{0, 0, 0}, {100, 0, 0}, {0, 0, 100}}, b{{500, 0, 0}, {600, 0, 0}, {500, 0, 100}};
  in.ply.polygons = {a, b, a, a, b};
  Findings f;
  bgr::kit::CheckAprons(in, f);
  std::vector<std::string> seen;
  for (const auto& x : f) seen.push_back(x.code + " " + std::to_string(x.number));
  EXPECT_EQ(seen, (std::vector<std::string>{"repeated-apron 3", "repeated-apron 5"}));
}

// Writes a network (and PLY) and checks it; then runs the -tm job on the same files.
struct Rehearsed {
  Rehearsed(const std::string& bgr, const std::string& ply) {
    dir.Write("a.BGR", bgr);
    if (!ply.empty()) dir.Write("a.PLY", ply);
    std::string error;
    EXPECT_TRUE(bgr::kit::LoadCheckInput(dir / "a.BGR", in, error)) << error;
    findings = bgr::kit::CheckAll(in);
    bgr::TmsJob job(run.ctx);
    job.Run(dir / "a.BGR");
    after = bgr::ReadNetworkContent(run.ctx, dir / "a.BGR");
  }
  const bgr::kit::Finding* Find(const std::string& code) const {
    auto it = std::find_if(findings.begin(), findings.end(), [&](const auto& f) { return f.code == code; });
    return it == findings.end() ? nullptr : &*it;
  }
  TempDir dir;
  TestRun run;
  CheckInput in;
  Findings findings;
  bgr::NetworkContent after;
};

constexpr std::int32_t kWidth100 = 17096, kWidth150 = 17224;

// What check foresees of -tm, against what -tm then does to the same files.
TEST(Check, ForeseenRepairsAreWhatTheJobDoes) {
  // a runway; a taxiway end 30 ft past its line (snapped), one 200 ft short (a
  // near miss); a taxiway end 100 ft short of another (snapped), one 200 ft
  // short (a near miss); two taxiways that cross in their middles (split)
  BgrBuilder b;
  b.Origin(0, 0).Node(-2000, 0, 0).Node(2000, 0, 0).Node(0, 0, -570).Node(0, 0, 30).Node(1500, 0, -800).Node(1500, 0, -200);
  b.Node(-3000, 0, -3000).Node(-3000, 0, -1000).Node(-2900, 0, -2000).Node(-2000, 0, -2000);
  b.Node(-3200, 0, -1500).Node(-4000, 0, -1500);
  b.Node(5000, 0, 5000).Node(7000, 0, 5000).Node(6000, 0, 4000).Node(6000, 0, 6000);
  b.Edge(0, 1, kWidth150, 15, 0).Edge(2, 3, kWidth100, 15, 1).Edge(4, 5, kWidth100, 15, 1);
  b.Edge(6, 7, kWidth100, 15, 1).Edge(8, 9, kWidth100, 15, 1).Edge(10, 11, kWidth100, 15, 1);
  b.Edge(12, 13, kWidth100, 15, 1).Edge(14, 15, kWidth100, 15, 1).End();
  std::string ply = "ORG 0 0\n"
                    "POI 0 0\nPOI 100 0\nPOI 100 100\nPOI 0 0\nPLY \"ring\"\n"            // closes on its start
                    "POI 0 500\nPOI 100 600\nPOI 100 500\nPOI 0 600\nPLY \"bow tie\"\n"   // sides cross
                    "POI 0 900\nPOI 100 900\nPOI 200 900\nPOI 300 900\nPOI 400 900\nPLY \"flat\"\n";  // no area
  Rehearsed r(b.data, ply);
  std::vector<std::string> seen;
  for (const auto& f : r.findings) seen.push_back(f.object + " " + std::to_string(f.number) + " " + f.code);
  std::sort(seen.begin(), seen.end());
  EXPECT_EQ(seen, (std::vector<std::string>{"edge 6 crossing-taxiways", "point 10 near-taxiway", "point 3 snap-to-runway",
                                            "point 5 near-runway", "point 8 snap-to-taxiway", "polygon 1 closed-ring",
                                            "polygon 2 self-intersecting", "polygon 3 triangulation-fails"}));
  EXPECT_NE(r.Find("snap-to-taxiway")->message.find("edge 3 "), std::string::npos);
  // snapped ends moved, near misses stayed; the crossing split both taxiways,
  // and the taxiway snapped on to was split where the end met it
  EXPECT_EQ(r.after.nodes[3].z, 0);
  EXPECT_EQ(r.after.nodes[8].x, -3000);
  EXPECT_EQ(r.after.nodes[5].z, -200);
  EXPECT_EQ(r.after.nodes[10].x, -3200);
  EXPECT_EQ(r.after.edges.size(), r.in.network.edges.size() + 3);
  std::string out = r.run.console.Take();
  EXPECT_NE(out.find("WARNING:TaxiwayList::ReadPly() shifting points"), std::string::npos) << out;
  EXPECT_NE(out.find("GenerateApronPolygons - triangulation failed"), std::string::npos) << out;
}

// A runway's own end near another runway is no taxiway end: no pass moves it,
// and check says nothing of it.
TEST(Check, RunwayEndsAreNoTaxiwayEnds) {
  BgrBuilder b;
  b.Origin(0, 0).Node(-2000, 0, 0).Node(2000, 0, 0).Node(0, 0, 220).Node(0, 0, 3000);
  b.Edge(0, 1, kWidth150, 15, 0).Edge(2, 3, kWidth150, 15, 0).End();
  Rehearsed r(b.data, "");
  EXPECT_EQ(r.Find("near-runway"), nullptr);
  EXPECT_EQ(r.after.nodes[2].z, 220);
}

}  // namespace
}  // namespace bgrtest
