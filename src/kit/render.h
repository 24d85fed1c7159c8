// bgrkit render: a network, its PLY companion and its tiles drawn to scale,
// north up, as one SVG picture (or a PNG made of it).
#pragma once

#include <set>
#include <string>
#include <vector>

#include "formats/network_content.h"
#include "formats/ply_content.h"
#include "formats/tms_content.h"

namespace bgr::kit {

inline const std::set<std::string> kRenderLayers{"pave", "edmk", "cntr", "lite", "net", "ply"};

struct RenderOptions {
  std::string input;
  std::string output;
  std::set<std::string> layers = kRenderLayers;
  bool labels = false;
  int pixels = 1600;  // width of the picture
};

// What a picture is made of, each part read through the library's readers.
struct Scene {
  std::string bgrPath, plyPath, tmsPath;  // empty for a file that isn't there
  NetworkContent network;
  PlyContent ply;
  TmsContent tms;
};

// Finds the files that belong to the input and reads them; false, with the
// reason, when one of them is damaged.
bool LoadScene(const std::string& input, Scene& scene, std::string& error);
std::string DrawSvg(const Scene& scene, const RenderOptions& options);
// The whole subcommand: 0 written, 1 failed.
int Render(const RenderOptions& options);

}  // namespace bgr::kit
