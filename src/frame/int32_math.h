// Arithmetic on longs (32 bits) as the data's home system does it: sums and
// products wrap, doubles cut toward zero, nothing is undefined.
#pragma once

#include <cstdint>
#include <limits>

namespace bgr {

inline std::int32_t WrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapSub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapMul(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
// Truncating division that gives what the home system gives for INT32_MIN / -1
// (a wrap) and 0 instead of a trap for a zero divisor.
inline std::int32_t SafeDiv(std::int32_t a, std::int32_t b) {
  if (b == 0) return 0;
  if (b == -1) return WrapSub(0, a);
  return a / b;
}
inline std::int32_t AbsLong(std::int32_t value) { return value < 0 ? WrapSub(0, value) : value; }

// A double cut toward zero to a long. The home system's processor gives its
// "integer indefinite", the lowest long, for NaN and every value out of range.
inline std::int32_t TruncToLong(double v) {
  if (!(v > -2147483649.0 && v < 2147483648.0)) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(v);
}

}  // namespace bgr
