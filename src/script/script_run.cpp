#include "script/script_run.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "script/geo_parse.h"

namespace bgr {
namespace {

bool Head(const std::string& line, std::string_view head) { return line.compare(0, head.size(), head) == 0; }

// Numbers one behind the other as the C library's scanner reads "%lf" and
// "%ld": each skips blanks; the first that doesn't scan ends the line. A whole
// number beyond 32 bits is held at the nearest end.
class Numbers {
 public:
  explicit Numbers(const char* text) : at_(text) {}
  bool Real(double* out) {
    if (stopped_) return false;
    char* end = nullptr;
    double v = std::strtod(at_, &end);
    if (end == at_) return Stop();
    *out = v;
    at_ = end;
    return true;
  }
  bool Whole(std::int32_t* out) {
    if (stopped_) return false;
    char* end = nullptr;
    errno = 0;
    long long v = std::strtoll(at_, &end, 10);
    if (end == at_) return Stop();
    *out = static_cast<std::int32_t>(
        std::clamp<long long>(v, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
    at_ = end;
    return true;
  }

 private:
  bool Stop() {
    stopped_ = true;
    return false;
  }
  const char* at_;
  bool stopped_ = false;
};

}  // namespace

ScriptRun::ScriptRun(RunContext& ctx, const RefCell& cell)
    : ctx_(ctx), network_(ctx), database_(ctx), exclusions_(ctx), pen_(network_, database_) {
  network_.SetRefCell(cell);
}

std::int32_t ScriptRun::Run(std::string_view name) {
  std::int32_t result = script_.OpenRead(ctx_, name) ? 1 : 0;
  exclusions_.Load(kExclusionFile);
  while (script_.ReadLine()) {
    const std::string& line = script_.line;
    if (Head(line, "SRC ")) {
      std::string path;
      script_.SkipFields(1);
      script_.ReadField(path);
      StripFileName(path);
      UpperCaseInPlace(path);
      area_ = exclusions_.FindArea(path);
    } else if (Head(line, "REF ")) {
      Reference();
    } else if (Head(line, "RWY ")) {
      Runway();
    } else if (skipping_) {
      continue;
    } else if (Head(line, "MOV ")) {
      Move(false);
    } else if (Head(line, "LIN ")) {
      Move(true);
    } else if (Head(line, "POI ")) {
      Point();
    } else if (Head(line, "PLY ")) {
      Polygon();
    } else if (Head(line, "LGT ")) {
      Light();
    } else if (Head(line, "EXI")) {
      break;
    }
  }
  script_.Close();
  // the last network is stored as every other was: when it is left
  pen_.Store();
  return result;
}

double ScriptRun::NextAngle(std::int32_t (*parse)(std::string_view, double*), bool skipField) {
  double value = 0.0;
  if (skipField) script_.SkipFields(1);
  script_.SkipBlanks();
  parse(std::string_view(script_.line).substr(std::min<std::size_t>(script_.cursor, script_.line.size())), &value);
  return value;
}

void ScriptRun::Reference() {
  double lat = NextAngle(ParseLatitude);
  double lon = NextAngle(ParseLongitude);
  pen_.SetReference(lat, lon);
  skipping_ = exclusions_.IsExcluded(area_, lat, lon);
}

void ScriptRun::Runway() {
  script_.SkipFields(5);
  double length = 0.0, width = 0.0;
  script_.ScanField("%lf", &length, 0);
  script_.ScanField("%lf", &width, 0);
  double lat1 = NextAngle(ParseLatitude, false);
  double lon1 = NextAngle(ParseLongitude);
  double lat2 = NextAngle(ParseLatitude);
  double lon2 = NextAngle(ParseLongitude);
  if (exclusions_.IsExcluded(area_, (lat1 + lat2) / 2.0, (lon1 + lon2) / 2.0)) return;
  pen_.AddRunway(lat1, lon1, lat2, lon2, TruncToLong(length), TruncToLong(width));
}

void ScriptRun::Move(bool draw) {
  auto& xyz = draw ? line_ : move_;
  auto& ints = draw ? lineInts_ : moveInts_;
  Numbers in(script_.line.c_str() + 4);
  in.Real(&xyz[0]) && in.Real(&xyz[1]) && in.Real(&xyz[2]) && in.Whole(&ints[0]) && in.Whole(&ints[1]);
  if (draw) {
    pen_.LineTo(xyz[0], xyz[1], xyz[2], ints[0], ints[1], 1);
  } else {
    pen_.MoveTo(xyz[0], xyz[1], xyz[2], ints[0], ints[1]);
  }
}

void ScriptRun::Point() {
  Numbers in(script_.line.c_str() + 4);
  in.Real(&point_[0]) && in.Real(&point_[1]) && in.Real(&point_[2]);
  network_.WritePlyPoint(point_[0], point_[1], point_[2]);
}

void ScriptRun::Polygon() {
  std::string text;  // a PLY line with nothing behind its head names its polygon with nothing
  script_.SkipFields(1);
  script_.ReadField(text);
  network_.EndPlyPolygon(text);
}

void ScriptRun::Light() {
  Numbers in(script_.line.c_str() + 4);
  std::int32_t count = 1;
  in.Whole(&lightKind_) && in.Real(&light_[0]) && in.Real(&light_[1]) && in.Real(&light_[2]) &&
      in.Real(&light_[3]) && in.Real(&light_[4]) && in.Real(&light_[5]) && in.Whole(&count);
  network_.WritePlyLight(lightKind_, light_[0], light_[1], light_[2], light_[3], light_[4], light_[5], count);
}

}  // namespace bgr
