#include "script/script_run.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "geometry/planar.h"
#include "platform/platform.h"
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
    : ctx_(ctx), network_(ctx), database_(ctx), exclusions_(ctx), pen_(ctx, network_, database_) {
  network_.SetRefCell(cell);
}

std::int32_t ScriptRun::Run(std::string_view name) {
  std::int32_t result = script_.OpenRead(ctx_, name) ? 1 : 0;
  if (result == 0) {
    ctx_.diagnostics().Printf("bgrtool: cannot read the script '%.*s': %s\n", static_cast<int>(name.size()),
                              name.data(), WhyUnreadable(name).c_str());
  }
  exclusions_.Load(kExclusionFile);
  lastProgress_ = platform::NowMs();
  while (script_.ReadLine()) {
    const std::string& line = script_.line;
    pen_.tally.line = script_.lineNumber;
    if ((script_.lineNumber & 255) == 0) ShowProgress();
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
  pen_.SaveNetwork();
  if (result != 0) TellSummary(name);
  return result;
}

void ScriptRun::ShowProgress() {
  constexpr std::int64_t kEveryMs = 250;
  if (!ctx_.diagnostics().terminal() || platform::NowMs() - lastProgress_ < kEveryMs) return;
  lastProgress_ = platform::NowMs();
  progressShown_ = true;
  // one line that each report overwrites; the summary clears it
  ctx_.diagnostics().Printf("\rbgrtool: line %d, %d networks written, %d runways drawn ", script_.lineNumber,
                            static_cast<int>(pen_.tally.written.size()), runwaysDrawn_);
}

void ScriptRun::Refuse(Refusal why) {
  if (refused_[why]++ == 0) firstRefused_[why] = script_.lineNumber;
}

void ScriptRun::CheckRunwayEnds(double length, double lat1, double lon1, double lat2, double lon2) {
  // the ends as AddRunway measures them; a row whose ends are placeholders lies far from its length
  double apart = std::hypot(NorthFeet(lat1, lon1, lat2, lon2, kEquatorFeet, kMeridianFeet),
                            EastFeet(lat1, lon1, lat2, lon2, kEquatorFeet, kMeridianFeet));
  if (length < kShortestRunway || (apart <= 2.0 * length && 2.0 * apart >= length)) return;
  if (oddRunways_++ > 0) return;
  firstOdd_ = script_.lineNumber;
  oddApart_ = apart;
  oddLength_ = length;
}

void ScriptRun::TellSummary(std::string_view name) const {
  OutputSink& err = ctx_.diagnostics();
  if (progressShown_) err.Printf("\r%72s\r", "");
  const ScriptTally& t = pen_.tally;
  auto plural = [](std::int64_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
  };
  auto where = [](std::int32_t n, std::int32_t line) {
    return std::string(n == 1 ? " (line " : " (first on line ") + std::to_string(line) + ")";
  };
  std::size_t fresh = 0;
  for (const std::string& written : t.written) fresh += t.existed.count(written) && !t.existed.at(written);
  std::string text = "bgrtool: script '" + std::string(name) + "': " +
                     plural(script_.lineNumber, "line", "lines") + " read, " +
                     plural(static_cast<std::int64_t>(t.written.size()), "network", "networks") + " written (" +
                     std::to_string(fresh) + " new, " + std::to_string(t.written.size() - fresh) + " updated)";
  if (t.notSaved > 0) text += ", " + std::to_string(t.notSaved) + " not saved";
  err.Printf("%s\n", text.c_str());
  std::int32_t refused = 0;
  for (std::int32_t n : refused_) refused += n;
  if (runwaysDrawn_ + refused > 0) {
    static constexpr const char* kWhy[kRefusals] = {"shorter than 750 ft", "in an excluded box",
                                                    "with no airport of the database at their first end",
                                                    "at an airport outside the -ti cell"};
    text = "bgrtool: runways: " + std::to_string(runwaysDrawn_) + " drawn, " + std::to_string(refused) + " refused";
    const char* joint = ": ";
    for (int i = 0; i < kRefusals; ++i) {
      if (refused_[i] == 0) continue;
      text += joint + std::to_string(refused_[i]) + " " + kWhy[i] + where(refused_[i], firstRefused_[i]);
      joint = ", ";
    }
    err.Printf("%s\n", text.c_str());
  }
  if (oddRunways_ > 0) {
    err.Printf("bgrtool: warning: %s whose ends don't fit the length%s: %.0f ft between the ends, %.0f ft stated\n",
               plural(oddRunways_, "runway", "runways").c_str(), where(oddRunways_, firstOdd_).c_str(), oddApart_,
               oddLength_);
  }
  if (t.noAirport + t.otherCell > 0) {
    text = "bgrtool: reference points that opened no network: ";
    if (t.noAirport > 0) text += std::to_string(t.noAirport) + " with no airport of the database within about 283\"" +
                                 where(t.noAirport, t.firstNoAirport);
    if (t.noAirport > 0 && t.otherCell > 0) text += ", ";
    if (t.otherCell > 0) text += std::to_string(t.otherCell) + " at an airport outside the -ti cell" +
                                 where(t.otherCell, t.firstOtherCell);
    err.Printf("%s\n", text.c_str());
  }
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
  CheckRunwayEnds(length, lat1, lon1, lat2, lon2);
  if (exclusions_.IsExcluded(area_, (lat1 + lat2) / 2.0, (lon1 + lon2) / 2.0)) return Refuse(kExcluded);
  if (pen_.AddRunway(lat1, lon1, lat2, lon2, TruncToLong(length), TruncToLong(width)) == 0) return Refuse(kShort);
  switch (pen_.tally.why) {
    case ScriptTally::NoNetwork::kNoAirport: return Refuse(kNoAirport);
    case ScriptTally::NoNetwork::kOtherCell: return Refuse(kOtherCell);
    case ScriptTally::NoNetwork::kNone: ++runwaysDrawn_; break;
  }
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
