// Pictures of bgrkit render, read back with a real XML parser: well formed,
// every input point inside the drawing box, every tile polygon where it lies.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "kit/render.h"
#include "support/temp_dir.h"
#include "support/test_run.h"
#include "tms/tms_job.h"

namespace bgrtest {
namespace {

struct Svg {
  explicit Svg(const std::string& text)
      : doc(xmlReadMemory(text.data(), static_cast<int>(text.size()), "render.svg", nullptr, XML_PARSE_NONET)) {}
  ~Svg() { xmlFreeDoc(doc); }
  static std::string Attr(xmlNode* n, const char* name) {
    xmlChar* v = xmlGetProp(n, reinterpret_cast<const xmlChar*>(name));
    std::string s = v ? reinterpret_cast<const char*>(v) : "";
    xmlFree(v);
    return s;
  }
  // The elements named 'tag' inside the group of id 'group' (or everywhere).
  void Each(xmlNode* n, const std::string& group, const char* tag, bool inside,
            const std::function<void(xmlNode*)>& f) const {
    for (; n; n = n->next) {
      if (n->type != XML_ELEMENT_NODE) continue;
      bool in = inside || group.empty() || Attr(n, "id") == group;
      if (in && std::string(reinterpret_cast<const char*>(n->name)) == tag) f(n);
      Each(n->children, group, tag, in, f);
    }
  }
  std::vector<xmlNode*> All(const std::string& group, const char* tag) const {
    std::vector<xmlNode*> found;
    Each(xmlDocGetRootElement(doc), group, tag, false, [&](xmlNode* n) { found.push_back(n); });
    return found;
  }
  xmlDoc* doc;
};

std::vector<std::pair<double, double>> Points(const std::string& text) {
  std::vector<std::pair<double, double>> points;
  std::istringstream in(text);
  for (std::string pair; in >> pair;) {
    auto comma = pair.find(',');
    points.emplace_back(std::stod(pair.substr(0, comma)), std::stod(pair.substr(comma + 1)));
  }
  return points;
}

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

struct Rendered {
  // the example airport that ships with the program, run through -tm
  Rendered() {
    dir.Write("A.BGR", ReadAll(EXAMPLES_DIR "/LMML.BGR"));
    dir.Write("A.PLY", ReadAll(EXAMPLES_DIR "/LMML.PLY"));
    bgr::TmsJob job(run.ctx);
    job.Run(dir / "A.BGR");
    std::string error;
    EXPECT_TRUE(bgr::kit::LoadScene(dir / "A.BGR", scene, error)) << error;
  }
  TempDir dir;
  TestRun run;
  bgr::kit::Scene scene;
};

TEST(Render, EveryTilePolygonAndPointLiesWhereTheFilesSay) {
  const Rendered a;
  ASSERT_TRUE(a.scene.tms.complete);
  ASSERT_FALSE(a.scene.ply.polygons.empty());
  bgr::kit::RenderOptions options;
  options.labels = true;
  Svg svg(bgr::kit::DrawSvg(a.scene, options));
  ASSERT_NE(svg.doc, nullptr);
  xmlNode* root = xmlDocGetRootElement(svg.doc);
  std::istringstream box(Svg::Attr(root, "viewBox"));
  double left, top, width, height;
  box >> left >> top >> width >> height;
  auto inside = [&](double x, double z) { return x >= left && x <= left + width && -z >= top && -z <= top + height; };
  for (const auto& p : a.scene.network.nodes) EXPECT_TRUE(inside(p.x, p.z)) << p.x << "," << p.z;
  for (const auto& apron : a.scene.ply.polygons)
    for (const auto& p : apron) EXPECT_TRUE(inside(p.x, p.z));
  // each layer's polygons, tile by tile in file order, with their true coordinates
  const char* ids[] = {"pave", "edmk", "cntr"};
  for (int section = 0; section < 3; ++section) {
    std::map<std::string, std::vector<std::vector<std::pair<double, double>>>> drawn;
    for (xmlNode* n : svg.All(ids[section], "polygon")) drawn[Svg::Attr(n, "data-tile")].push_back(Points(Svg::Attr(n, "points")));
    std::size_t count = 0;
    for (int x = 0; x < 8; ++x)
      for (int z = 0; z < 8; ++z) {
        const auto& shapes = a.scene.tms.tiles[static_cast<std::size_t>(x)][static_cast<std::size_t>(z)][static_cast<std::size_t>(section)];
        const auto& got = drawn[std::to_string(x) + "," + std::to_string(z)];
        ASSERT_EQ(got.size(), shapes.size()) << ids[section] << " " << x << "," << z;
        for (std::size_t i = 0; i < shapes.size(); ++i) {
          ASSERT_EQ(got[i].size(), shapes[i].corners.size());
          for (std::size_t c = 0; c < got[i].size(); ++c) {
            EXPECT_EQ(got[i][c].first * 256, shapes[i].corners[c].first);
            EXPECT_EQ(-got[i][c].second * 256, shapes[i].corners[c].second);
            EXPECT_TRUE(inside(got[i][c].first, -got[i][c].second));
          }
        }
        count += shapes.size();
      }
    EXPECT_EQ(count, a.scene.tms.Count(section));
  }
  EXPECT_EQ(svg.All("lite", "polyline").size(), a.scene.tms.Count(3));
  EXPECT_EQ(svg.All("net", "text").size(), a.scene.network.nodes.size() + 1);  // the labels and the origin
  EXPECT_EQ(svg.All("grid", "rect").size(), 64u);
}

}  // namespace
}  // namespace bgrtest
