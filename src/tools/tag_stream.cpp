#include "tools/tag_stream.h"

#include <charconv>

#include "formats/little_endian.h"
#include "frame/text.h"
#include "platform/platform.h"

namespace bgr {

bool ScanTag(std::string& tag, std::FILE* source, std::FILE* copy, std::int32_t printValues) {
  static const char kHex[] = "0123456789ABCDEF";
  enum { kBefore, kInTag, kBehind } state = kBefore;
  tag.clear();
  if (!source) return false;
  for (;;) {
    int c = platform::GetByte(source);
    if (c == EOF) return false;
    if (copy) platform::PutByte(c, copy);
    if (state == kBefore) {
      if (c != '<') {
        if (printValues != 0) {
          platform::PutByte(' ', stdout);
          platform::PutByte(kHex[c >> 4], stdout);
          platform::PutByte(kHex[c & 15], stdout);
        }
        continue;
      }
      state = kInTag;
    }
    if (state == kInTag) {
      if (tag.size() >= kMaxTagLength) return false;
      tag += static_cast<char>(c);
      if (c == '>') state = kBehind;
      continue;
    }
    return c == 0;
  }
}

double CopyDouble(std::FILE* source, std::FILE* copy, double add, std::int32_t printValues) {
  double value = 0.0;
  ReadF64(source, value);
  double sum = value + add;
  if (copy) WriteF64(copy, sum);
  if (printValues != 0) {
    // " %lf" of printf, without parsing the format for every value
    char text[400] = {' '};
    auto end = std::to_chars(text + 1, text + sizeof text, sum, std::chars_format::fixed, 6).ptr;
    std::fwrite(text, 1, static_cast<std::size_t>(end - text), stdout);
  }
  return sum;
}

std::int32_t CopyLong(std::FILE* source, std::FILE* copy, std::int32_t add, std::int32_t divisor, bool quiet,
                      std::int32_t printValues) {
  std::int32_t value = 0;
  ReadI32(source, value);
  std::int32_t sum = WrapAdd(value, add);
  if (copy) WriteI32(copy, sum);
  if (printValues != 0 && !quiet) {
    char text[16] = {' '};
    auto end = std::to_chars(text + 1, text + sizeof text, SafeDiv(sum, divisor)).ptr;
    std::fwrite(text, 1, static_cast<std::size_t>(end - text), stdout);
  }
  return sum;
}

CopyStreams::CopyStreams(std::string_view source, std::string_view destination) {
  in = WrapFileOpen(source, "rb");
  if (!in) {
    ok = 0;
    Report("BgrMove source file '%s' not found", source);
  }
  out = WrapFileOpen(destination, "wb");
  if (!out) {
    ok = 0;
    Report("BgrMove dest file '%s' not openable", destination);
  }
}

}  // namespace bgr
