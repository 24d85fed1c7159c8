#include "kit/scene.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <unordered_map>

#include "formats/edge_kinds.h"
#include "formats/working_units.h"
#include "frame/file_access.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "geometry/planar.h"
#include "platform/platform.h"
#include "script/script_network.h"

namespace bgr::kit {
namespace {

constexpr double kFullCircle = 1296000.0;  // arc-seconds
// -tm writes the tiles just before the repaired network: a BGR this much newer
// than its tiles was changed after them
constexpr double kStaleSeconds = 5.0;
constexpr double kFarFeet = 1e9;  // far beyond the working range: such a point gets no label
constexpr std::int32_t kMostDrawnLights = 4096;  // of one PLY string: more would be one line of dots
constexpr const char* kLightColours[] = {"#1e64c8", "#00a050", "#d02020", "#008080", "#7040c0", "#a05000"};

// Why a file can't be read, in the system's words.
std::string Unreadable(const std::string& path) {
  switch (platform::KindOf(path)) {
    case platform::PathKind::kDirectory: return "cannot read '" + path + "': it is a folder";
    case platform::PathKind::kOther:
    case platform::PathKind::kDevice: return "cannot read '" + path + "': it is not a regular file";
    default: break;
  }
  errno = 0;
  std::FILE* f = std::fopen(path.c_str(), "rb");
  int reason = errno;
  if (f) {
    std::fclose(f);
    return "";
  }
  return "cannot read '" + path + "': " + (reason ? std::strerror(reason) : "it does not open");
}

bool IsPaintedOnly(const EdgeRecord& e) { return IsYellowLine(e.type, e.flags); }

// The TMS beside a network may have been made of another state of it.
void CheckTilesAgainstNetwork(Scene& s) {
  if (s.bgrPath.empty() || s.tmsPath.empty()) return;
  std::error_code e1, e2;
  auto bgrTime = std::filesystem::last_write_time(s.bgrPath, e1);
  auto tmsTime = std::filesystem::last_write_time(s.tmsPath, e2);
  if (!e1 && !e2 && bgrTime - tmsTime > std::chrono::duration<double>(kStaleSeconds))
    s.warnings.push_back("'" + s.tmsPath + "' is older than '" + s.bgrPath +
                         "': the tiles may show the network as it was; run bgrtool -tm again");
  if (s.tms.origin.latitude != s.network.origin.latitude || s.tms.origin.longitude != s.network.origin.longitude)
    s.warnings.push_back("'" + s.tmsPath + "' has another origin than '" + s.bgrPath + "': the two don't belong together");
  // the points that no edge uses don't count: -tm lays nothing there
  const NetworkContent& n = s.network;
  double side = s.tms.tileFeet * kTmsGrid;
  std::set<std::int32_t> outside;
  for (const EdgeRecord& e : n.edges)
    for (std::int32_t q : {e.from, e.to}) {
      if (!n.HasNode(q)) continue;
      const NodeRecord& p = n.Node(q);
      if (p.x < s.tms.lowl[0] || p.x > s.tms.lowl[0] + side || p.z < s.tms.lowl[2] || p.z > s.tms.lowl[2] + side)
        outside.insert(q);
    }
  if (!outside.empty())
    s.warnings.push_back("the grid of '" + s.tmsPath + "' doesn't cover the network: " + std::to_string(outside.size()) +
                         " of the points its edges use lie outside it, the first point " +
                         std::to_string(*outside.begin()));
}

// Names from the PLY lines, one a polygon as the reader cuts them.
std::vector<std::string> ApronNames(const PlyContent& ply) {
  std::vector<std::string> names;
  int corners = 0;
  for (const std::string& line : ply.lines) {
    if (line.rfind("EXI", 0) == 0) break;
    long x, z;
    if (std::sscanf(line.c_str(), "POI %ld %ld", &x, &z) == 2) {
      if (++corners == 255) {  // the reader ends a polygon there, without a name
        names.emplace_back();
        corners = 0;
      }
    } else if (line.rfind("PLY ", 0) == 0) {
      if (corners == 0) break;  // the readers stop at a PLY line with no corners
      std::string name = line.substr(4);
      if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
      names.push_back(name);
      corners = 0;
    }
  }
  names.resize(ply.polygons.size());
  return names;
}

class Describer {
 public:
  explicit Describer(const Scene& s) : s_(s) {}
  SceneDescription Make();

