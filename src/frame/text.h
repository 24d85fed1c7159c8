// Path and text helpers shared by all commands. Paths are texts with backslashes;
// a '/' is accepted wherever a backslash separates folders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bgr {

bool PathIsRooted(std::string_view path);

// Position of the last 'ch' in the whole name, folders included, searched down to
// but not including the first character; name.size() when there is none.
std::size_t FindLastInName(std::string_view name, char ch);

// Puts "." and ext at the last dot (found by FindLastInName), or appends them.
void SetExtension(std::string& name, std::string_view ext);
bool HasExtension(std::string_view name, std::string_view ext);

std::string_view FileNamePart(std::string_view path);
// Cuts the path to its folder without the closing separator.
std::string& StripFileName(std::string& path);

std::int32_t AbsLong(std::int32_t value);
void UpperCaseInPlace(std::string& text);
std::string_view SkipBlanks(std::string_view text);
std::string_view SkipPast(std::string_view text, char ch);
// First place where 'length' characters (all of 'what' for -1) equal 'what'
// ignoring case; npos when there is none.
std::size_t FindNoCase(std::string_view text, std::string_view what, std::int32_t length);
// Next blank-separated or double-quoted field at the cursor; the cursor moves on.
std::string NextToken(std::string_view& cursor);

// Compares two texts folded to upper case, the end counting as a zero character;
// with a length above 0 only that many characters count.
int CompareNoCase(std::string_view a, std::string_view b, std::size_t length = std::string_view::npos);

// Sum of two longs, wrapped at 32 bits as the source system's arithmetic does.
inline std::int32_t WrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapSub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapMul(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
// Truncating division that gives what the source system gives for INT32_MIN / -1
// (a wrap) and 0 instead of a trap for a zero divisor.
inline std::int32_t SafeDiv(std::int32_t a, std::int32_t b) {
  if (b == 0) return 0;
  if (b == -1) return WrapSub(0, a);
  return a / b;
}
// A double cut toward zero to a long; NaN and values beyond the range give the
// lowest long instead of being undefined.
std::int32_t TruncToLong(double v);

}  // namespace bgr
