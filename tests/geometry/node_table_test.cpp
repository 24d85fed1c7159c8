#include "geometry/node_table.h"

#include "frame/run_context.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace bgr {
namespace {

// The kept table's index must give what a walk from its start gives.
TEST(KeptNodes, RenumberingAgreesWithAPlainWalk) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> c(-60, 60);
  for (int round = 0; round < 20; ++round) {
    NodeTable whole("no memory");
    for (int i = 0; i < 2000; ++i) insert_double_points(whole, c(rng), c(rng), c(rng));
    insert_double_points(whole, NAN, 0, 1);
    insert_double_points(whole, 1e300, 0, 1e300);
    KeptNodes kept(5.0);
    kept.Append({0, 0, 0});
    std::vector<DoublePoint> plain{{0, 0, 0}};
    std::uniform_int_distribution<int> pick(-3, whole.count() + 3);
    for (int i = 0; i < 3000; ++i) {
      int number = pick(rng);
      std::int32_t expected = 0;
      if (whole.Contains(number)) {
        const DoublePoint& p = whole[number];
        expected = -1;
        for (std::size_t k = 0; k < plain.size() && expected < 0; ++k)
          if (std::fabs(plain[k].x - p.x) <= 5 && std::fabs(plain[k].z - p.z) <= 5) expected = static_cast<int>(k);
        if (expected < 0) {
          plain.push_back(p);
          expected = static_cast<std::int32_t>(plain.size() - 1);
        }
      }
      ASSERT_EQ(kept.RenumberNode(number, whole), expected) << "round " << round << " step " << i;
    }
  }
}

}  // namespace
}  // namespace bgr
