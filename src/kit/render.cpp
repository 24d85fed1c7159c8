#include "kit/render.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <sstream>

#include "formats/edge_kinds.h"
#include "formats/working_units.h"
#include "frame/file_access.h"
#include "frame/text.h"
#include "kit/kit.h"
#include "kit/png.h"

namespace bgr::kit {
namespace {


struct Layer {
  const char* id;
  const char* label;
  const char* colour;
};
constexpr Layer kPave{"pave", "pavement (tiles)", "#8f8f8f"};
constexpr Layer kEdmk{"edmk", "edge marks (tiles)", "#ffffff"};
constexpr Layer kCntr{"cntr", "centre lines (tiles)", "#e0b000"};
constexpr Layer kLite{"lite", "lights (tiles)", "#1e64c8"};
constexpr Layer kRunway{"net", "runway", "#3c3c3c"};
constexpr Layer kTaxiway{"net", "taxiway", "#6e6e6e"};
constexpr Layer kApron{"ply", "apron (PLY)", "#c8b48c"};
constexpr Layer kPlyLight{"ply", "light (PLY)", "#00a050"};
constexpr const char* kGridColour = "#4a6fa5";
constexpr const char* kLightColours[] = {"#1e64c8", "#00a050", "#d02020", "#e0b000"};

// Shortest text that reads back as the same double.
std::string Num(double v) {
  if (v == 0) v = 0;  // no "-0"
  char text[32];
  auto r = std::to_chars(text, text + sizeof text, v);
  return std::string(text, r.ptr);
}

std::string Degrees(double arcSeconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6f", arcSeconds / 3600.0);
  return text;
}

std::string Escape(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default:
        // control bytes are not allowed in XML at all
        out += static_cast<unsigned char>(c) < 0x20 ? '?' : c;
    }
  }
  return out;
}

struct Box {
  double x0 = HUGE_VAL, z0 = HUGE_VAL, x1 = -HUGE_VAL, z1 = -HUGE_VAL;
  void Add(double x, double z) {
    if (!std::isfinite(x) || !std::isfinite(z)) return;
    x0 = std::min(x0, x);
    z0 = std::min(z0, z);
    x1 = std::max(x1, x);
    z1 = std::max(z1, z);
  }
  bool empty() const { return x0 > x1; }
};

// A number of 1, 2 or 5 times a power of ten, near a fifth of the span.
double ScaleBarFeet(double span) {
  double target = span / 5;
  double power = std::pow(10.0, std::floor(std::log10(std::max(target, 1.0))));
  for (double step : {5.0, 2.0, 1.0})
    if (step * power <= target) return step * power;
  return power;
}

class SvgWriter {
 public:
  SvgWriter(const Scene& scene, const RenderOptions& options) : s_(scene), o_(options) {}
  std::string Draw();

 private:
  const Scene& s_;
  const RenderOptions& o_;
  std::ostringstream out_;
  double font_ = 10;

  bool On(const char* layer) const { return o_.layers.count(layer) > 0; }
  static std::string Pt(double x, double z) { return Num(x) + "," + Num(-z); }
  Box Bounds() const;
  void Tiles();
  void Grid();
  void Ply();
  void Network();
  void Legend(double left, double top, double width);
};

Box SvgWriter::Bounds() const {
  Box box;
  const NetworkContent& n = s_.network;
  if (On("net")) {
    for (const NodeRecord& p : n.nodes) box.Add(p.x, p.z);
    box.Add(0, 0);
  }
  if (On("ply")) {
    for (const auto& a : s_.ply.polygons)
      for (const TEXPOINT& p : a) box.Add(p.x, p.z);
    for (const PlyLight& l : s_.ply.lights) {
      box.Add(l.x1, l.z1);
      box.Add(l.x2, l.z2);
    }
  }
  if (s_.tms.read) {
    double side = s_.tms.tileFeet * 8.0;
    box.Add(s_.tms.lowl[0], s_.tms.lowl[2]);
    box.Add(s_.tms.lowl[0] + side, s_.tms.lowl[2] + side);
    for (const auto& column : s_.tms.tiles)
      for (const auto& tile : column)
        for (const auto& section : tile)
          for (const TmsShape& shape : section)
            for (auto [x, z] : shape.corners) box.Add(UnitsToFeet(x), UnitsToFeet(z));
  }
  if (box.empty()) box.Add(0, 0);
  return box;
}

