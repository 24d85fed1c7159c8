// TXD and TXP exports, run as a user runs them.
#include <gtest/gtest.h>

#include "cli/cli_case.h"
#include "support/bgr_builder.h"

namespace bgrtest {
namespace {

const char* kBegin = "<bgno> ========== BEGIN OBJECT ==========";
const char* kEnd = "<endo> ========== END OBJECT ==========";

std::string Network() {
  BgrBuilder b;
  b.Origin(171000.5, -441000.25, 9).Node(10, 1, 20).Node(-30, 2, 5.5).Node(7, 3, 8);
  b.Edge(0, 1, 17096, 15, 1).Edge(2, 1, 16904, 1, 0).End();
  return b.data;
}

std::vector<CliCase> Cases() {
  std::vector<CliCase> cases;
  {
    Bytes txd;
    txd.Long(2);
    txd.Long(0).Long(1).Double(0).Double(75).Double(75);
    txd.Long(2).Long(1).Double(0).Double(75).Double(75);
    txd.Long(3);
    txd.Double(10).Double(20).Double(0).Double(0);
    txd.Double(-30).Double(5.5).Double(0).Double(0);
    txd.Double(7).Double(8).Double(0).Double(0);
    cases.push_back({"txd writes edges, then nodes, beside the source", {"-txd", "net.bgr"}, {{"net.bgr", Network()}},
                     "", 1, {}, {{"net.txd", txd.data}}});
  }
  cases.push_back(Failing("txd onto a folder is refused at the open", {"-txd", "net.bgr"},
                          {{"net.bgr", Network()}, {"net.txd/keep", "k"}}, "BgrTxd dest file 'net.txd' not openable",
                          {NotWritten("net.txd")}, {{"net.txd/keep", "k"}}));
  // a failed export leaves the file of its name as it was
  cases.push_back(Says(Failing("txd of a missing source leaves the old export", {"-txd", "x.bgr"}, {{"x.txd", "old"}},
                               "BgrTxd source file 'x.bgr' not found", {NotOpened("x.bgr")}, {{"x.txd", "old"}}),
                       NoSuchSource("x.bgr")));
  {
    Bytes txp;
    txp.Tag(kBegin).Tag("<orgn> ---- origin ----").Double(171000.5).Double(-441000.25).Double(9).Long(1);
    txp.Tag("<vert> ---- vertex pool ----").Long(3);
    txp.Double(10).Double(1).Double(20).Double(-30).Double(2).Double(5.5).Double(7).Double(3).Double(8);
    txp.Tag("<poly> ---- polygon ----").Tag(kBegin).Tag("<pvrt> ---- vertex reference list ----");
    txp.Long(3).Long(0).Long(1).Long(2).Tag(kEnd).Tag(kEnd);
    cases.push_back({"txp writes the vertex pool and one polygon", {"-txp", "net.bgr"}, {{"net.bgr", Network()}}, "",
                     1, {}, {{"net.txp", txp.data}}});
    const std::string echo =
        " 171000.500000 -441000.250000 9.000000 1\n 10.000000 1.000000 20.000000\n"
        " -30.000000 2.000000 5.500000\n 7.000000 3.000000 8.000000\n"
        // the edges' words between their tags are dumped as bytes
        " 00 00 00 00 01 00 00 00 0F 00 C8 42 01 00 00 00"
        " 02 00 00 00 01 00 00 00 01 00 08 42 00 00 00 00";
    cases.push_back({"txp echoes origin and vertices a line each with values on", {"-txp", "-pr1", "net.bgr"},
                     {{"net.bgr", Network()}}, echo, 1, {}, {{"net.txp", txp.data}}});
    // a folder in the export's place is named at the open; the values still echo
    CliCase onFolder = Failing("txp onto a folder still echoes its values", {"-txp", "-pr1", "net.bgr"},
                               {{"net.bgr", Network()}, {"net.txp/keep", "k"}}, "BgrTxp dest file 'net.txp' not openable",
                               {NotWritten("net.txp")}, {{"net.txp/keep", "k"}});
    onFolder.out += echo;
    cases.push_back(onFolder);
  }
  {
    Bytes txp;
    txp.Tag(kBegin).Tag("<orgn> ---- origin ----").Double(171000.5).Double(-441000.25).Double(9).Long(1);
    txp.Tag("<vert> ---- vertex pool ----").Long(0).Tag(kEnd);
    cases.push_back({"txp0 keeps the vertex count 0 and no polygon", {"-txp0", "net.bgr"}, {{"net.bgr", Network()}},
                     "", 1, {}, {{"net.txp", txp.data}}});
  }
  {
    std::string net = BgrBuilder().Origin(1, 2).Node(1, 2, 3).End().data;
    cases.push_back(Failing("txd of a file named like its export is refused", {"-txd", "n.TXD"}, {{"n.txd", net}},
                            "BgrTxd source and destination are the same file 'n.txd'", {}, {{"n.txd", net}}));
  }
  // the values of a node cut off by the end of the file read as 0
  cases.push_back({"txd of a node cut after its tags writes zeros", {"-txd", "d.bgr"},
                   {{"d.bgr", Bytes().Tag("<bgno>").Tag("<node>").Tag("<bgno>").Tag("<vloc>").data}}, "", 1, {},
                   {{"d.txd", Bytes().Long(0).Long(1).Double(0).Double(0).Double(0).Double(0).data}}});
  return cases;
}

CLI_CASE_SUITE(ExportCli, Cases());

}  // namespace
}  // namespace bgrtest
