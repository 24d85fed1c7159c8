// Walks a BGR stream tag by tag without knowing its records, copying and echoing
// what passes; the base of every byte-copying command.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "frame/report.h"

namespace bgr {

inline constexpr std::size_t kMaxTagLength = 62;

// Reads on to the next tag "<...>" and its zero byte. Bytes before the tag are
// dumped as " %02X" when printValues is set; everything read goes to copy.
bool ScanTag(std::string& tag, std::FILE* source, std::FILE* copy, std::int32_t printValues);
double CopyDouble(std::FILE* source, std::FILE* copy, double add, std::int32_t printValues);
std::int32_t CopyLong(std::FILE* source, std::FILE* copy, std::int32_t add, std::int32_t divisor, bool quiet,
                      std::int32_t printValues);

// The source and destination of a byte-copying command (move, edge delete);
// a failed open is reported in the commands' words and clears 'ok'.
struct CopyStreams {
  CopyStreams(std::string_view source, std::string_view destination);
  Stream in;
  Stream out;
  int ok = 1;
};

}  // namespace bgr
