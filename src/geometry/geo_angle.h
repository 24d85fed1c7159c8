// A latitude or longitude in degrees, minutes, seconds and ticks of 1/10000 arc-second.
#pragma once

#include <cstdint>
#include <string>

namespace bgr {

struct GeoAngle {
  char hemisphere = 'N';
  std::int32_t degrees = 0;
  std::int32_t minutes = 0;
  std::int32_t seconds = 0;
  std::int32_t ticks = 0;

  std::string Format() const;  // "%ld %ld'%02ld.%04ld\"%c"
  void SetLatitudeTicks(double v);
  void SetLongitudeTicks(double v);
  void SetLatitude(double arcSeconds) { SetLatitudeTicks(arcSeconds * 10000.0); }
  void SetLongitude(double arcSeconds) { SetLongitudeTicks(arcSeconds * 10000.0); }

 private:
  void Peel(double v);
};

}  // namespace bgr
