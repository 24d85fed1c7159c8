#include "frame/text.h"

namespace bgr {

std::string_view SkipBlanks(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  return text.substr(i);
}

std::string_view SkipPast(std::string_view text, char ch) {
  std::size_t at = text.find(ch);
  return at == std::string_view::npos ? text.substr(text.size()) : text.substr(at + 1);
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

}  // namespace bgr
