#include "geometry/geo_angle.h"

#include <cstdio>

#include "frame/int32_math.h"

namespace bgr {

std::string GeoAngle::Format() const {
  char text[96];
  std::snprintf(text, sizeof text, "%d %d'%02d.%04d\"%c", degrees, minutes, seconds, ticks, hemisphere);
  return text;
}

void GeoAngle::Peel(double v) {
  degrees = TruncToLong(v / 36000000.0);
  v -= degrees * 36000000.0;
  minutes = TruncToLong(v / 600000.0);
  v -= minutes * 600000.0;
  seconds = TruncToLong(v / 10000.0);
  v -= seconds * 10000.0;
  ticks = TruncToLong(v);
}

void GeoAngle::SetLatitudeTicks(double v) {
  if (v < 0) {
    hemisphere = 'S';
    v = -v;
  } else {
    hemisphere = 'N';
  }
  Peel(v);
}

void GeoAngle::SetLongitudeTicks(double v) {
  if (v < 0) v += 12959999999.0 + 1;
  if (v > 6480000000.0) {
    hemisphere = 'W';
    v = 12959999999.0 - v;  // mirrored one tick short of the full circle
  } else {
    hemisphere = 'E';
  }
  Peel(v);
}

}  // namespace bgr
