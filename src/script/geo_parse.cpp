#include "script/geo_parse.h"

#include <cctype>
#include <cmath>
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

std::string FormatAngle(double degrees, char positive, char negative) {
  double a = std::fabs(degrees) * 3600;
  int d = static_cast<int>(a / 3600), m = static_cast<int>((a - d * 3600.0) / 60);
  char text[64];
  std::snprintf(text, sizeof text, "%c%d:%d:%.4f", degrees < 0 ? negative : positive, d, m, a - d * 3600.0 - m * 60.0);
  return text;
}

}  // namespace

std::string FormatLatitude(double degrees) { return FormatAngle(degrees, 'N', 'S'); }
std::string FormatLongitude(double degrees) { return FormatAngle(degrees, 'E', 'W'); }

std::int32_t ParseLatitude(std::string_view text, double* value) { return ParseAngle('N', 'S', text, value); }
std::int32_t ParseLongitude(std::string_view text, double* value) { return ParseAngle('E', 'W', text, value); }

}  // namespace bgr
