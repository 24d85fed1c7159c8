// Distances, angles and two line classes in the plane; the arithmetic that every
// drawing and repair step rests on. Angles are radians from +x toward +y.
#pragma once

#include <cstdint>

#include "geometry/texpoints.h"

namespace bgr {

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kVerticalSlope = 99999.9;  // marks a line with dx 0

// v + 0.5 cut for v >= 0; negatives are cut, not rounded.
std::int32_t RoundCoord(double v);
double Hypotenuse(double dx, double dy);
double PointDistance(double x1, double y1, double x2, double y2);
// -pi/2 .. 3pi/2
double PointAngle(double x1, double y1, double x2, double y2);
double TurnAngle(double x1, double y1, double x2, double y2, double x3, double y3);
double NorthFeet(double lat1, double lon1, double lat2, double lon2, double equatorFeet, double meridianFeet);
double EastFeet(double lat1, double lon1, double lat2, double lon2, double equatorFeet, double meridianFeet);
void InitBandTable();

struct IntLine {
  std::int32_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  std::int32_t dy = 0, dx = 0;
  double slope = 0;
  std::int32_t intercept = 0;
  double norm = 0;

  void Set(std::int32_t ax, std::int32_t ay, std::int32_t bx, std::int32_t by);
  std::int32_t YAtX(std::int32_t x) const;
  std::int32_t Distance(std::int32_t x, std::int32_t y) const;
  bool IsNear(std::int32_t x, std::int32_t y, std::int32_t tolerance) const;
};

struct PlaneLine {
  double x1, y1, x2, y2;
  double dy, dx;
  double slope;
  double intercept;
  double norm;
  double minX, maxX, minY, maxY;
  double length;
  double angle;
  std::int32_t flat;

  void Set(double ax, double ay, double bx, double by);
  // Only what YAtX and XAtY read: the clipper cuts millions of lines and needs
  // no angle or length.
  void SetForCuts(double ax, double ay, double bx, double by);
  void SetFromAngle(double x, double y, double a);
  void SetFromPoints(const TEXPOINT& p1, const TEXPOINT& p2);
  void GetEnds(double* ax, double* ay, double* bx, double* by) const;
  void GetEndsLong(std::int32_t* ax, std::int32_t* ay, std::int32_t* bx, std::int32_t* by) const;
  double YAtX(double x) const;
  double XAtY(double y) const;
  double Offset(double x, double y) const;
  std::int32_t SideOf(double x, double y) const;
  double LineDistance(double x, double y) const;
  bool Intersect(const PlaneLine& other, double* x, double* y, double minAngle) const;
  bool SetBisector(const PlaneLine& a, const PlaneLine& b, double minAngle);
  double SegmentDistance(double x, double y) const;
  bool IsNear(double x, double y, double tolerance) const { return SegmentDistance(x, y) <= tolerance; }
  void MoveEnds(double dx1, double dy1, double dx2, double dy2);
  void Extend(double before, double after);
  void Shift(double d);
};

}  // namespace bgr
