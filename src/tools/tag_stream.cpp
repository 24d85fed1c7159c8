#include "tools/tag_stream.h"

#include "formats/little_endian.h"
#include "frame/text.h"

namespace bgr {

bool ScanTag(std::string& tag, std::FILE* source, std::FILE* copy, std::int32_t printValues) {
  static const char kHex[] = "0123456789ABCDEF";
  enum { kBefore, kInTag, kBehind } state = kBefore;
  tag.clear();
  if (!source) return false;
  for (;;) {
    int c = std::getc(source);
    if (c == EOF) return false;
    if (copy) std::putc(c, copy);
    if (state == kBefore) {
      if (c != '<') {
        if (printValues != 0) {
          char text[3] = {' ', kHex[c >> 4], kHex[c & 15]};
          std::fwrite(text, 1, 3, stdout);
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
  if (printValues != 0) std::printf(" %lf", sum);
  return sum;
}

std::int32_t CopyLong(std::FILE* source, std::FILE* copy, std::int32_t add, std::int32_t divisor, bool quiet,
                      std::int32_t printValues) {
  std::int32_t value = 0;
  ReadI32(source, value);
  std::int32_t sum = WrapAdd(value, add);
  if (copy) WriteI32(copy, sum);
  if (printValues != 0 && !quiet) std::printf(" %d", SafeDiv(sum, divisor));
  return sum;
}

}  // namespace bgr
