// Moving, deleting, merging, purging and edit scripts, run as a user runs them.
#include <gtest/gtest.h>

#include "cli/cli_case.h"
#include "support/bgr_builder.h"

namespace bgrtest {
namespace {

struct Edge {
  int a, b, code, flags, type;
};

// Nodes 0..2, moved 'north' but node 1 placed, and those of its four edges that are kept.
std::string TriangleWithEdges(std::initializer_list<int> keep, double north = 0, double east1 = 10, double north1 = 20) {
  const Edge all[] = {{0, 1, 17096, 15, 1}, {1, 0, 17096, 15, 1}, {1, 2, 16904, 1, 0}, {2, 0, 17000, 3, 1}};
  BgrBuilder b;
  b.Origin(1, 2).Node(0, 0, north).Node(east1, 1, north1).Node(-30, 0, 5 + north);
  for (int i : keep) b.Edge(all[i].a, all[i].b, all[i].code, all[i].flags, all[i].type);
  b.End();
  return b.data;
}
std::string Triangle() { return TriangleWithEdges({0, 1, 2, 3}); }

void MoveAndDelete(std::vector<CliCase>& cases) {
  cases.push_back({"mv moves all nodes north", {"-mv100:0", "a.bgr", "b.bgr"}, {{"a.bgr", Triangle()}}, "", 1, {},
                   {{"b.bgr", TriangleWithEdges({0, 1, 2, 3}, 100, 10, 120)}, {"a.bgr", Triangle()}}});
  cases.push_back({"mv with a range of one node moves south west", {"-mv-1.5:-2.5:1", "a.bgr", "b.bgr"},
                   {{"a.bgr", Triangle()}}, "", 1, {}, {{"b.bgr", TriangleWithEdges({0, 1, 2, 3}, 0, 7.5, 18.5)}}});
  {
    BgrBuilder b;
    b.Origin(0, 0).Node(1, 0, 1, true).Raw("<xtra>").Raw(std::string(1, '\0')).Node(2, 0, 2).End();
    BgrBuilder want;
    want.Origin(0, 0).Node(1, 0, 1, true).Raw("<xtra>").Raw(std::string(1, '\0')).Node(2, 0, 12).End();
    cases.push_back({"mv carries unknown tags and flow marks through", {"-mv10:0:1:1", "a.bgr", "b.bgr"},
                     {{"a.bgr", b.data}}, "", 1, {}, {{"b.bgr", want.data}}});
  }
  cases.push_back(Says(Failing("mv with a missing source leaves the destination as it was", {"-mv1", "x.bgr", "b.bgr"},
                          {{"b.bgr", Triangle()}}, "BgrMove source file 'x.bgr' not found", {NotOpened("x.bgr")},
                          {{"b.bgr", Triangle()}}), NoSuchSource("x.bgr")));
  cases.push_back(Failing("mv onto its own source under another case is refused", {"-mv1", "a.bgr", "A.BGR"},
                          {{"a.bgr", Triangle()}}, "BgrMove source and destination are the same file 'A.BGR'", {},
                          {{"a.bgr", Triangle()}}));
  // an output that can't be opened is named before the copy, which still runs through the source
  {
    BgrBuilder one;
    one.Origin(0, 0).Node(1, 0, 2).End();
    CliCase c = Failing("mv onto a folder is refused before the copy, which still echoes", {"-mv100:0", "-pr1", "a.bgr", "b.bgr"},
                        {{"a.bgr", one.data}, {"b.bgr/keep", "k"}}, "BgrMove dest file 'b.bgr' not openable",
                        {NotWritten("b.bgr")}, {{"a.bgr", one.data}, {"b.bgr/keep", "k"}});
    // the origin's bytes are dumped, the moved node's values printed
    for (int i = 0; i < 24; ++i) c.out += " 00";
    c.out += " 01 00 00 00<vloc> (0) 1.000000 0.000000 102.000000\n";
    cases.push_back(c);
  }
  {
    CliCase c = Failing("de into a missing folder still names the edges it would delete", {"-de0:1", "a.bgr", "no/b.bgr"},
                        {{"a.bgr", Triangle()}}, "BgrMove dest file 'no/b.bgr' not openable", {NotWritten("no/b.bgr")},
                        {{"a.bgr", Triangle()}}, {"no"});
    c.out += "Deleted 0 1\nDeleted 1 0\n";
    cases.push_back(c);
  }
  cases.push_back({"de deletes the edges between two nodes either way", {"-de0:1", "a.bgr", "b.bgr"},
                   {{"a.bgr", Triangle()}}, "Deleted 0 1\nDeleted 1 0\n", 1, {}, {{"b.bgr", TriangleWithEdges({2, 3})}}});
  cases.push_back({"de with one node deletes all its edges, the last one to its last byte", {"-de2", "a.bgr", "b.bgr"},
                   {{"a.bgr", Triangle()}}, "Deleted 1 2\nDeleted 2 0\n", 1, {}, {{"b.bgr", TriangleWithEdges({0, 1})}}});
  cases.push_back({"de without a value copies", {"-de", "a.bgr", "b.bgr"}, {{"a.bgr", Triangle()}}, "", 1, {},
                   {{"b.bgr", Triangle()}}});
}

std::string Destination() {
  BgrBuilder b;
  b.Origin(100, 200, 7);
  for (int i = 0; i < 5; ++i) b.Node(i, 0, -i);
  b.Edge(0, 1, 17096, 15, 1).Edge(1, 2, 17096, 15, 1).Edge(2, 3, 16904, 1, 0).Edge(3, 4, 17000, 2, 1).End();
  return b.data;
}

std::string Source() {
  BgrBuilder b;
  b.Origin(5, 6).Node(3.7, 0, -3.7, true, true).Node(10, 2, 10).Node(20, 0, 20);
  b.Edge(0, 1, 16950, 4, 1, true).Edge(2, 1, 16904, 0, 2).Edge(1, 2, 17200, 5, 0).End();
  return b.data;
}

void MergeAndPurge(std::vector<CliCase>& cases) {
  {
    BgrBuilder want;
    want.Origin(100, 200, 7);
    for (int i = 0; i < 5; ++i) want.Node(i, 0, -i);
    want.Node(3, 0, -3).Node(10, 2, 10).Node(20, 0, 20);
    want.Edge(0, 1, 17096, 15, 1).Edge(1, 2, 17096, 15, 1).Edge(2, 3, 16904, 1, 0).Edge(3, 4, 17000, 2, 1);
    want.Edge(5, 6, 16950, 4, 1).Edge(6, 7, 17200, 5, 0).End();  // the type 2 edge is dropped
    cases.push_back({"mg merges the source behind the destination", {"-mg", "s.bgr", "d.bgr"},
                     {{"s.bgr", Source()}, {"d.bgr", Destination()}}, "", 1, {},
                     {{"d.bgr", want.data}, {"s.bgr", Source()}}, {"_TEMP_.BGR"}});
  }
  cases.push_back(Says(Failing("mg with a missing source leaves the destination", {"-mg", "x.bgr", "d.bgr"},
                          {{"d.bgr", Destination()}}, "BgrMerge source file 'x.bgr' not found", {NotOpened("x.bgr")},
                          {{"d.bgr", Destination()}}, {"_TEMP_.BGR"}), NoSuchSource("x.bgr")));
  {
    BgrBuilder big, small;
    big.Origin(0, 0);
    small.Origin(0, 0);
    for (int i = 0; i < 1999; ++i) big.Node(i, 0, 0);
    for (int i = 0; i < 3; ++i) small.Node(i, 0, 1);
    big.End();
    small.End();
    // the line comes twice
    CliCase c = Failing("mg of 2001 nodes fails and changes nothing", {"-mg", "s.bgr", "d.bgr"},
                        {{"s.bgr", small.data}, {"d.bgr", big.data}}, "BgrMerge too many nodes in s.bgr",
                        {"ERROR: BgrMerge too many nodes in s.bgr"}, {{"d.bgr", big.data}}, {"_TEMP_.BGR"});
    c.out += c.out;
    cases.push_back(c);
  }
  {
    BgrBuilder in;
    in.Origin(3, 4).Node(100, 0, 100).Node(10, 7, 10).Node(13, 0, 14, true).Node(3, 0, -2).Node(50, 0, 50);
    in.Edge(1, 4, 17096, 15, 1).Edge(2, 3, 16904, 1, 0, true).Edge(4, 9, 17000, 2, 1).End();
    BgrBuilder want;
    want.Origin(3, 4).Node(0, 0, 0).Node(10, 7, 10).Node(50, 0, 50);
    want.Edge(1, 2, 17096, 15, 1).Edge(1, 0, 16904, 1, 0).Edge(2, 0, 17000, 2, 1).End();
    cases.push_back({"pg keeps used nodes joined within 5 feet in the order of the edges", {"-pg", "p.bgr"},
                     {{"p.bgr", in.data}}, "", 1, {}, {{"p.bgr", want.data}}, {"_TEMP_.BGR"}});
  }
  {
    BgrBuilder in, want;
    in.Origin(3, 4).Node(1, 1, 1).Node(2, 2, 2).End();
    want.Origin(3, 4).Node(0, 0, 0).End();
    cases.push_back({"pg of a file without edges keeps the origin node", {"-pg", "p.bgr"}, {{"p.bgr", in.data}}, "", 1,
                     {}, {{"p.bgr", want.data}}});
  }
  {
    BgrBuilder in, want;
    in.Origin(0, 0).Node(0, 0, 100).Node(5, 0, 100).Node(5.01, 0, 200).Node(0, 0, 200);
    in.Edge(0, 1, 17096, 0, 1).Edge(2, 3, 17096, 0, 1).End();
    want.Origin(0, 0).Node(0, 0, 0).Node(0, 0, 100).Node(5.01, 0, 200).Node(0, 0, 200);
    want.Edge(1, 1, 17096, 0, 1).Edge(2, 3, 17096, 0, 1).End();
    cases.push_back({"pg joins at exactly 5 feet, not at 5.01", {"-pg", "p.bgr"}, {{"p.bgr", in.data}}, "", 1, {},
                     {{"p.bgr", want.data}}});
  }
  {
    BgrBuilder in;
    in.Origin(0, 0);
    for (int i = 0; i < 12001; ++i) in.Node(i, 0, 0);
    in.Edge(0, 1, 17096, 0, 1).End();
    // the stop repeats its line on the console alone, exits 1, and no TIME line follows
    CliCase c = Failing("pg of more than 12000 nodes stops and leaves the file", {"-pg", "p.bgr"},
                        {{"p.bgr", in.data}}, "insert_double_points failed", {}, {{"p.bgr", in.data}});
    c.out += c.out;
    c.exit = 1;
    c.timeLine = false;
    cases.push_back(c);
  }
  cases.push_back(Failing("pg of the temporary file itself is refused", {"-pg", "_temp_.bgr"},
                          {{"_TEMP_.BGR", Triangle()}},
                          "BgrPurge cannot change '_temp_.bgr' in place: it is the temporary file itself", {},
                          {{"_TEMP_.BGR", Triangle()}}));
  cases.push_back(Says(Failing("pg with a missing file", {"-pg", "x.bgr"}, {}, "BgrPurge source file 'x.bgr' not found",
                          {NotOpened("x.bgr")}, {}, {"_TEMP_.BGR", "x.bgr"}), NoSuchSource("x.bgr")));
}

const std::vector<Edge> kLineEdges = {{0, 1, 17096, 15, 1}, {1, 2, 17096, 15, 1}, {2, 3, 17096, 15, 1}, {1, 4, 16904, 1, 0}};

// Nodes along z = 0 from x 0 to 300, one 3 feet off, one well away; an edit
// writes the flow mark of node 2 back as none, an alignment puts 0 and 2 on z = 0.
std::string Line(const std::vector<Edge>& edges = kLineEdges, bool edited = false, bool aligned = false) {
  BgrBuilder b;
  b.Origin(0, 0).Node(0, 0, aligned ? 0 : 0.5).Node(100, 0, 0).Node(200, 0, aligned ? 0 : 3, !edited);
  b.Node(300, 0, 0).Node(100, 0, 50);
  for (const Edge& e : edges) b.Edge(e.a, e.b, e.code, e.flags, e.type);
  return b.End().data;
}

void EditScripts(std::vector<CliCase>& cases) {
  cases.push_back({"replace-edges puts one edge in place of the chain", {"-rsfix.txt", "l.bgr"},
                   {{"l.bgr", Line()}, {"fix.txt", "comment\n<bgr-replace-edges> 0 3 5\n"}}, "", 1, {},
                   {{"l.bgr", Line({{1, 4, 16904, 1, 0}, {0, 3, 16904, 1, 0}}, true)}}, {"_TEMP_.BGR"}});
  cases.push_back({"align-nodes pulls near nodes onto the line", {"-rsfix.txt", "l.bgr"},
                   {{"l.bgr", Line()}, {"fix.txt", "<bgr-align-nodes> 0 3\n"}}, "", 1, {},
                   {{"l.bgr", Line(kLineEdges, true, true)}}});
  // 100 ft stays as it was; 25 ft becomes 50 ft: code 50 * 128 / 50 + 16840
  std::vector<Edge> wider = kLineEdges;
  wider[3].code = 16968;
  cases.push_back({"width-edges raises narrow edges, a repeated line runs once", {"-rsfix.txt", "l.bgr"},
                   {{"l.bgr", Line()}, {"fix.txt", "<bgr-width-edges> 50\n\n<BGR-WIDTH-EDGES> 50\n"}}, "", 1, {},
                   {{"l.bgr", Line(wider, true)}}});
  cases.push_back({"a script of comments leaves the file", {"-rsfix.txt", "l.bgr"},
                   {{"l.bgr", Line()}, {"fix.txt", "just words\n<bgr-unknown> 1 2\n"}}, "", 1, {},
                   {{"l.bgr", Line()}}});
  cases.push_back({"a missing script fails", {"-rsnone.txt", "l.bgr"}, {{"l.bgr", Line()}}, "", 0,
                   {"INFO: WrapFileOpen(none.txt, [00] r) failed"}, {{"l.bgr", Line()}}});
  cases.push_back(Says(Failing("an edit script on a missing file", {"-rsfix.txt", "x.bgr"},
                          {{"fix.txt", "<bgr-width-edges>\n<bgr-align-nodes> 1 2\n"}}, "Bgr source file 'x.bgr' not found",
                          {NotOpened("x.bgr")}, {}, {"_TEMP_.BGR", "x.bgr"}), NoSuchSource("x.bgr")));
}

std::vector<CliCase> Cases() {
  std::vector<CliCase> cases;
  MoveAndDelete(cases);
  MergeAndPurge(cases);
  EditScripts(cases);
  return cases;
}

CLI_CASE_SUITE(EditCli, Cases());

}  // namespace
}  // namespace bgrtest
