#include "script/geo_parse.h"

#include <cctype>
#include <cstdio>
#include <string>

namespace bgr {
namespace {

std::int32_t ParseAngle(char positive, char negative, std::string_view text, double* value) {
  *value = 0.0;
  if (text.empty()) return 0;
  char letter = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  double sign;
  if (letter == positive) {
    sign = 1.0;
  } else if (letter == negative) {
    sign = -1.0;
  } else {
    return 0;
  }
  double degrees = 0.0, minutes = 0.0, seconds = 0.0;
  std::string rest(text.substr(1));
  std::sscanf(rest.c_str(), "%lf:%lf:%lf", &degrees, &minutes, &seconds);
  *value = sign * (degrees * 3600.0 + minutes * 60.0 + seconds);
  return 1;
}

}  // namespace

std::int32_t ParseLatitude(std::string_view text, double* value) { return ParseAngle('N', 'S', text, value); }
std::int32_t ParseLongitude(std::string_view text, double* value) { return ParseAngle('E', 'W', text, value); }

}  // namespace bgr
