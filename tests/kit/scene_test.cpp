// The scene that render and view draw: labels placed by scale, and the
// shapes each layer holds.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>

#include "kit/scene.h"

namespace bgrtest {
namespace {

using bgr::kit::DescribeScene;
using bgr::kit::Scene;
using bgr::kit::SceneLabel;

// A label's box in feet at a scale, as it stands beside its point.
struct Box {
  double x0, z0, x1, z1;
};
Box LabelBox(const SceneLabel& l, double scale) {
  double wide = (std::to_string(l.point).size() * 0.6 + 0.4) * bgr::kit::kLabelPixels;
  double x0 = l.at.x + 2 / scale, z0 = l.at.z + 2 / scale;
  return {x0, z0, x0 + wide / scale, z0 + bgr::kit::kLabelPixels / scale};
}

Scene Cluster(int points, double spread, std::uint32_t seed) {
  Scene s;
  s.bgrPath = "a.bgr";
  s.network.read = s.network.complete = true;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> at(-spread, spread);
  for (int i = 0; i < points; ++i) s.network.nodes.push_back({at(random), 0, at(random)});
  for (int i = 0; i + 1 < points; i += 2) s.network.edges.push_back({i, i + 1, 50, 1, 0, 15});
  return s;
}

TEST(Scene, LabelsShownAtAScaleNeverOverlapAndStayAtFinerScales) {
  for (std::uint32_t seed : {1u, 2u, 3u}) {
    Scene s = Cluster(600, 2000, seed);
    auto d = DescribeScene(s);
    ASSERT_FALSE(d.labels.empty());
    for (int level = bgr::kit::kLeastLabelLevel; level <= bgr::kit::kMostLabelLevel; ++level) {
      double scale = std::ldexp(1.0, level);
      std::vector<Box> shown;
      for (const SceneLabel& l : d.labels)
        if (l.level <= level) shown.push_back(LabelBox(l, scale));
      for (std::size_t i = 0; i < shown.size(); ++i)
        for (std::size_t j = i + 1; j < shown.size(); ++j) {
          const Box &a = shown[i], &b = shown[j];
          ASSERT_FALSE(a.x0 < b.x1 && b.x0 < a.x1 && a.z0 < b.z1 && b.z0 < a.z1) << "level " << level;
        }
    }
    // at the finest scale every point, none on another's spot, gets its number
    EXPECT_EQ(d.labels.size(), 600u);
  }
}

TEST(Scene, PointsOnOneSpotGetOneLabel) {
  Scene s = Cluster(4, 10, 1);
  for (auto& p : s.network.nodes) p = {5, 0, 5};
  EXPECT_EQ(DescribeScene(s).labels.size(), 1u);
}

TEST(Scene, EdgesGoToTheirLayersByTypeAndFlags) {
  Scene s = Cluster(8, 500, 1);
  s.network.edges = {{0, 1, 150, 0, 0, 15}, {2, 3, 50, 1, 0, 2}, {4, 5, 50, 1, 0, 0}, {6, 7, 50, 1, 0, 1}, {6, 99, 50, 1, 0, 1}};
  auto d = DescribeScene(s);
  std::map<std::string, std::vector<std::int64_t>> objects;
  for (const auto& l : d.layers)
    for (const auto& shape : l.shapes) objects[l.id].push_back(shape.object);
  EXPECT_EQ(objects["runway"], (std::vector<std::int64_t>{0}));
  EXPECT_EQ(objects["paint"], (std::vector<std::int64_t>{1}));  // flags 2 alone: a painted line, no pavement
  EXPECT_EQ(objects["taxiway"], (std::vector<std::int64_t>{2, 3}));  // the edge to a missing point is left out
  EXPECT_EQ(objects["centre"], (std::vector<std::int64_t>{0, 2}));   // a stored 0 means every flag
  EXPECT_EQ(bgr::kit::SignedDegrees(1296000 - 3600 * 104.5), -104.5);
  EXPECT_EQ(bgr::kit::SignedDegrees(3600 * 14.5), 14.5);
}

}  // namespace
}  // namespace bgrtest
