// bgrkit view: a network, its PLY companion, its tiles and check's findings
// as one self-contained HTML page with a pannable, zoomable map.
#pragma once

#include <string>

#include "kit/check.h"
#include "kit/scene.h"

namespace bgr::kit {

struct ViewOptions {
  std::string input;
  std::string output;       // empty: the input's name with .html
  std::string attribution;  // a credit for the data, shown on the map
  std::string leaflet;      // the map library's folder; empty: the system's
};

// The page, with the map library's script and style sheet given.
std::string ViewPage(const Scene& scene, const Findings& findings, const ViewOptions& options,
                     const std::string& leafletJs, const std::string& leafletCss);
// The whole subcommand: 0 written, 1 failed, 2 an output that is one of the inputs.
int View(const ViewOptions& options);

}  // namespace bgr::kit