void SvgWriter::Tiles() {
  if (!s_.tms.read) return;
  const Layer* layers[] = {&kPave, &kEdmk, &kCntr};
  for (int section = 0; section < 3; ++section) {
    if (!On(layers[section]->id)) continue;
    out_ << "<g id=\"" << layers[section]->id << "\" fill=\"" << layers[section]->colour << "\" stroke=\"none\">\n";
    for (int x = 0; x < kTmsGrid; ++x)
      for (int z = 0; z < kTmsGrid; ++z)
        for (const TmsShape& shape : s_.tms.tiles[static_cast<std::size_t>(x)][static_cast<std::size_t>(z)]
                                               [static_cast<std::size_t>(section)]) {
          out_ << "<polygon data-tile=\"" << x << "," << z << "\" points=\"";
          for (std::size_t i = 0; i < shape.corners.size(); ++i)
            out_ << (i ? " " : "") << Pt(UnitsToFeet(shape.corners[i].first), UnitsToFeet(shape.corners[i].second));
          out_ << "\"/>\n";
        }
    out_ << "</g>\n";
  }
  if (!On("lite")) return;
  out_ << "<g id=\"lite\" fill=\"none\" stroke-linecap=\"round\" stroke-width=\"" << Num(font_ / 4) << "\">\n";
  for (int x = 0; x < kTmsGrid; ++x)
    for (int z = 0; z < kTmsGrid; ++z)
      for (const TmsShape& shape : s_.tms.tiles[static_cast<std::size_t>(x)][static_cast<std::size_t>(z)][3]) {
        // a dot every step along the string
        double step = shape.lightStep > 0 ? shape.lightStep : 100.0;
        out_ << "<polyline data-tile=\"" << x << "," << z << "\" data-type=\"" << shape.lightType << "\" stroke=\""
             << kLightColours[static_cast<unsigned>(shape.lightType) % 4] << "\" stroke-dasharray=\"0 " << Num(step)
             << "\" points=\"";
        for (std::size_t i = 0; i < shape.corners.size(); ++i)
          out_ << (i ? " " : "") << Pt(UnitsToFeet(shape.corners[i].first), UnitsToFeet(shape.corners[i].second));
        out_ << "\"/>\n";
      }
  out_ << "</g>\n";
}

void SvgWriter::Grid() {
  if (!s_.tms.read) return;
  double side = s_.tms.tileFeet;
  out_ << "<g id=\"grid\" fill=\"none\" stroke=\"" << kGridColour << "\" stroke-width=\"" << Num(font_ / 8)
       << "\" font-size=\"" << Num(font_) << "\" font-family=\"sans-serif\">\n";
  for (int x = 0; x < kTmsGrid; ++x)
    for (int z = 0; z < kTmsGrid; ++z) {
      double left = s_.tms.lowl[0] + x * side, low = s_.tms.lowl[2] + z * side;
      out_ << "<rect x=\"" << Num(left) << "\" y=\"" << Num(-(low + side)) << "\" width=\"" << Num(side)
           << "\" height=\"" << Num(side) << "\"/>\n";
      out_ << "<text x=\"" << Num(left + font_ / 2) << "\" y=\"" << Num(-(low + side) + font_ * 1.2)
           << "\" fill=\"" << kGridColour << "\" stroke=\"none\">" << x << "," << z << "</text>\n";
    }
  out_ << "</g>\n";
}

void SvgWriter::Ply() {
  if (!On("ply") || s_.plyPath.empty()) return;
  out_ << "<g id=\"ply\">\n";
  for (const auto& apron : s_.ply.polygons) {
    out_ << "<polygon fill=\"" << kApron.colour << "\" fill-opacity=\"0.6\" stroke=\"#7a6f5a\" stroke-width=\""
         << Num(font_ / 8) << "\" points=\"";
    for (std::size_t i = 0; i < apron.size(); ++i) out_ << (i ? " " : "") << Pt(apron[i].x, apron[i].z);
    out_ << "\"/>\n";
  }
  for (const PlyLight& l : s_.ply.lights) {
    out_ << "<polyline data-kind=\"" << l.kind << "\" fill=\"none\" stroke=\"" << kPlyLight.colour
         << "\" stroke-linecap=\"round\" stroke-width=\"" << Num(font_ / 4) << "\" stroke-dasharray=\"0 100\" points=\""
         << Pt(l.x1, l.z1) << " " << Pt(l.x2, l.z2) << "\"/>\n";
  }
  out_ << "</g>\n";
}

