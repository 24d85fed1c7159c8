// The frame and the BGR listing, run as a user runs them.
#include <gtest/gtest.h>

#include <cstdlib>

#include "cli/cli_case.h"
#include "support/bgr_builder.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace bgrtest {
namespace {

const std::string kUsage =
    "paras: <options> filename [fielname2]\n"
    "       -deVMIN:VMAX      delete edge(s)\n"
    "       -lsVMIN:VMAX      list (some/all) vertices\n"
    "       -mg               merge filename into filename2\n"
    "       -gr               graph filename\n"
    "       -teNAME           interpret text file NAME\n"
    "       -mvN:E:VMIN:VMAX  move (some/all) vertices north N east E (float)\n"
    "       -pg               purge - remove unused vertices\n"
    "       -txd              generate TXD (taxiwayeditor)\n";

const std::string kNoBounds = "WS= 99999999.000000 99999999.000000, EN= -99999999.000000 -99999999.000000\n";
// 171000.5" N is 47 degrees 30 minutes 0.5 seconds; -441000.25" is mirrored one
// tick short of the full circle, so its last tick is lost.
const std::string kOrigin = "<orgn>  (47 30'00.5000\"N 122 30'00.2499\"W)\n";

// Three nodes and one taxiway 0-1 of width code 17096 (100 ft), all flags.
std::string SmallNetwork() {
  BgrBuilder b;
  b.Origin(171000.5, -441000.25).Node(0, 0, 0).Node(100, 0, 200.5).Node(-50, 1, -20);
  b.Edge(0, 1, 17096, 15, 1).End();
  return b.data;
}

const std::string kSmallListing =
    "<bgno>\n" + kOrigin +
    "<node>\n<bgno>\n<vloc> (0)\n<endo>\n"
    "<node>\n<bgno>\n<vloc> (1)\n<endo>\n"
    "<node>\n<bgno>\n<vloc> (2)\n<endo>\n"
    "<edge> \n<bgno>\n<thck> 17096 100ft sp=0F\n<type> \n<endo>\n<endo>\n"
    "WS= -50.000000 -20.000000, EN= 100.000000 200.500000\n";

std::string FiveNodes() {
  BgrBuilder b;
  b.Origin(171000.5, -441000.25);
  for (int i = 0; i < 5; ++i) b.Node(i * 10, 0, i * -5);
  b.Edge(3, 4, 16904, 1, 0).End();
  return b.data;
}

std::vector<CliCase> Cases() {
  std::vector<CliCase> cases;
  cases.push_back({"no arguments give the usage text", {}, {}, kUsage, 255});
  cases.push_back({"plain listing shows tags, node numbers and widths", {"a.bgr"}, {{"a.bgr", SmallNetwork()}},
                   kSmallListing});
  cases.push_back({"extension and name are found whatever their case", {"DATA\\A.BGR"},
                   {{"data/a.bgr", SmallNetwork()}}, kSmallListing});
  cases.push_back({"ls prints the values",
                   {"-ls", "a.bgr"},
                   {{"a.bgr", SmallNetwork()}},
                   "<bgno>\n<orgn>  171000.500000 -441000.250000 0.000000 1 (47 30'00.5000\"N 122 30'00.2499\"W)\n"
                   "<node>\n<bgno>\n<vloc> (0) 0.000000 0.000000 0.000000\n<endo>\n"
                   "<node>\n<bgno>\n<vloc> (1) 100.000000 0.000000 200.500000\n<endo>\n"
                   "<node>\n<bgno>\n<vloc> (2) -50.000000 1.000000 -20.000000\n<endo>\n"
                   "<edge>  0 1\n<bgno>\n<thck> 17096 100ft sp=0F\n<type>  1\n<endo>\n<endo>\n"
                   "WS= -50.000000 -20.000000, EN= 100.000000 200.500000\n"});
  cases.push_back({"a single node of the range, no structural tags", {"-ls3", "-pr0", "f.bgr"},
                   {{"f.bgr", FiveNodes()}},
                   kOrigin + "<vloc> (3)\n<edge> \n<thck> 16904 25ft sp=01\n<type> \n"
                             "WS= 30.000000 -15.000000, EN= 30.000000 -15.000000\n"});
  cases.push_back({"a range that hits no node keeps the start bounds", {"-ls50", "-pr0", "f.bgr"},
                   {{"f.bgr", FiveNodes()}},
                   kOrigin + "<edge> \n<thck> 16904 25ft sp=01\n<type> \n" + kNoBounds});
  cases.push_back({"flow marks are dumped as bytes when out of range",
                   {"-ls1", "f.bgr"},
                   {{"f.bgr", BgrBuilder().Origin(0, 0).Node(1, 2, 3, true).Node(4, 5, 6).End().data}},
                   "<orgn>  0.000000 0.000000 0.000000 1 (0 0'00.0000\"N 0 0'00.0000\"E)\n"
                   " 00 00 00 00 00 00 F0 3F 00 00 00 00 00 00 00 40 00 00 00 00 00 00 08 40 01 00 00 00"
                   "<vloc> (1) 4.000000 5.000000 6.000000\n"
                   "WS= 4.000000 6.000000, EN= 4.000000 6.000000\n"});
  cases.push_back({"the width line shows the flags in two hex digits or more", {"w.bgr"},
                   {{"w.bgr", BgrBuilder().Origin(0, 0).Edge(0, 1, 16839, 0x100, 1).Edge(1, 2, 18120, 0xFFFF, 0).End().data}},
                   "<bgno>\n<orgn>  (0 0'00.0000\"N 0 0'00.0000\"E)\n"
                   // 16839 decodes to -50 / 128, cut toward zero
                   "<edge> \n<bgno>\n<thck> 16839 0ft sp=100\n<type> \n<endo>\n"
                   "<edge> \n<bgno>\n<thck> 18120 500ft sp=FFFF\n<type> \n<endo>\n<endo>\n" +
                       kNoBounds});
  cases.push_back({"a missing file fails with exit 0", {"missing.bgr"}, {},
                   "ERROR: BgrList source file 'missing.bgr' not found\n" + kNoBounds, 0,
                   {NotOpened("missing.bgr"), "ERROR: BgrList source file 'missing.bgr' not found"},
                   {},
                   {},
                   true,
                   NoSuchSource("missing.bgr")});
  cases.push_back({"graph is not implemented", {"-gr", "x.tms"}, {}, "TEXTURESHOW_usage - not implemented\n"});
  cases.push_back({"a folder is no file to list", {"d"}, {{"d/keep", ""}},
                   "ERROR: BgrList source file 'd' not found\n" + kNoBounds, 0,
                   {NotOpened("d"), "ERROR: BgrList source file 'd' not found"}, {}, {}, true,
                   "bgrtool: 'd': it is a folder\n"});
  cases.push_back({"bytes that are no network list only the bounds, and standard error says why", {"j.bgr"},
                   {{"j.bgr", "GIF89a"}}, kNoBounds, 1, {}, {}, {}, true,
                   "bgrtool: 'j.bgr': no BGR record at its start\n"});
  cases.push_back({"an empty file lists only the bounds", {"e.bgr"}, {{"e.bgr", ""}}, kNoBounds, 1, {}, {}, {}, true,
                   "bgrtool: 'e.bgr': it is an empty file\n"});
  {
    BgrBuilder b;
    b.Origin(171000.5, -441000.25).Node(10, 0, 20);
    b.Tag("<node>").Tag("<bgno>").Tag("<vloc>").Double(30).Raw(std::string(4, '\0'));
    cases.push_back({"a file cut inside a record ends the listing there", {"t.bgr"}, {{"t.bgr", b.data}},
                     "<bgno>\n" + kOrigin + "<node>\n<bgno>\n<vloc> (0)\n<endo>\n<node>\n<bgno>\n<vloc> (1)\n"
                                            "WS= 10.000000 0.000000, EN= 30.000000 20.000000\n"});
  }
  {
    BgrBuilder b;
    b.Origin(171000.5, -441000.25).Tag("<node>").Tag("<bgno>").Tag("<vloc>").Double(1).Double(2).Double(3);
    b.Tag("<flow>").Long('<').Tag("<endo>").End();
    cases.push_back({"a stray < in a value swallows the next tag", {"s.bgr"}, {{"s.bgr", b.data}},
                     "<bgno>\n" + kOrigin + "<node>\n<bgno>\n<vloc> (0)\n<flow>\n<\n<endo>\n"
                                            "WS= 1.000000 3.000000, EN= 1.000000 3.000000\n"});
  }
  for (const auto& [name, tag] : {std::pair<std::string, std::string>{"a tag of more than 62 characters ends the scan",
                                                                      "<" + std::string(70, 'a') + ">" + '\0'},
                                  {"a tag without its zero ends the scan", "<node>X"}}) {
    BgrBuilder b;
    b.Origin(171000.5, -441000.25).Raw(tag).Node(1, 1, 1);
    cases.push_back({name, {"t.bgr"}, {{"t.bgr", b.data}}, "<bgno>\n" + kOrigin + kNoBounds, 1, {}, {}, {}, true,
                     "bgrtool: warning: 't.bgr': the walk stopped at byte 42, where bytes inside a value look like a "
                     "tag; nothing after them was read\n"});
  }
  return cases;
}

CLI_CASE_SUITE(ListCli, Cases());

TEST(ReportFile, TwoRunsAppend) {
  TempDir dir;
  dir.Write("a.bgr", SmallNetwork());
  RunTool(BGRTOOL_PATH, dir.path(), {"a.bgr"});
  RunTool(BGRTOOL_PATH, dir.path(), {"missing.bgr"});
  EXPECT_EQ(Normalise(dir.Read("report.txt")),
            "\n<banner>\nbgrtool a.bgr\nTIME= <t> sec\n\n<banner>\nbgrtool missing.bgr\n"
            "INFO: WrapFileOpen(missing.bgr, [00] rb) failed\n"
            "ERROR: BgrList source file 'missing.bgr' not found\nTIME= <t> sec\n");
}

TEST(ReportFile, UnwritableReportFallsBackOnTheConsole) {
  // differs on Windows: the report's path is the program's full path there, and so is its message
  if (const char* w = std::getenv("BGRTOOL_TEST_WRAPPER"); w && std::string(w).find("wine") != std::string::npos) {
    GTEST_SKIP() << "the report's path is the program's full path on Windows";
  }
  TempDir dir;
  dir.Write("report.txt/keep", "");  // a folder where the report should be
  dir.Write("e.bgr", "");
  ToolRun run = RunTool(BGRTOOL_PATH, dir.path(), {"e.bgr"});
  const std::string info = "INFO: WrapFileOpen(report.txt, [00] a) failed\n";
  EXPECT_EQ(Normalise(run.out), info + " <banner>\nbgrtool e.bgr\n" + kNoBounds + "TIME= <t> sec\n" + info);
  EXPECT_EQ(run.exitStatus, 1);
}

// --help and --version as the only argument run no command and write no report;
// with anything beside them, or with a file of that name, the scan is as ever.
TEST(Frame, HelpAndVersionAlone) {
  TempDir dir;
  ToolRun help = RunTool(BGRTOOL_PATH, dir.path(), {"--help"});
  EXPECT_EQ(help.exitStatus, 1);
  for (const char* option : {"-tm ", "-ls", "-pr", "-mv", "-de", "-mg ", "-pg ", "-rs", "-txd ", "-txp, -txp0 ", "-gr ",
                             "-te", "-ti"})
    EXPECT_NE(help.out.find(std::string("\n  ") + option), std::string::npos) << option;
  ToolRun version = RunTool(BGRTOOL_PATH, dir.path(), {"--version"});
  EXPECT_EQ(version.out, "bgrtool v1.03\n");
  EXPECT_EQ(version.exitStatus, 1);
  EXPECT_FALSE(dir.Exists("report.txt"));

  ToolRun two = RunTool(BGRTOOL_PATH, dir.path(), {"--help", "x"});
  EXPECT_EQ(two.exitStatus, 255);
  EXPECT_EQ(Normalise(two.out), " <banner>\nbgrtool --help x\n" + kUsage + "TIME= <t> sec\n");
  dir.Write("--version", "");
  ToolRun file = RunTool(BGRTOOL_PATH, dir.path(), {"--version"});
  EXPECT_EQ(Normalise(file.out), " <banner>\nbgrtool --version\n" + kNoBounds + "TIME= <t> sec\n");
  EXPECT_EQ(file.exitStatus, 1);
}

}  // namespace
}  // namespace bgrtest
