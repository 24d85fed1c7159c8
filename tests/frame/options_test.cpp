#include "frame/options.h"

#include <gtest/gtest.h>

#include <vector>

namespace bgr {
namespace {

// Scans all arguments as the dispatcher does; returns how many were options.
int ScanAll(const std::vector<const char*>& args, Settings& s) {
  int i = 0;
  while (i < static_cast<int>(args.size()) && ScanOption(args[i], s)) ++i;
  return i;
}

TEST(Options, ValueScansKeepWhatDoesntScan) {
  Settings s;
  ScanAll({"-ls5"}, s);
  EXPECT_EQ(s.vmin, 5);
  EXPECT_EQ(s.vmax, -1);
  EXPECT_EQ(s.printValues, 1);
  ScanAll({"-mv1.5"}, s);
  EXPECT_EQ(s.mode, Mode::Move);
  EXPECT_DOUBLE_EQ(s.north, 1.5);
  EXPECT_DOUBLE_EQ(s.east, 0.0);
  EXPECT_EQ(s.vmin, 5);
  ScanAll({"-mv-1.5:-2.5:7:9"}, s);
  EXPECT_DOUBLE_EQ(s.east, -2.5);
  EXPECT_EQ(s.vmax, 9);
}

TEST(Options, LastModeWinsSettingsAccumulate) {
  Settings s;
  EXPECT_EQ(ScanAll({"-mv1:2", "-de3:4", "in.bgr"}, s), 2);
  EXPECT_EQ(s.mode, Mode::DeleteEdges);
  EXPECT_EQ(s.vmin, 3);
  EXPECT_EQ(s.vmax, 4);
  EXPECT_DOUBLE_EQ(s.north, 1.0);
  Settings t;
  ScanAll({"-ls", "-pr0"}, t);
  EXPECT_EQ(t.printValues, 0);
  Settings u;
  ScanAll({"-pr0", "-ls"}, u);
  EXPECT_EQ(u.printValues, 1);
  Settings v;
  ScanAll({"-prff"}, v);
  EXPECT_EQ(v.printValues, 255);
}

TEST(Options, WhichArgumentsAreOptions) {
  struct Case {
    const char* arg;
    bool taken;
  };
  const Case cases[] = {
      {"", true},     {"-", true},      {"-p", true},     {"-pr", true},  {"-t", true},
      {"-ti", true},  {"-prz", false},  {"-tix", false},  {"-mgX", true}, {"-pgfoo", true},
      {"-tm", true},  {"-tmX", false},  {"-txp", true},   {"-txp0", true}, {"-txp1", false},
      {"-txd", true}, {"-xy", false},   {"file.bgr", false}, {"-LS", false},
  };
  for (const Case& c : cases) {
    Settings s;
    EXPECT_EQ(ScanOption(c.arg, s), c.taken) << '"' << c.arg << '"';
  }
}

TEST(Options, TextNamesAndCells) {
  Settings s;
  ScanAll({"-teSCRIPT.TXT", "-ti012345"}, s);
  EXPECT_EQ(s.mode, Mode::Script);
  EXPECT_EQ(s.textName, "SCRIPT.TXT");
  EXPECT_EQ(s.refCell.column, 12);
  EXPECT_EQ(s.refCell.band, 345);
  Settings t;
  ScanAll({"-txp0", "-txp"}, t);
  EXPECT_EQ(t.mode, Mode::TxpExport);
  EXPECT_EQ(t.txpLevel, 0);
}

}  // namespace
}  // namespace bgr
