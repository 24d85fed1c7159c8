#pragma once

#include <cstdio>
#include <string>

namespace bgr {

inline constexpr int kMaxLineChars = 254;

// Reads at most 254 characters, up to and including a line feed; a longer line
// comes in pieces. The line ends at its first line feed or zero byte. False at
// the end of the file when nothing was read.
bool ReadLimitedLine(std::FILE* f, std::string& line);

}  // namespace bgr
