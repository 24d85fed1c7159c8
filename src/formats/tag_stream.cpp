#include "formats/tag_stream.h"

#include <charconv>

#include "formats/little_endian.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "platform/platform.h"

namespace bgr {

bool TagStream::ScanTag(std::string& tag) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  enum { kBefore, kInTag, kBehind } state = kBefore;
  tag.clear();
  if (!source_) return false;
  for (;;) {
    int c = platform::GetByte(source_);
    if (c == EOF) return false;
    CopyByte(c);
    if (state == kBefore) {
      if (c != '<') {
        if (printValues_ != 0) {
          console_.Put(' ');
          console_.Put(kHex[c >> 4]);
          console_.Put(kHex[c & 15]);
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

double TagStream::CopyDouble(double add) {
  double value = 0.0;  // a value cut short by the end of the file reads as 0
  ReadF64(source_, value);
  double sum = value + add;
  if (copy_ && WriteF64(copy_, sum)) copied_ += 8;
  if (printValues_ != 0) {
    // " %lf" of printf, without parsing the format for every value
    char text[400] = {' '};
    auto end = std::to_chars(text + 1, text + sizeof text, sum, std::chars_format::fixed, 6).ptr;
    console_.Write(std::string_view(text, static_cast<std::size_t>(end - text)));
  }
  return sum;
}

std::int32_t TagStream::CopyLong(std::int32_t add, std::int32_t divisor, bool quiet) {
  std::int32_t value = 0;
  ReadI32(source_, value);
  std::int32_t sum = WrapAdd(value, add);
  if (copy_ && WriteI32(copy_, sum)) copied_ += 4;
  if (printValues_ != 0 && !quiet) {
    char text[16] = {' '};
    auto end = std::to_chars(text + 1, text + sizeof text, SafeDiv(sum, divisor)).ptr;
    console_.Write(std::string_view(text, static_cast<std::size_t>(end - text)));
  }
  return sum;
}

bool TagStream::RewindCopy(long position) {
  if (!copy_ || std::fseek(copy_, position, SEEK_SET) != 0) return false;
  copied_ = position;
  return true;
}

CopyStreams::CopyStreams(RunContext& ctx, std::string_view source, std::string_view destination) {
  in = WrapFileOpen(ctx, source, "rb");
  if (!in) {
    ok = 0;
    ctx.Report("BgrMove source file '%s' not found", source);
  }
  out = WrapFileOpen(ctx, destination, "wb");
  if (!out) {
    ok = 0;
    ctx.Report("BgrMove dest file '%s' not openable", destination);
  }
}

bool CopyStreams::Close(RunContext& ctx, std::string_view destination) {
  WrapFileClose(in);
  if (!out || WrapFileClose(out)) return true;
  ctx.Report("BgrMove cannot write '%s': %s", destination, 0, 0, out.error());
  return false;
}

}  // namespace bgr
