#include "kit/render.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <sstream>

#include "frame/text.h"
#include "kit/kit.h"
#include "kit/png.h"

namespace bgr::kit {
namespace {

constexpr double kFontPixels = 12;

// Shortest text that reads back as the same double.
std::string Num(double v) {
  if (v == 0) v = 0;  // no "-0"
  char text[32];
  auto r = std::to_chars(text, text + sizeof text, v);
  return std::string(text, r.ptr);
}

std::string Fixed(double v, int decimals) {
  char text[48];
  std::snprintf(text, sizeof text, "%.*f", decimals, v);
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
  SvgWriter(const Scene& scene, const RenderOptions& options) : s_(scene), o_(options), d_(DescribeScene(scene)) {
    std::erase_if(d_.layers, [&](const SceneLayer& l) { return o_.layers.count(l.group) == 0; });
  }
  std::string Draw();

 private:
  const Scene& s_;
  const RenderOptions& o_;
  SceneDescription d_;
  std::ostringstream out_;
  double px_ = 1;     // feet to the pixel
  double scale_ = 1;  // pixels to the foot

  static std::string Pt(const ScenePoint& p) { return Num(p.x) + "," + Num(-p.z); }
  std::string Points(const SceneShape& shape) const {
    std::string text;
    for (const ScenePoint& p : shape.points) text += (text.empty() ? "" : " ") + Pt(p);
    return text;
  }
  void Layer(const SceneLayer& l);
  void Labels();
  void Legend(double left, double top, double width);
  void Swatch(const SceneLayer& l, double x, double y);
};

void SvgWriter::Layer(const SceneLayer& l) {
  out_ << "<g id=\"" << l.id << "\" class=\"layer\" data-colour=\"" << l.colour << "\"";
  switch (l.paint) {
    case Paint::kFill:
      out_ << " fill=\"" << l.colour << "\" fill-opacity=\"" << Num(l.opacity) << "\" stroke=\"none\">\n";
      for (const SceneShape& shape : l.shapes)
        out_ << "<polygon data-object=\"" << shape.object << "\" points=\"" << Points(shape) << "\"/>\n";
      break;
    case Paint::kStroke:
    case Paint::kLine:
      out_ << " fill=\"none\" stroke=\"" << l.colour << "\" stroke-opacity=\"" << Num(l.opacity)
           << "\" stroke-linecap=\"round\">\n";
      for (const SceneShape& shape : l.shapes) {
        double width = l.paint == Paint::kStroke ? std::max(shape.width, px_) : l.pixels * px_;
        if (shape.points.size() == 1) {  // a place: a cross
          const ScenePoint& p = shape.points[0];
          double r = kFontPixels * px_;
          out_ << "<path data-object=\"" << shape.object << "\" stroke-width=\"" << Num(width) << "\" d=\"M"
               << Num(p.x - r) << "," << Num(-p.z) << "h" << Num(2 * r) << "M" << Num(p.x) << "," << Num(-p.z - r)
               << "v" << Num(2 * r) << "\"/>\n";
          continue;
        }
        out_ << "<polyline data-object=\"" << shape.object << "\" stroke-width=\"" << Num(width) << "\" points=\""
             << Points(shape) << "\"/>\n";
      }
      break;
    case Paint::kLights:
      out_ << " fill=\"none\" stroke=\"" << l.colour << "\" stroke-width=\"" << Num(l.pixels * px_)
           << "\" stroke-linecap=\"round\">\n";
      for (const SceneShape& shape : l.shapes) {
        out_ << "<path data-object=\"" << shape.object << "\" d=\"";
        for (const ScenePoint& p : shape.points) out_ << "M" << Pt(p) << "h0";
        out_ << "\"/>\n";
      }
      break;
    case Paint::kOutline:
      out_ << " fill=\"none\" stroke=\"" << l.colour << "\" stroke-width=\"" << Num(l.pixels * px_)
           << "\" font-size=\"" << Num(kFontPixels * px_) << "\" font-family=\"sans-serif\">\n";
      for (const SceneShape& shape : l.shapes) {
        const ScenePoint &low = shape.points[0], &high = shape.points[2];
        out_ << "<rect data-object=\"" << shape.object << "\" x=\"" << Num(low.x) << "\" y=\"" << Num(-high.z)
             << "\" width=\"" << Num(high.x - low.x) << "\" height=\"" << Num(high.z - low.z) << "\"/>\n";
        out_ << "<text x=\"" << Num(low.x + kFontPixels * px_ / 2) << "\" y=\"" << Num(-high.z + kFontPixels * px_ * 1.2)
             << "\" fill=\"" << l.colour << "\" stroke=\"none\">" << shape.object / 8 << "," << shape.object % 8
             << "</text>\n";
      }
      break;
  }
  out_ << "</g>\n";
}

void SvgWriter::Labels() {
  if (!o_.labels || o_.layers.count("net") == 0) return;
  out_ << "<g id=\"labels\" font-size=\"" << Num(kLabelPixels * px_) << "\" font-family=\"sans-serif\" fill=\"#000000\">\n";
  // only the labels that collide with none at this scale
  for (const SceneLabel& l : d_.labels)
    if (std::ldexp(1.0, l.level) <= scale_)
      out_ << "<text x=\"" << Num(l.at.x + 2 * px_) << "\" y=\"" << Num(-l.at.z - 2 * px_) << "\">" << l.point
           << "</text>\n";
  out_ << "</g>\n";
}

void SvgWriter::Swatch(const SceneLayer& l, double x, double y) {
  double f = kFontPixels * px_;
  std::string c = l.colour;
  switch (l.paint) {
    case Paint::kFill:
    case Paint::kStroke:
      out_ << "<rect x=\"" << Num(x) << "\" y=\"" << Num(y) << "\" width=\"" << Num(f) << "\" height=\"" << Num(f)
           << "\" fill=\"" << c << "\" fill-opacity=\"" << Num(l.opacity) << "\" stroke=\"#000000\" stroke-width=\""
           << Num(f / 20) << "\"/>";
      break;
    case Paint::kLine:
      out_ << "<line x1=\"" << Num(x) << "\" y1=\"" << Num(y + f / 2) << "\" x2=\"" << Num(x + f) << "\" y2=\""
           << Num(y + f / 2) << "\" stroke=\"" << c << "\" stroke-width=\"" << Num(std::max(l.pixels, 2.0) * px_)
           << "\"/>";
      break;
    case Paint::kLights:
      out_ << "<circle cx=\"" << Num(x + f / 2) << "\" cy=\"" << Num(y + f / 2) << "\" r=\"" << Num(f / 4)
           << "\" fill=\"" << c << "\"/>";
      break;
    case Paint::kOutline:
      out_ << "<rect x=\"" << Num(x) << "\" y=\"" << Num(y) << "\" width=\"" << Num(f) << "\" height=\"" << Num(f)
           << "\" fill=\"none\" stroke=\"" << c << "\" stroke-width=\"" << Num(f / 10) << "\"/>";
      break;
  }
}

void SvgWriter::Legend(double left, double top, double width) {
  double f = kFontPixels * px_;
  out_ << "<g id=\"legend\" font-size=\"" << Num(f) << "\" font-family=\"sans-serif\">\n";
  double column = f * 19;
  double x = left + f, y = top + f;
  double right = left + width - f * 4;  // the north arrow's room
  for (const SceneLayer& l : d_.layers) {
    if (x + column > right && x > left + f) {
      x = left + f;
      y += f * 1.6;
    }
    out_ << "<g class=\"legend-entry\" data-layer=\"" << l.id << "\">";
    Swatch(l, x, y);
    out_ << "<text x=\"" << Num(x + f * 1.5) << "\" y=\"" << Num(y + f * 0.9) << "\">" << Escape(l.label)
         << "</text></g>\n";
    x += column;
  }
  // the scale bar, in feet
  double bar = ScaleBarFeet(width);
  double by = y + f * 2.5;
  out_ << "<rect id=\"scale\" x=\"" << Num(left + f) << "\" y=\"" << Num(by) << "\" width=\"" << Num(bar)
       << "\" height=\"" << Num(f / 3) << "\" fill=\"#000000\"/><text x=\"" << Num(left + f * 1.5 + bar) << "\" y=\""
       << Num(by + f / 2) << "\">" << Num(bar) << " ft</text>\n";
  std::string files;
  for (const std::string* name : {&s_.bgrPath, &s_.plyPath, &s_.tmsPath})
    if (!name->empty()) files += (files.empty() ? "" : ", ") + *name;
  out_ << "<text x=\"" << Num(left + f) << "\" y=\"" << Num(by + f * 2.2) << "\">" << Escape(files) << "; origin "
       << Fixed(d_.latitude, 6) << " " << Fixed(d_.longitude, 6) << "</text>\n";
  // north is up
  double ax = left + width - f * 2, ay = top + f;
  out_ << "<g id=\"north\"><path d=\"M" << Num(ax) << "," << Num(ay) << "l" << Num(f * 0.6) << "," << Num(f * 1.8)
       << "h" << Num(-f * 1.2) << "z\" fill=\"#000000\"/><text x=\"" << Num(ax - f * 0.35) << "\" y=\""
       << Num(ay + f * 3) << "\">N</text></g>\n";
  out_ << "</g>\n";
}

std::string SvgWriter::Draw() {
  double widest = 0;
  for (const EdgeRecord& e : s_.network.edges) widest = std::max<double>(widest, e.width);
  double spanX = d_.east - d_.west, spanZ = d_.north - d_.south;
  double span = std::max({spanX, spanZ, 100.0});
  double pad = std::max({widest / 2, span * 0.03});
  double left = d_.west - pad, width = spanX + 2 * pad, height = spanZ + 2 * pad;
  if (width < span * 0.3) {  // a narrow airport gets room for its legend
    left -= (span * 0.3 - width) / 2;
    width = span * 0.3;
  }
  double top = -(d_.north + pad);
  px_ = width / o_.pixels;
  scale_ = 1 / px_;
  double f = kFontPixels * px_;
  std::size_t perRow = std::max(1.0, std::floor((width - f * 5) / (f * 19)));
  double rows = std::ceil(static_cast<double>(std::max<std::size_t>(d_.layers.size(), 1)) / static_cast<double>(perRow));
  double legend = f * (rows * 1.6 + 5.5);
  double total = height + legend;
  double pixelsHigh = std::ceil(o_.pixels * total / width);
  out_ << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
       << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << o_.pixels << "\" height=\"" << Num(pixelsHigh)
       << "\" viewBox=\"" << Num(left) << " " << Num(top) << " " << Num(width) << " " << Num(total) << "\">\n"
       << "<title>" << Escape(s_.bgrPath.empty() ? s_.tmsPath : s_.bgrPath) << "</title>\n"
       << "<rect x=\"" << Num(left) << "\" y=\"" << Num(top) << "\" width=\"" << Num(width) << "\" height=\""
       << Num(total) << "\" fill=\"#f4f1ea\"/>\n";
  for (const SceneLayer& l : d_.layers) Layer(l);
  Labels();
  Legend(left, top + height, width);
  out_ << "</svg>\n";
  return out_.str();
}

}  // namespace

std::string DrawSvg(const Scene& scene, const RenderOptions& options) { return SvgWriter(scene, options).Draw(); }

int Render(const RenderOptions& o) {
  bool png = HasExtension(o.output, "png");
  if (!png && !HasExtension(o.output, "svg")) {
    std::cerr << "bgrkit render: '" << o.output << "' names no picture this program writes: end it in .svg or .png\n";
    return kBadUsage;
  }
  Scene scene;
  std::string error;
  if (!LoadScene(o.input, scene, error)) {
    std::cerr << "bgrkit render: " << error << "\n";
    return kFailed;
  }
  for (const std::string& w : scene.warnings) std::cerr << "bgrkit render: warning: " << w << "\n";
  std::string svg = DrawSvg(scene, o);
  return WriteOutput("bgrkit render", o.output, [&](std::FILE* out) -> std::string {
    if (png) return WritePng(svg, out);
    return std::fwrite(svg.data(), 1, svg.size(), out) == svg.size() ? "" : "the picture could not be written";
  }) ? kDone : kFailed;
}

std::function<int()> SetupRender(CLI::App& command) {
  auto o = std::make_shared<RenderOptions>();
  auto layers = std::make_shared<std::vector<std::string>>();
  command.add_option("input", o->input, "a BGR network or a TMS file; the files beside it of the same name are drawn too")
      ->required();
  command.add_option("-o,--output", o->output, "the picture to write: NAME.svg or NAME.png (another ending is refused)")->required();
  command.add_option("--layers", *layers, "the layers to draw, of pave,edmk,cntr,lite,net,ply,grid (all by default)")
      ->delimiter(',')
      ->check(CLI::IsMember(std::vector<std::string>(kRenderLayers.begin(), kRenderLayers.end())));
  command.add_flag("--labels", o->labels, "write the numbers of the points of the network, each where it collides with no other");
  command.add_option("--width", o->pixels, "width of the picture in pixels")->check(CLI::Range(16, 32767))->default_val(1600);
  command.footer(std::string("Drawn to scale, north up, in feet from the network's origin, with a legend and a scale bar.\n") +
                 kPngNote);
  return [o, layers] {
    if (!layers->empty()) o->layers = std::set<std::string>(layers->begin(), layers->end());
    return Render(*o);
  };
}

}  // namespace bgr::kit