void SvgWriter::Network() {
  if (!On("net") || s_.bgrPath.empty()) return;
  const NetworkContent& n = s_.network;
  out_ << "<g id=\"net\" stroke-linecap=\"round\" fill=\"none\">\n";
  // runways under taxiways, painted lines on top
  for (int pass = 0; pass < 3; ++pass) {
    for (std::size_t i = 0; i < n.edges.size(); ++i) {
      const EdgeRecord& e = n.edges[i];
      if (!n.HasNode(e.from) || !n.HasNode(e.to)) continue;
      const NodeRecord &a = n.Node(e.from), &b = n.Node(e.to);
      std::int32_t flags = EdgeFlags(e.flags);
      const char* colour;
      double width;
      if (pass == 2) {
        if ((flags & kPaintedLine) == 0) continue;
        colour = kCntr.colour;
        width = std::max(1.0, font_ / 10);
      } else {
        if ((pass == 0) != (e.type == bgr::kRunway)) continue;
        colour = e.type == bgr::kRunway ? kRunway.colour : kTaxiway.colour;
        width = std::max(1, e.width);
      }
      out_ << "<line data-edge=\"" << i << "\" x1=\"" << Num(a.x) << "\" y1=\"" << Num(-a.z) << "\" x2=\"" << Num(b.x)
           << "\" y2=\"" << Num(-b.z) << "\" stroke=\"" << colour << "\" stroke-width=\"" << Num(width) << "\""
           << (pass == 2 ? "" : " stroke-opacity=\"0.5\"") << "/>\n";
    }
  }
  if (o_.labels) {
    out_ << "<g font-size=\"" << Num(font_) << "\" font-family=\"sans-serif\" fill=\"#000000\">\n";
    for (std::size_t i = 0; i < n.nodes.size(); ++i)
      out_ << "<text x=\"" << Num(n.nodes[i].x) << "\" y=\"" << Num(-n.nodes[i].z) << "\">" << i << "</text>\n";
    out_ << "</g>\n";
  }
  double r = font_;
  out_ << "<g id=\"origin\" stroke=\"#c00000\" stroke-width=\"" << Num(font_ / 6) << "\">"
       << "<line x1=\"" << Num(-r) << "\" y1=\"0\" x2=\"" << Num(r) << "\" y2=\"0\"/>"
       << "<line x1=\"0\" y1=\"" << Num(-r) << "\" x2=\"0\" y2=\"" << Num(r) << "\"/>"
       << "<text x=\"" << Num(r) << "\" y=\"" << Num(-r) << "\" stroke=\"none\" fill=\"#c00000\" font-size=\""
       << Num(font_) << "\" font-family=\"sans-serif\">origin " << Degrees(n.origin.latitude) << " "
       << Degrees(n.origin.longitude) << "</text></g>\n";
  out_ << "</g>\n";
}

void SvgWriter::Legend(double left, double top, double width) {
  out_ << "<g id=\"legend\" font-size=\"" << Num(font_) << "\" font-family=\"sans-serif\">\n";
  std::vector<const Layer*> shown;
  if (s_.tms.read) {
    for (const Layer* l : {&kPave, &kEdmk, &kCntr, &kLite})
      if (On(l->id)) shown.push_back(l);
  }
  if (!s_.plyPath.empty() && On("ply")) shown.insert(shown.end(), {&kApron, &kPlyLight});
  if (!s_.bgrPath.empty() && On("net")) shown.insert(shown.end(), {&kRunway, &kTaxiway});
  double x = left + font_, y = top + font_;
  for (const Layer* l : shown) {
    out_ << "<rect x=\"" << Num(x) << "\" y=\"" << Num(y) << "\" width=\"" << Num(font_) << "\" height=\""
         << Num(font_) << "\" fill=\"" << l->colour << "\" stroke=\"#000000\" stroke-width=\"" << Num(font_ / 20)
         << "\"/><text x=\"" << Num(x + font_ * 1.5) << "\" y=\"" << Num(y + font_ * 0.9) << "\">" << l->label
         << "</text>\n";
    x += font_ * 14;
    if (x > left + width - font_ * 14) {
      x = left + font_;
      y += font_ * 1.6;
    }
  }
  // the scale bar, in feet
  double bar = ScaleBarFeet(width);
  double by = y + font_ * 2.5;
  out_ << "<rect x=\"" << Num(left + font_) << "\" y=\"" << Num(by) << "\" width=\"" << Num(bar) << "\" height=\""
       << Num(font_ / 3) << "\" fill=\"#000000\"/><text x=\"" << Num(left + font_ * 1.5 + bar) << "\" y=\""
       << Num(by + font_ / 2) << "\">" << Num(bar) << " ft</text>\n";
  std::string files;
  for (const std::string* f : {&s_.bgrPath, &s_.plyPath, &s_.tmsPath})
    if (!f->empty()) files += (files.empty() ? "" : ", ") + *f;
  out_ << "<text x=\"" << Num(left + font_) << "\" y=\"" << Num(by + font_ * 2.2) << "\">" << Escape(files)
       << "</text>\n</g>\n";
}

