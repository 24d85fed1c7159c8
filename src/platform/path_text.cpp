#include "platform/path_text.h"

#include <cctype>

namespace platform {

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

char FoldCase(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

void UpperCaseInPlace(std::string& text) {
  for (char& c : text) c = FoldCase(c);
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (FoldCase(a[i]) != FoldCase(b[i])) return false;
  }
  return true;
}

int CompareNoCase(std::string_view a, std::string_view b, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    int ca = i < a.size() ? static_cast<unsigned char>(FoldCase(a[i])) : 0;
    int cb = i < b.size() ? static_cast<unsigned char>(FoldCase(b[i])) : 0;
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

bool WildcardMatch(std::string_view pattern, std::string_view name) {
  std::size_t p = 0, n = 0, starP = std::string_view::npos, starN = 0;
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == '?' || (pattern[p] != '*' && FoldCase(pattern[p]) == FoldCase(name[n])))) {
      ++p;
      ++n;
    } else if (p < pattern.size() && pattern[p] == '*') {
      starP = p++;
      starN = n;
    } else if (starP != std::string_view::npos) {
      p = starP + 1;
      n = ++starN;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

bool PathIsRooted(std::string_view path) {
  if (path.empty()) return false;
  return IsSeparator(path[0]) || (path.size() > 1 && path[1] == ':');
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

std::string_view FolderPart(std::string_view path) {
  std::size_t cut = path.find_last_of("\\/");
  return cut == std::string_view::npos ? std::string_view{} : path.substr(0, cut + 1);
}

std::string& StripFileName(std::string& path) {
  std::size_t cut = path.find_last_of("\\/");
  path.resize(cut == std::string::npos ? 0 : cut);
  return path;
}

}  // namespace platform
