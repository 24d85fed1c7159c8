#include "kit/png.h"

namespace bgr::kit {

// The Windows build has no cairo: it writes SVG, which every browser shows.
const char* const kPngNote = "This build writes SVG only: a PNG needs the Linux build of bgrkit.";

std::string WritePng(const std::string&, std::FILE*) {
  return "this build writes SVG only: write an .svg, or make the PNG with the Linux build of bgrkit";
}

}  // namespace bgr::kit
