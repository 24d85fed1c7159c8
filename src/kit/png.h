// bgrkit render's PNG: the SVG picture rasterised, where the build can do it.
// The build picks one source: png_cairo.cpp (librsvg on cairo) or png_none.cpp.
#pragma once

#include <cstdio>
#include <string>

namespace bgr::kit {

// What the help says about PNG pictures on this build.
extern const char* const kPngNote;
// Draws the SVG into a PNG stream; empty when done, else why not.
std::string WritePng(const std::string& svg, std::FILE* out);

}  // namespace bgr::kit
