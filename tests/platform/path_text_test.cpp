#include "platform/path_text.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

struct ExtensionCase {
  std::string name, ext, expected;
};

TEST(PathText, SetExtensionKeepsTheSystemsQuirks) {
  const ExtensionCase cases[] = {
      {"A.BGR", "TMS", "A.TMS"},
      {"NAME", "PLY", "NAME.PLY"},
      {"DATA.OLD\\NAME", "TMS", "DATA.TMS"},  // the dot search doesn't stop at a folder
      {".bgr", "TMS", ".bgr.TMS"},            // a dot in the first place isn't found
      {"a.b.c", "x", "a.b.x"},
  };
  for (const auto& c : cases) {
    std::string name = c.name;
    SetExtension(name, c.ext);
    EXPECT_EQ(name, c.expected) << c.name;
  }
}

}  // namespace
}  // namespace platform