 private:
  const Scene& s_;
  SceneDescription d_;

  SceneLayer& Add(std::string id, const char* group, std::string label, const char* colour, Paint paint,
                  double opacity = 1, double pixels = 1) {
    SceneLayer l;
    l.id = std::move(id);
    l.group = group;
    l.label = std::move(label);
    l.colour = colour;
    l.paint = paint;
    l.opacity = opacity;
    l.pixels = pixels;
    d_.layers.push_back(std::move(l));
    return d_.layers.back();
  }
  void Grid();
  void Tiles();
  void Network();
  void Labels();
};

void Describer::Grid() {
  if (!s_.tms.read) return;
  SceneLayer& grid = Add("grid", "grid", "tile grid, with each tile's x,z index", "#4a6fa5", Paint::kOutline, 1, 1);
  double side = s_.tms.tileFeet;
  for (int x = 0; x < kTmsGrid; ++x)
    for (int z = 0; z < kTmsGrid; ++z) {
      double left = s_.tms.lowl[0] + x * side, low = s_.tms.lowl[2] + z * side;
      grid.shapes.push_back({{{left, low}, {left + side, low}, {left + side, low + side}, {left, low + side}},
                             0, 0, x * kTmsGrid + z});
    }
}

void Describer::Tiles() {
  if (!s_.tms.read) return;
  struct Section {
    const char* id;
    const char* label;
    const char* colour;
  } sections[] = {{"pave", "pavement (tiles)", "#8f8f8f"},
                  {"edmk", "edge marks (tiles)", "#ffffff"},
                  {"cntr", "centre lines (tiles)", "#e0b000"}};
  for (int section = 0; section < 3; ++section) {
    SceneLayer& layer = Add(sections[section].id, sections[section].id, sections[section].label,
                            sections[section].colour, Paint::kFill);
    for (int x = 0; x < kTmsGrid; ++x)
      for (int z = 0; z < kTmsGrid; ++z)
        for (const TmsShape& shape :
             s_.tms.tiles[static_cast<std::size_t>(x)][static_cast<std::size_t>(z)][static_cast<std::size_t>(section)]) {
          SceneShape out{{}, 0, 0, x * kTmsGrid + z};
          for (auto [px, pz] : shape.corners) out.points.push_back({UnitsToFeet(px), UnitsToFeet(pz)});
          layer.shapes.push_back(std::move(out));
        }
  }
  // one layer a light type, each in its own colour
  std::map<std::int32_t, std::vector<SceneShape>> byType;
  for (int x = 0; x < kTmsGrid; ++x)
    for (int z = 0; z < kTmsGrid; ++z)
      for (const TmsShape& shape : s_.tms.tiles[static_cast<std::size_t>(x)][static_cast<std::size_t>(z)][3]) {
        SceneShape out{{}, 0, shape.lightStep, x * kTmsGrid + z};
        for (auto [px, pz] : shape.corners) out.points.push_back({UnitsToFeet(px), UnitsToFeet(pz)});
        byType[shape.lightType].push_back(std::move(out));
      }
  std::size_t k = 0;
  for (auto& [type, shapes] : byType) {
    SceneLayer& layer = Add("lite-" + std::to_string(type), "lite", "lights (tiles), type " + std::to_string(type),
                            kLightColours[k++ % std::size(kLightColours)], Paint::kLights, 1, 4);
    layer.shapes = std::move(shapes);
  }
}

void Describer::Network() {
  if (!s_.plyPath.empty()) {
    SceneLayer& aprons = Add("apron", "ply", "apron (PLY)", "#c8b48c", Paint::kFill, 0.6);
    std::int64_t k = 0;
    for (const auto& apron : s_.ply.polygons) {
      SceneShape out{{}, 0, 0, ++k};
      for (const TEXPOINT& p : apron) out.points.push_back({static_cast<double>(p.x), static_cast<double>(p.z)});
      aprons.shapes.push_back(std::move(out));
    }
  }
  if (!s_.bgrPath.empty()) {
    const NetworkContent& n = s_.network;
    std::size_t first = d_.layers.size();
    Add("runway", "net", "runway", "#3c3c3c", Paint::kStroke, 0.5);
    Add("taxiway", "net", "taxiway", "#6e6e6e", Paint::kStroke, 0.5);
    Add("paint", "net", "painted line (taxiway of flags 2 alone)", "#e07000", Paint::kLine, 1, 2);
    Add("centre", "net", "centre line (edge flag 2)", "#ffd400", Paint::kLine, 1, 1);
    auto& runways = d_.layers[first].shapes;
    auto& taxiways = d_.layers[first + 1].shapes;
    auto& painted = d_.layers[first + 2].shapes;
    auto& centres = d_.layers[first + 3].shapes;
    for (std::size_t i = 0; i < n.edges.size(); ++i) {
      const EdgeRecord& e = n.edges[i];
      if (!n.HasNode(e.from) || !n.HasNode(e.to)) continue;
      const NodeRecord &a = n.Node(e.from), &b = n.Node(e.to);
      SceneShape line{{{a.x, a.z}, {b.x, b.z}}, static_cast<double>(std::max(1, e.width)), 0, static_cast<std::int64_t>(i)};
      if (IsPaintedOnly(e)) {
        painted.push_back(line);  // -tm paints it and lays no pavement
        continue;
      }
      if (EdgeFlags(e.flags) & kPaintedLine) centres.push_back(line);
      (e.type == kRunway ? runways : taxiways).push_back(std::move(line));
    }
  }
  if (!s_.plyPath.empty()) {
    SceneLayer& lights = Add("plylight", "ply", "light (PLY)", "#c000c0", Paint::kLights, 1, 4);
    std::int64_t k = 0;
    for (const PlyLight& l : s_.ply.lights) {
      // the lights of a string spread evenly from its first point to its last
      std::int32_t count = std::clamp(l.count, 1, kMostDrawnLights);
      SceneShape dots{{}, 0, 0, ++k};
      for (std::int32_t i = 0; i < count; ++i) {
        double t = count > 1 ? static_cast<double>(i) / (count - 1) : 0.0;
        dots.points.push_back({l.x1 + (static_cast<double>(l.x2) - l.x1) * t, l.z1 + (static_cast<double>(l.z2) - l.z1) * t});
      }
      if (count > 1) dots.step = std::hypot(static_cast<double>(l.x2) - l.x1, static_cast<double>(l.z2) - l.z1) / (count - 1);
      lights.shapes.push_back(std::move(dots));
    }
  }
  if (!s_.bgrPath.empty()) {
    SceneLayer& origin = Add("origin", "net", "origin", "#c00000", Paint::kLine, 1, 2);
    origin.shapes.push_back({{{0, 0}}, 0, 0, 0});
  }
}

// Greedy, from the coarsest scale to the finest: a label that fits among those
// placed keeps its place at every finer scale, where all boxes shrink toward
// their points.
void Describer::Labels() {
  const NetworkContent& n = s_.network;
  if (s_.bgrPath.empty() || n.nodes.empty()) return;
  std::vector<char> used(n.nodes.size(), 0);
  for (const EdgeRecord& e : n.edges)
    for (std::int32_t p : {e.from, e.to})
      if (n.HasNode(p)) used[static_cast<std::size_t>(p)] = 1;
  std::vector<std::int32_t> order;
  for (int pass = 1; pass >= 0; --pass)  // the points that edges use first
    for (std::size_t i = 0; i < n.nodes.size(); ++i)
      if (used[i] == pass && std::fabs(n.nodes[i].x) < kFarFeet && std::fabs(n.nodes[i].z) < kFarFeet)
        order.push_back(static_cast<std::int32_t>(i));
  auto widthPx = [](std::int32_t p) { return (std::to_string(p).size() * 0.6 + 0.4) * kLabelPixels; };
  std::vector<int> level(n.nodes.size(), kMostLabelLevel + 1);
  std::vector<std::int32_t> placed;
  for (int l = kLeastLabelLevel; l <= kMostLabelLevel; ++l) {
    double scale = std::ldexp(1.0, l);  // pixels to the foot
    double cell = 8 * kLabelPixels / scale;
    std::unordered_map<std::int64_t, std::vector<std::int32_t>> grid;
    auto key = [](double column, double row) {  // cells of points within kFarFeet fit 32 bits
      return (static_cast<std::int64_t>(column) << 32) ^ (static_cast<std::int64_t>(row) & 0xffffffff);
    };
    auto box = [&](std::int32_t p, double& x0, double& z0, double& x1, double& z1) {
      const NodeRecord& q = n.Node(p);
      x0 = q.x + 2 / scale;
      z0 = q.z + 2 / scale;
      x1 = x0 + widthPx(p) / scale;
      z1 = z0 + kLabelPixels / scale;
    };
    auto insert = [&](std::int32_t p) {
      double x0, z0, x1, z1;
      box(p, x0, z0, x1, z1);
      for (double x = std::floor(x0 / cell); x <= std::floor(x1 / cell); ++x)
        for (double z = std::floor(z0 / cell); z <= std::floor(z1 / cell); ++z) grid[key(x, z)].push_back(p);
    };
    for (std::int32_t p : placed) insert(p);
    for (std::int32_t p : order) {
      if (level[static_cast<std::size_t>(p)] <= kMostLabelLevel) continue;
      double x0, z0, x1, z1;
      box(p, x0, z0, x1, z1);
      bool free = true;
      for (double x = std::floor(x0 / cell); free && x <= std::floor(x1 / cell); ++x)
        for (double z = std::floor(z0 / cell); free && z <= std::floor(z1 / cell); ++z) {
          auto it = grid.find(key(x, z));
          if (it == grid.end()) continue;
          for (std::int32_t q : it->second) {
            double a0, c0, a1, c1;
            box(q, a0, c0, a1, c1);
            if (a0 < x1 && x0 < a1 && c0 < z1 && z0 < c1) {
              free = false;
              break;
            }
          }
        }
      if (!free) continue;
      level[static_cast<std::size_t>(p)] = l;
      placed.push_back(p);
      insert(p);
    }
  }
  for (std::int32_t p : placed) d_.labels.push_back({p, {n.Node(p).x, n.Node(p).z}, level[static_cast<std::size_t>(p)]});
}

SceneDescription Describer::Make() {
  Grid();
  Tiles();
  Network();
  // the aprons lie under all pavement, just over the grid
  auto apron = std::find_if(d_.layers.begin(), d_.layers.end(), [](const SceneLayer& l) { return l.id == "apron"; });
  if (apron != d_.layers.end()) std::rotate(d_.layers.begin() + (s_.tms.read ? 1 : 0), apron, apron + 1);
  // a legend lists only what is drawn
  std::erase_if(d_.layers, [](const SceneLayer& l) { return l.shapes.empty(); });
  Labels();
  double w = HUGE_VAL, s = HUGE_VAL, e = -HUGE_VAL, nn = -HUGE_VAL;
  for (const SceneLayer& l : d_.layers)
    for (const SceneShape& shape : l.shapes)
      for (const ScenePoint& p : shape.points) {
        if (!std::isfinite(p.x) || !std::isfinite(p.z)) continue;
        w = std::min(w, p.x);
        e = std::max(e, p.x);
        s = std::min(s, p.z);
        nn = std::max(nn, p.z);
      }
  if (w > e) w = e = s = nn = 0;
  d_.west = w;
  d_.east = e;
  d_.south = s;
  d_.north = nn;
  const OriginRecord& o = s_.bgrPath.empty() ? s_.tms.origin : s_.network.origin;
  d_.latitude = o.latitude / 3600.0;
  d_.longitude = SignedDegrees(o.longitude);
  d_.feetPerDegreeNorth = NorthFeet(o.latitude, o.longitude, o.latitude + 3600, o.longitude, kEquatorFeet, kMeridianFeet);
  d_.feetPerDegreeEast = EastFeet(o.latitude, o.longitude, o.latitude, o.longitude + 3600, kEquatorFeet, kMeridianFeet);
  return std::move(d_);
}

}  // namespace

double SignedDegrees(double longitudeSeconds) {
  double v = std::fmod(longitudeSeconds, kFullCircle);
  if (v > kFullCircle / 2) v -= kFullCircle;
  if (v < -kFullCircle / 2) v += kFullCircle;
  return v / 3600.0;
}

std::string DescribeEdge(const NetworkContent& n, std::size_t i) {
  const EdgeRecord& e = n.edges[i];
  char text[160];
  std::snprintf(text, sizeof text, "edge %llu: points %d-%d, <thck> %d %dft sp=%02X, <type> %d (%s)",
                static_cast<unsigned long long>(i), e.from, e.to,
                e.packed, e.width, static_cast<unsigned>(e.flags), e.type,
                e.type == kRunway ? "runway" : e.type == kTaxiway ? "taxiway" : "unknown type");
  return text;
}

bool LoadScene(const std::string& input, Scene& scene, std::string& error) {
  error = Unreadable(input);
  if (!error.empty()) return false;
  QuietRun run;
  std::string bgr = input, ply, tms = input;
  bool fromTiles = HasExtension(input, "TMS");
  if (fromTiles) SetExtension(bgr, "BGR");
  else SetExtension(tms, "TMS");
  ply = bgr;
  SetExtension(ply, "PLY");
  if (FileExists(run.ctx, bgr)) scene.bgrPath = bgr;
  if (FileExists(run.ctx, tms)) scene.tmsPath = tms;
  if (FileExists(run.ctx, ply)) scene.plyPath = ply;
  if (!scene.bgrPath.empty()) {
    scene.network = ReadNetworkContent(run.ctx, scene.bgrPath);
    if (!scene.network.read) {
      error = "'" + scene.bgrPath + "' is no BGR network";
      return false;
    }
    if (!scene.network.complete) {
      error = "'" + scene.bgrPath + "' is damaged: its records stop at byte " +
              std::to_string(scene.network.stoppedAt) + " of " + std::to_string(scene.network.length);
      return false;
    }
  }
  if (!scene.tmsPath.empty()) {
    scene.tms = ReadTmsContent(run.ctx, scene.tmsPath);
    if (!scene.tms.read) {
      error = "'" + scene.tmsPath + "' is no TMS file";
      return false;
    }
    if (!scene.tms.complete) {
      error = "'" + scene.tmsPath + "' is damaged: " + std::to_string(scene.tms.tilesRead) +
              " of 64 tiles read, in order, to the file's end";
      return false;
    }
  }
  if (!scene.plyPath.empty()) {
    scene.ply = ReadPlyContent(scene.plyPath);
    scene.plyNames = ApronNames(scene.ply);
  }
  CheckTilesAgainstNetwork(scene);
  return true;
}

SceneDescription DescribeScene(const Scene& scene) { return Describer(scene).Make(); }

bool WriteOutput(const std::string& command, const std::string& path,
                 const std::function<std::string(std::FILE*)>& write) {
  QuietRun run;
  OutputFile out;
  errno = 0;
  if (!out.Open(run.ctx, path)) {
    int reason = errno;
    std::cerr << command << ": cannot write '" << path << "': " << (reason ? std::strerror(reason) : "it does not open")
              << "\n";
    return false;
  }
  std::string error = write(out.get());
  if (out.Finish(run.ctx, error.empty(), command)) return true;
  if (error.empty()) {
    // the library's line names the file and the reason: "... cannot write 'X': why"
    std::string said = run.console.Take();
    auto at = said.find("cannot write");
    error = at == std::string::npos ? "it could not be written" : said.substr(at + 13);
    while (!error.empty() && error.back() == '\n') error.pop_back();
    std::cerr << command << ": cannot write " << error << "\n";
  } else {
    std::cerr << command << ": " << error << "\n";
  }
  return false;
}

}  // namespace bgr::kit
