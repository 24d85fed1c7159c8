// The description of an airport's picture that render and view both draw: the
// files read, then every layer with its style, legend text and shapes in feet,
// in drawing order, so that a still picture and the page agree.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "formats/network_content.h"
#include "formats/ply_content.h"
#include "formats/tms_content.h"

namespace bgr::kit {

// The files of one airport, each read through the library's readers.
struct Scene {
  std::string bgrPath, plyPath, tmsPath;  // empty for a file that isn't there
  NetworkContent network;
  PlyContent ply;
  TmsContent tms;
  std::vector<std::string> warnings;  // the files read, but something about them misleads
  std::vector<std::string> plyNames;  // each apron's name, from its PLY line
};

// Finds the files that belong to the input and reads them; false, with the
// reason, when one of them can't be read or is damaged.
bool LoadScene(const std::string& input, Scene& scene, std::string& error);

struct ScenePoint {
  double x = 0, z = 0;  // feet east and north of the origin
};

// How a layer's shapes are drawn.
enum class Paint {
  kFill,     // closed areas
  kStroke,   // lines of the shape's own width in feet, at least a pixel
  kLine,     // lines of a width in pixels
  kLights,   // a dot every step along the line
  kOutline,  // the tile grid: squares with their index
};

struct SceneShape {
  std::vector<ScenePoint> points;
  double width = 0;          // feet, for kStroke
  double step = 0;           // feet between lights
  std::int64_t object = -1;  // edge number, apron number from 1, light line, tile x * 8 + z
};

struct SceneLayer {
  std::string id;     // unique: runway, taxiway, apron, pave, lite-3, grid...
  std::string group;  // what render's --layers names: net, ply, pave, edmk, cntr, lite, grid
  std::string label;  // the legend's text
  std::string colour;
  Paint paint = Paint::kFill;
  double opacity = 1;
  double pixels = 1;  // line width or dot size in pixels
  std::vector<SceneShape> shapes;
};

// A point's number, shown from a scale on: at 2^level pixels to the foot and
// finer it collides with no label shown before it.
struct SceneLabel {
  std::int32_t point = 0;
  ScenePoint at;
  int level = 0;
};

struct SceneDescription {
  std::vector<SceneLayer> layers;  // bottom first, each with shapes
  std::vector<SceneLabel> labels;
  double west = 0, south = 0, east = 0, north = 0;  // all the shapes, in feet
  double latitude = 0, longitude = 0;               // the origin, degrees, west negative
  double feetPerDegreeNorth = 0, feetPerDegreeEast = 0;
};

inline constexpr int kLeastLabelLevel = -10, kMostLabelLevel = 4;
inline constexpr double kLabelPixels = 11;  // font size of a label

SceneDescription DescribeScene(const Scene& scene);

// Writes a file under a part name and puts it in place; 'write' gives why it
// failed, or nothing. A failure is said on standard error in the command's
// name, with the file and the system's reason.
bool WriteOutput(const std::string& command, const std::string& path,
                 const std::function<std::string(std::FILE*)>& write);
// Longitude in arc-seconds, 0 to the full circle, as degrees with west negative.
double SignedDegrees(double longitudeSeconds);
// What bgrtool's listing shows of an edge's record, in one line.
std::string DescribeEdge(const NetworkContent& network, std::size_t edge);

}  // namespace bgr::kit
