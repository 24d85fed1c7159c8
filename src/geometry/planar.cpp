#include "geometry/planar.h"

#include <algorithm>
#include <cmath>

#include "frame/int32_math.h"
#include "geometry/ref_cell.h"

namespace bgr {

std::int32_t RoundCoord(double v) { return v >= 0 ? TruncToLong(v + 0.5) : TruncToLong(v); }

double Hypotenuse(double dx, double dy) { return std::sqrt(dx * dx + dy * dy); }

double PointDistance(double x1, double y1, double x2, double y2) { return Hypotenuse(x2 - x1, y2 - y1); }

double PointAngle(double x1, double y1, double x2, double y2) {
  double dx = x2 - x1;
  double dy = y2 - y1;
  if (dx == 0) return dy >= 0 ? kPi / 2 : -kPi / 2;
  if (dx > 0) return std::atan(dy / dx);
  return std::atan(dy / dx) + kPi;
}

double TurnAngle(double x1, double y1, double x2, double y2, double x3, double y3) {
  double t = PointAngle(x2, y2, x3, y3) - PointAngle(x1, y1, x2, y2);
  if (t < -kPi) {
    t += 2 * kPi;
  } else if (t > kPi) {
    t -= 2 * kPi;
  }
  return t;
}

double NorthFeet(double lat1, double, double lat2, double, double, double meridianFeet) {
  return (lat2 - lat1) * meridianFeet / 1296000;  // arc-seconds of the full circle
}

double EastFeet(double lat1, double lon1, double, double lon2, double equatorFeet, double) {
  double c = std::cos(lat1 / 3600 * kPi / 180);
  // within a thousandth of the pole a degree of longitude has no width
  if (c < -0.001 || c > 0.001) return (lon2 - lon1) * equatorFeet * c / 1296000;
  return 0.0;
}

void InitBandTable() { BandEdge(128); }

void IntLine::Set(std::int32_t ax, std::int32_t ay, std::int32_t bx, std::int32_t by) {
  x1 = ax;
  y1 = ay;
  x2 = bx;
  y2 = by;
  dy = WrapSub(y2, y1);
  dx = WrapSub(x2, x1);
  if (dx != 0) {
    slope = static_cast<double>(dy) / dx;
    intercept = WrapAdd(SafeDiv(WrapMul(WrapSub(0, x1), dy), dx), y1);
  } else {
    slope = kVerticalSlope;
    intercept = 0;
  }
  norm = std::sqrt(slope * slope + 1);
}

std::int32_t IntLine::YAtX(std::int32_t x) const {
  if (dx == 0) return 0;
  return WrapAdd(SafeDiv(WrapMul(dy, x), dx), intercept);
}

std::int32_t IntLine::Distance(std::int32_t x, std::int32_t y) const {
  if (dx == 0) return AbsLong(WrapSub(x, x1));
  if (dy == 0) return AbsLong(WrapSub(y, y1));
  return AbsLong(TruncToLong((x * slope + (-static_cast<double>(y)) + intercept) / norm));
}

bool IntLine::IsNear(std::int32_t x, std::int32_t y, std::int32_t tolerance) const {
  if (Distance(x, y) > tolerance) return false;
  std::int64_t lowX = std::min(x1, x2), highX = std::max(x1, x2);
  std::int64_t lowY = std::min(y1, y2), highY = std::max(y1, y2);
  return x >= lowX - tolerance && x <= highX + tolerance && y >= lowY - tolerance && y <= highY + tolerance;
}

void PlaneLine::SetForCuts(double ax, double ay, double bx, double by) {
  *this = PlaneLine{};
  x1 = ax;
  y1 = ay;
  x2 = bx;
  y2 = by;
  dy = y2 - y1;
  dx = x2 - x1;
  intercept = dx != 0 ? (-x1 * dy) / dx + y1 : 0.0;
}

void PlaneLine::Set(double ax, double ay, double bx, double by) {
  SetForCuts(ax, ay, bx, by);
  slope = dx != 0 ? dy / dx : kVerticalSlope;
  norm = std::sqrt(slope * slope + 1);
  minX = std::min(x1, x2);
  maxX = std::max(x1, x2);
  minY = std::min(y1, y2);
  maxY = std::max(y1, y2);
  flat = maxY - minY <= maxX - minX ? 1 : 0;
  length = std::sqrt(dx * dx + dy * dy);
  angle = PointAngle(x1, y1, x2, y2);
}

void PlaneLine::SetFromAngle(double x, double y, double a) {
  Set(x, y, x + 1000 * std::cos(a), y + 1000 * std::sin(a));
}

void PlaneLine::SetFromPoints(const TEXPOINT& p1, const TEXPOINT& p2) { Set(p1.x, p1.z, p2.x, p2.z); }

void PlaneLine::GetEnds(double* ax, double* ay, double* bx, double* by) const {
  *ax = x1;
  *ay = y1;
  *bx = x2;
  *by = y2;
}

void PlaneLine::GetEndsLong(std::int32_t* ax, std::int32_t* ay, std::int32_t* bx, std::int32_t* by) const {
  *ax = TruncToLong(x1);
  *ay = TruncToLong(y1);
  *bx = TruncToLong(x2);
  *by = TruncToLong(y2);
}

double PlaneLine::YAtX(double x) const { return dx == 0 ? 0.0 : x * dy / dx + intercept; }

double PlaneLine::XAtY(double y) const { return dy == 0 ? 0.0 : (y - y1) * dx / dy + x1; }

double PlaneLine::Offset(double x, double y) const { return dx != 0 ? y - YAtX(x) : x - XAtY(y); }

std::int32_t PlaneLine::SideOf(double x, double y) const {
  double o = Offset(x, y);
  return o < 0 ? -1 : (o > 0 ? 1 : 0);
}

double PlaneLine::LineDistance(double x, double y) const {
  if (dx == 0) return std::fabs(x - x1);
  if (dy == 0) return std::fabs(y - y1);
  return std::fabs((x * slope + (-1.0) * y + intercept) / norm);
}

namespace {
// Five degrees short of the full and of the half circle: a difference from
// there on counts less a full or a half circle.
constexpr double kNearFullCircle = 6.19591884457987;
constexpr double kNearHalfCircle = 3.0543261909900767;
}  // namespace

bool PlaneLine::Intersect(const PlaneLine& b, double* x, double* y, double minAngle) const {
  double d = slope - b.slope;
  if (d == 0) return false;
  if (minAngle != 0) {
    double a = std::fabs(angle - b.angle);
    if (a >= kNearFullCircle) {
      a -= 2 * kPi;
    } else if (a >= kNearHalfCircle) {
      a -= kPi;
    }
    if (std::fabs(a) < minAngle) return false;
  }
  if (slope == kVerticalSlope) {
    *x = x1;
    *y = b.YAtX(*x);
  } else if (b.slope == kVerticalSlope) {
    *x = b.x1;
    *y = YAtX(*x);
  } else {
    *x = (b.intercept - intercept) / d;
    *y = YAtX(*x);
  }
  return true;
}

bool PlaneLine::SetBisector(const PlaneLine& a, const PlaneLine& b, double minAngle) {
  double x, y;
  if (!a.Intersect(b, &x, &y, minAngle)) return false;
  double mean = (a.angle + b.angle) / 2;
  double diff = b.angle - a.angle;
  if (diff < -kPi || diff > kPi) mean += kPi;
  SetFromAngle(x, y, mean);
  return true;
}

double PlaneLine::SegmentDistance(double x, double y) const {
  double v = flat ? x : y;
  double low = flat ? minX : minY;
  double high = flat ? maxX : maxY;
  double end1 = flat ? x1 : y1;
  double limit;
  if (v < low) {
    limit = low;
  } else if (v > high) {
    limit = high;
  } else {
    return LineDistance(x, y);
  }
  return limit == end1 ? PointDistance(x, y, x1, y1) : PointDistance(x, y, x2, y2);
}

void PlaneLine::MoveEnds(double dx1, double dy1, double dx2, double dy2) {
  Set(x1 + dx1, y1 + dy1, x2 + dx2, y2 + dy2);
}

void PlaneLine::Extend(double before, double after) {
  if (length == 0) return;
  MoveEnds(-(before / length * dx), -(before / length * dy), after / length * dx, after / length * dy);
}

void PlaneLine::Shift(double d) {
  if (length == 0) return;
  MoveEnds(-(d / length) * dy, d / length * dx, -(d / length) * dy, d / length * dx);
}

}  // namespace bgr
