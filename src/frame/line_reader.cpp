#include "frame/line_reader.h"

#include "platform/platform.h"

namespace bgr {

bool ReadLimitedLine(std::FILE* f, std::string& line) {
  line.clear();
  if (!f) return false;
  bool any = false;
  while (line.size() < static_cast<std::size_t>(kMaxLineChars)) {
    int c = platform::GetByte(f);
    if (c == EOF) break;
    any = true;
    line += static_cast<char>(c);
    if (c == '\n') break;
  }
  std::size_t cut = line.find_first_of(std::string_view("\n\0", 2));
  if (cut != std::string::npos) line.resize(cut);
  return any;
}

}  // namespace bgr
