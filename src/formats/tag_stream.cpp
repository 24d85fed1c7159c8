#include "formats/tag_stream.h"

#include <charconv>

#include "formats/little_endian.h"
#include "formats/network_content.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "platform/platform.h"

namespace bgr {

bool TagStream::ScanTag(std::string& tag) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  enum { kBefore, kInTag, kBehind } state = kBefore;
  tag.clear();
  if (!source_) return false;
  long start = read_;
  for (;;) {
    int c = platform::GetByte(source_);
    if (c == EOF) return false;
    ++read_;
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
      if (tag.size() >= kMaxTagLength) {
        cutAt_ = start;
        return false;
      }
      tag += static_cast<char>(c);
      if (c == '>') state = kBehind;
      continue;
    }
    if (c != 0) cutAt_ = start;
    return c == 0;
  }
}

void TagStream::WarnIfCut(RunContext& ctx, std::string_view name) const {
  if (cutAt_ < 0) return;
  ctx.diagnostics().Printf(
      "bgrtool: warning: '%.*s': the walk stopped at byte %ld, where bytes inside a value look like a tag; "
      "nothing after them was read\n",
      static_cast<int>(name.size()), name.data(), cutAt_);
}

double TagStream::CopyDouble(double add) {
  double value = 0.0;  // a value cut short by the end of the file reads as 0
  if (ReadF64(source_, value)) read_ += 8;
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
  if (ReadI32(source_, value)) read_ += 4;
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
  if (platform::SameFile(source, destination)) {
    ok = 0;
    ctx.Report("BgrMove source and destination are the same file '%s'", destination);
    return;
  }
  in = WrapFileOpen(ctx, source, "rb");
  if (!in) {
    ok = 0;
    ctx.Report("BgrMove source file '%s' not found", source);
  }
  TellWhatStandsInstead(ctx, source);  // also a file that opens but holds no network
  OpenDestination(ctx, "BgrMove", source, destination, out, ok);
}

int CopyStreams::Finish(RunContext& ctx) {
  WrapFileClose(in);
  return out.Finish(ctx, ok != 0, "BgrMove") ? 1 : 0;
}

}  // namespace bgr
