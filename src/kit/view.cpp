// bgrkit view: the scene that render draws, as one HTML page with the map
// library inlined: pan, zoom, layers, what an object is, and check's findings.
#include "kit/view.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "frame/text.h"
#include "kit/check.h"
#include "kit/kit.h"
#include "kit/view_page.h"

#ifndef BGRKIT_LEAFLET_DIR
#define BGRKIT_LEAFLET_DIR "/usr/share/javascript/leaflet"
#endif

namespace bgr::kit {
namespace {

// Feet to the hundredth: finer than any drawing needs, and short.
void Feet(std::string& out, double v) {
  if (!std::isfinite(v)) v = 0;
  v = std::round(v * 100.0) / 100.0;
  if (v == 0) v = 0;  // no "-0"
  char text[32];
  auto r = std::to_chars(text, text + sizeof text, v);
  out.append(text, r.ptr);
}

std::int64_t Tenths(double v) {
  constexpr double kMost = 1e15;  // far beyond any network, and exact in a double
  return std::isfinite(v) ? static_cast<std::int64_t>(std::round(std::clamp(v * 10.0, -kMost, kMost))) : 0;
}

std::string Text(const std::string& s) { return nlohmann::json(s).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace); }

const char* PaintName(Paint p) {
  switch (p) {
    case Paint::kFill: return "fill";
    case Paint::kStroke: return "stroke";
    case Paint::kLine: return "line";
    case Paint::kLights: return "lights";
    case Paint::kOutline: return "outline";
  }
  return "fill";
}

const char* SeverityWord(Severity s) {
  return s == Severity::kError ? "error" : s == Severity::kWarning ? "warning" : "note";
}

bool ReadWhole(const std::string& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream all;
  all << in.rdbuf();
  text = all.str();
  return true;
}

// The scene, the network's records and the findings as one JSON object.
std::string SceneData(const Scene& scene, const SceneDescription& d, const Findings& findings,
                      const std::string& attribution) {
  std::string out = "{";
  std::string files;
  for (const std::string* name : {&scene.bgrPath, &scene.plyPath, &scene.tmsPath})
    if (!name->empty()) files += (files.empty() ? "" : ",") + Text(*name);
  out += "\"files\":[" + files + "],\"attribution\":" + Text(attribution);
  // a damaged origin may hold any double; JSON has no word for NaN
  auto number = [](double v) {
    char text[32];
    auto r = std::to_chars(text, text + sizeof text, std::isfinite(v) ? v : 0.0);
    return std::string(text, r.ptr);
  };
  out += ",\"origin\":{\"lat\":" + number(d.latitude) + ",\"lon\":" + number(d.longitude) +
         ",\"feetNorth\":" + number(d.feetPerDegreeNorth) + ",\"feetEast\":" + number(d.feetPerDegreeEast) + "}";
  out += ",\"bounds\":[";
  Feet(out, d.west);
  out += ',';
  Feet(out, d.south);
  out += ',';
  Feet(out, d.east);
  out += ',';
  Feet(out, d.north);
  out += "],\"layers\":[";
  for (std::size_t i = 0; i < d.layers.size(); ++i) {
    const SceneLayer& l = d.layers[i];
    out += (i ? ",{" : "{") + std::string("\"id\":") + Text(l.id) + ",\"label\":" + Text(l.label) +
           ",\"colour\":" + Text(l.colour) + ",\"paint\":\"" + PaintName(l.paint) + "\",\"opacity\":";
    Feet(out, l.opacity);
    out += ",\"pixels\":";
    Feet(out, l.pixels);
    // each shape: object, width, then its points in tenths of a foot, each
    // as the step from the point before it in the layer: half the bytes
    out += ",\"shapes\":[";
    std::int64_t lastX = 0, lastZ = 0;
    for (std::size_t k = 0; k < l.shapes.size(); ++k) {
      const SceneShape& s = l.shapes[k];
      out += k ? ",[" : "[";
      out += std::to_string(s.object) + ",";
      Feet(out, s.width);
      for (const ScenePoint& p : s.points) {
        std::int64_t x = Tenths(p.x), z = Tenths(p.z);
        out += ',' + std::to_string(x - lastX) + ',' + std::to_string(z - lastZ);
        lastX = x;
        lastZ = z;
      }
      out += ']';
    }
    out += "]}";
  }
  out += "],\"labels\":[";
  for (std::size_t i = 0; i < d.labels.size(); ++i) {
    const SceneLabel& l = d.labels[i];
    out += (i ? "," : "") + std::to_string(l.point) + "," + std::to_string(l.level);
  }
  const NetworkContent& n = scene.network;
  out += "],\"nodes\":[";
  for (std::size_t i = 0; i < n.nodes.size(); ++i) {
    if (i) out += ',';
    Feet(out, n.nodes[i].x);
    out += ',';
    Feet(out, n.nodes[i].z);
  }
  out += "],\"edges\":[";
  for (std::size_t i = 0; i < n.edges.size(); ++i)
    out += (i ? "," : "") + std::to_string(n.edges[i].from) + "," + std::to_string(n.edges[i].to);
  out += "],\"edgeText\":[";
  for (std::size_t i = 0; i < n.edges.size(); ++i) out += (i ? "," : "") + Text(DescribeEdge(n, i));
  out += "],\"apronNames\":[";
  for (std::size_t i = 0; i < scene.plyNames.size(); ++i) out += (i ? "," : "") + Text(scene.plyNames[i]);
  out += "],\"tiles\":";
  if (scene.tms.read) {
    out += "{\"x\":";
    Feet(out, scene.tms.lowl[0]);
    out += ",\"z\":";
    Feet(out, scene.tms.lowl[2]);
    out += ",\"side\":";
    Feet(out, scene.tms.tileFeet);
    out += ",\"holds\":[";
    for (int x = 0; x < kTmsGrid; ++x)
      for (int z = 0; z < kTmsGrid; ++z)
        for (int section = 0; section < kTmsSections; ++section)
          out += (x + z + section ? "," : "") +
                 std::to_string(scene.tms.tiles[static_cast<std::size_t>(x)][static_cast<std::size_t>(z)]
                                               [static_cast<std::size_t>(section)]
                                                   .size());
    out += "]}";
  } else {
    out += "null";
  }
  out += ",\"findings\":[";
  for (std::size_t i = 0; i < findings.size(); ++i) {
    const Finding& f = findings[i];
    out += (i ? ",{" : "{") + std::string("\"severity\":\"") + SeverityWord(f.severity) + "\",\"object\":" +
           Text(f.object) + ",\"number\":" + std::to_string(f.number) + ",\"text\":" + Text(FormatFinding(f));
    if (f.placed) {
      out += ",\"x\":";
      Feet(out, f.x);
      out += ",\"z\":";
      Feet(out, f.z);
    }
    out += '}';
  }
  out += "],\"warnings\":[";
  for (std::size_t i = 0; i < scene.warnings.size(); ++i) out += (i ? "," : "") + Text(scene.warnings[i]);
  out += "]}";
  return out;
}

// Text that can stand inside a <script> or <style> element, without the
// pointer to a source map that isn't there.
std::string Inline(std::string text) {
  for (const char* map : {"//# sourceMappingURL=", "/*# sourceMappingURL="}) {
    std::size_t at = text.find(map);
    if (at != std::string::npos) text.erase(at, text.find('\n', at) - at);
  }
  for (std::size_t at = 0; (at = text.find("</", at)) != std::string::npos; at += 3) text.replace(at, 2, "<\\/");
  return text;
}

// The map library's style sheet names pictures beside it, which the page
// doesn't carry: its controls are drawn without them.
std::string WithoutPictures(std::string css) {
  for (std::size_t at = 0; (at = css.find("url(", at)) != std::string::npos;) {
    std::size_t end = css.find(')', at);
    if (end == std::string::npos) break;
    css.replace(at, end + 1 - at, "none");
  }
  return css;
}

}  // namespace

