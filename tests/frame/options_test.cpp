#include "frame/options.h"

#include <gtest/gtest.h>

namespace bgr {
namespace {

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
