// bgrkit render: a network, its PLY companion and its tiles drawn to scale,
// north up, as one SVG picture (or a PNG made of it).
#pragma once

#include <set>
#include <string>
#include <vector>

#include "kit/scene.h"

namespace bgr::kit {

inline const std::set<std::string> kRenderLayers{"pave", "edmk", "cntr", "lite", "net", "ply", "grid"};

struct RenderOptions {
  std::string input;
  std::string output;
  std::set<std::string> layers = kRenderLayers;
  bool labels = false;
  int pixels = 1600;  // width of the picture
};

std::string DrawSvg(const Scene& scene, const RenderOptions& options);
// The whole subcommand: 0 written, 1 failed, 2 a picture of no known kind.
int Render(const RenderOptions& options);

}  // namespace bgr::kit