std::string ViewPage(const Scene& scene, const Findings& findings, const ViewOptions& o, const std::string& leafletJs,
                     const std::string& leafletCss) {
  SceneDescription d = DescribeScene(scene);
  std::string title = scene.bgrPath.empty() ? scene.tmsPath : scene.bgrPath;
  std::string html;
  html.reserve(leafletJs.size() + 1024 * 1024);
  html += "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
  for (char c : title) html += c == '<' ? std::string("&lt;") : c == '&' ? std::string("&amp;") : std::string(1, c);
  html += "</title>\n<style>\n" + Inline(WithoutPictures(leafletCss)) + "\n</style>\n<style>\n" + kViewStyle +
          "</style>\n</head>\n<body>\n" + kViewBody + "<script>\n" + Inline(leafletJs) +
          "\n</script>\n<script type=\"application/json\" id=\"scene\">" +
          Inline(SceneData(scene, d, findings, o.attribution)) + "</script>\n<script>\n" +
          kViewScript + "</script>\n</body></html>\n";
  return html;
}

int View(const ViewOptions& o) {
  std::string output = o.output;
  if (output.empty()) {
    output = o.input;
    SetExtension(output, "html");
  }
  Scene scene;
  std::string error;
  if (!LoadScene(o.input, scene, error)) {
    std::cerr << "bgrkit view: " << error << "\n";
    return kFailed;
  }
  for (const std::string* input : {&scene.bgrPath, &scene.plyPath, &scene.tmsPath}) {
    std::error_code same;
    if (!input->empty() && std::filesystem::equivalent(*input, output, same)) {
      std::cerr << "bgrkit view: '" << output << "' is one of the files shown; the page goes elsewhere\n";
      return kBadUsage;
    }
  }
  for (const std::string& w : scene.warnings) std::cerr << "bgrkit view: warning: " << w << "\n";
  std::string dir = o.leaflet.empty() ? BGRKIT_LEAFLET_DIR : o.leaflet;
  std::string js, css;
  // the packed script where there is one
  bool packed = ReadWhole(dir + "/leaflet.min.js", js);
  for (auto [name, text] : {std::pair{"/leaflet.js", &js}, std::pair{"/leaflet.css", &css}}) {
    if (text == &js && packed) continue;
    if (!ReadWhole(dir + name, *text)) {
      std::cerr << "bgrkit view: cannot read the map library '" << dir << name
                << "': install the package libjs-leaflet, or name its folder with --leaflet\n";
      return kFailed;
    }
  }
  Findings findings;
  if (!scene.bgrPath.empty()) {
    CheckInput input;
    if (LoadCheckInput(scene.bgrPath, input, error)) findings = CheckAll(input);
  }
  std::string page = ViewPage(scene, findings, o, js, css);
  return WriteOutput("bgrkit view", output, [&](std::FILE* out) -> std::string {
    return std::fwrite(page.data(), 1, page.size(), out) == page.size() ? "" : "the page could not be written";
  }) ? kDone : kFailed;
}

std::function<int()> SetupView(CLI::App& command) {
  auto o = std::make_shared<ViewOptions>();
  command.add_option("input", o->input, "a BGR network or a TMS file; the files beside it of the same name are shown too")
      ->required();
  command.add_option("-o,--output", o->output, "the page to write (default: the input's name ending in .html)");
  command.add_option("--attribution", o->attribution, "a credit for the data, shown on the map (the source's licence)");
  command.add_option("--leaflet", o->leaflet, std::string("the folder of leaflet.js and leaflet.css (default ") +
                                                  BGRKIT_LEAFLET_DIR + ")");
  command.footer(
      "One HTML file that needs nothing beside it: the map library is copied in. Pan and zoom, switch layers,\n"
      "point at an object to see what it is; check's findings are listed beside the map, and a click on one\n"
      "shows its object.");
  return [o] { return View(*o); };
}

}  // namespace bgr::kit
