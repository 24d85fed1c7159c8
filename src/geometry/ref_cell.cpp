#include "geometry/ref_cell.h"

#include <array>
#include <cmath>

#include "geometry/geo_angle.h"

namespace bgr {
namespace {

const std::array<double, 256>& BandTable() {
  static const std::array<double, 256> table = [] {
    std::array<double, 256> t{};
    const double degree = 3.14159265358979323846 / 180.0;
    t[128] = 0.0;
    for (int i = 129; i <= 255; ++i) t[i] = t[i - 1] + 1.40625 * std::cos(t[i - 1] * degree);
    return t;
  }();
  return table;
}

}  // namespace

double BandEdge(int band) { return BandTable()[static_cast<std::size_t>(band & 255)]; }

std::int32_t RefCell::Set(const GeoAngle& latitude, const GeoAngle& longitude) {
  const auto& edge = BandTable();
  double lat = latitude.degrees + latitude.minutes / 60.0 + latitude.seconds / 3600.0 + latitude.ticks / 36000000.0;
  int lo = 128, hi = 254, mid = 0;
  bool found = false;
  while (lo <= hi) {
    mid = (lo + hi) / 2;
    if (lat < edge[mid]) {
      hi = mid - 1;
    } else if (lat >= edge[mid + 1]) {
      lo = mid + 1;
    } else {
      found = true;
      break;
    }
  }
  if (!found) return 0;
  switch (latitude.hemisphere) {
    case 'N':
    case 'n': band = mid; break;
    case 'S':
    case 's': band = 255 - mid; break;
    default: return 0;
  }
  std::int32_t upperLat = (edge[mid] + edge[mid + 1]) / 2 <= lat ? 1 : 0;
  std::int64_t s = static_cast<std::int64_t>(longitude.degrees) * 3600 + static_cast<std::int64_t>(longitude.minutes) * 60 +
                   longitude.seconds;
  s = static_cast<std::int32_t>(static_cast<std::uint32_t>(s));  // long arithmetic wraps at 32 bits
  switch (longitude.hemisphere) {
    case 'E':
    case 'e': break;
    case 'W':
    case 'w': s = static_cast<std::int32_t>(static_cast<std::uint32_t>(1295999 - s)); break;
    default: return 0;
  }
  column = static_cast<std::int32_t>(s / 5062);
  std::int64_t rest = s - static_cast<std::int64_t>(column) * 5062;
  std::int32_t upperLon = rest >= 2531 ? 1 : 0;
  quarter = upperLat + 2 * upperLon;
  return 1;
}

}  // namespace bgr
