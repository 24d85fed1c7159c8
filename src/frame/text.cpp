#include "frame/text.h"

#include <cctype>
#include <cmath>
#include <limits>

namespace bgr {
namespace {
bool IsSep(char c) { return c == '\\' || c == '/'; }
int Upper(char c) { return std::toupper(static_cast<unsigned char>(c)); }
}  // namespace

bool PathIsRooted(std::string_view path) {
  if (path.empty()) return false;
  return IsSep(path[0]) || (path.size() > 1 && path[1] == ':');
}

std::size_t FindLastInName(std::string_view name, char ch) {
  for (std::size_t i = name.size(); i > 1; --i) {
    if (name[i - 1] == ch) return i - 1;
  }
  return name.size();
}

void SetExtension(std::string& name, std::string_view ext) {
  name.resize(FindLastInName(name, '.'));
  name += '.';
  name += ext;
}

bool HasExtension(std::string_view name, std::string_view ext) {
  std::size_t dot = FindLastInName(name, '.');
  std::string_view have = dot < name.size() ? name.substr(dot + 1) : std::string_view{};
  return CompareNoCase(have, ext) == 0;
}

std::string_view FileNamePart(std::string_view path) {
  std::size_t cut = path.find_last_of("\\/");
  return cut == std::string_view::npos ? path : path.substr(cut + 1);
}

std::string& StripFileName(std::string& path) {
  std::size_t cut = path.find_last_of("\\/");
  path.resize(cut == std::string::npos ? 0 : cut);
  return path;
}

std::int32_t AbsLong(std::int32_t value) { return value < 0 ? WrapSub(0, value) : value; }

void UpperCaseInPlace(std::string& text) {
  for (char& c : text) c = static_cast<char>(Upper(c));
}

std::string_view SkipBlanks(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  return text.substr(i);
}

std::string_view SkipPast(std::string_view text, char ch) {
  std::size_t at = text.find(ch);
  return at == std::string_view::npos ? text.substr(text.size()) : text.substr(at + 1);
}

int CompareNoCase(std::string_view a, std::string_view b, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    int ca = i < a.size() ? Upper(a[i]) : 0;
    int cb = i < b.size() ? Upper(b[i]) : 0;
    if (ca != cb) return ca - cb;
    if (ca == 0) return 0;
  }
  return 0;
}

std::size_t FindNoCase(std::string_view text, std::string_view what, std::int32_t length) {
  std::size_t n = length < 0 ? what.size() : static_cast<std::size_t>(length);
  if (n > what.size()) n = what.size();
  for (std::size_t at = 0; at + n <= text.size(); ++at) {
    if (CompareNoCase(text.substr(at, n), what.substr(0, n), n) == 0) return at;
  }
  return std::string_view::npos;
}

std::string NextToken(std::string_view& cursor) {
  cursor = SkipBlanks(cursor);
  std::string out;
  if (!cursor.empty() && cursor[0] == '"') {
    std::size_t close = cursor.find('"', 1);
    if (close == std::string_view::npos) {
      out = cursor.substr(1);
      cursor = cursor.substr(cursor.size());
    } else {
      out = cursor.substr(1, close - 1);
      cursor = cursor.substr(close + 1);
    }
    return out;
  }
  std::size_t end = 0;
  while (end < cursor.size() && cursor[end] != ' ' && cursor[end] != '\t') ++end;
  out = cursor.substr(0, end);
  cursor = cursor.substr(end);
  return out;
}

std::int32_t TruncToLong(double v) {
  // The source system's processor gives its "integer indefinite", the lowest long,
  // for NaN and for every value out of range.
  if (!(v > -2147483649.0 && v < 2147483648.0)) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(v);
}

}  // namespace bgr
