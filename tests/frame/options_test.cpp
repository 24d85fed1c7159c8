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

}  // namespace
}  // namespace bgr