std::string SvgWriter::Draw() {
  Box box = Bounds();
  double widest = 0;
  for (const EdgeRecord& e : s_.network.edges) widest = std::max<double>(widest, e.width);
  double span = std::max({box.x1 - box.x0, box.z1 - box.z0, 100.0});
  font_ = span / 80;
  double pad = std::max({widest / 2, span * 0.03, font_ * 2});
  double left = box.x0 - pad, top = -(box.z1 + pad);
  double width = box.x1 - box.x0 + 2 * pad, height = box.z1 - box.z0 + 2 * pad;
  double legend = font_ * 9;
  double total = height + legend;
  double pixelsHigh = std::ceil(o_.pixels * total / width);
  out_ << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
       << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << o_.pixels << "\" height=\"" << Num(pixelsHigh)
       << "\" viewBox=\"" << Num(left) << " " << Num(top) << " " << Num(width) << " " << Num(total) << "\">\n"
       << "<title>" << Escape(s_.bgrPath.empty() ? s_.tmsPath : s_.bgrPath) << "</title>\n"
       << "<rect x=\"" << Num(left) << "\" y=\"" << Num(top) << "\" width=\"" << Num(width) << "\" height=\""
       << Num(total) << "\" fill=\"#f4f1ea\"/>\n";
  Ply();
  Tiles();
  Network();
  Grid();
  Legend(left, top + height, width);
  out_ << "</svg>\n";
  return out_.str();
}

}  // namespace

bool LoadScene(const std::string& input, Scene& scene, std::string& error) {
  KitRun run;
  if (!FileExists(run.ctx, input)) {
    error = "cannot read '" + input + "'";
    return false;
  }
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
  if (!scene.plyPath.empty()) scene.ply = ReadPlyContent(scene.plyPath);
  return true;
}

std::string DrawSvg(const Scene& scene, const RenderOptions& options) { return SvgWriter(scene, options).Draw(); }

int Render(const RenderOptions& o) {
  Scene scene;
  std::string error;
  if (!LoadScene(o.input, scene, error)) {
    std::cerr << "bgrkit render: " << error << "\n";
    return kFailed;
  }
  std::string svg = DrawSvg(scene, o);
  KitRun run;
  OutputFile out;
  if (!out.Open(run.ctx, o.output)) return kFailed;
  bool ok;
  if (HasExtension(o.output, "png")) {
    error = WritePng(svg, out.get());
    ok = error.empty();
  } else {
    ok = std::fwrite(svg.data(), 1, svg.size(), out.get()) == svg.size();
  }
  if (!out.Finish(run.ctx, ok, "bgrkit render")) {
    if (!error.empty()) std::cerr << "bgrkit render: " << error << "\n";
    return kFailed;
  }
  return kDone;
}

std::function<int()> SetupRender(CLI::App& command) {
  auto o = std::make_shared<RenderOptions>();
  auto layers = std::make_shared<std::vector<std::string>>();
  command.add_option("input", o->input, "a BGR network or a TMS file; the files beside it of the same name are drawn too")
      ->required();
  command.add_option("-o,--output", o->output, "the picture to write: NAME.svg, or NAME.png")->required();
  command.add_option("--layers", *layers, "the layers to draw, of pave,edmk,cntr,lite,net,ply (all by default)")
      ->delimiter(',')
      ->check(CLI::IsMember(std::vector<std::string>(kRenderLayers.begin(), kRenderLayers.end())));
  command.add_flag("--labels", o->labels, "write the number of each point of the network");
  command.add_option("--width", o->pixels, "width of the picture in pixels")->check(CLI::Range(16, 32767))->default_val(1600);
  command.footer(std::string("Drawn to scale, north up, in feet from the network's origin, with a legend and a scale bar.\n") +
                 kPngNote);
  return [o, layers] {
    if (!layers->empty()) o->layers = std::set<std::string>(layers->begin(), layers->end());
    return Render(*o);
  };
}

}  // namespace bgr::kit
