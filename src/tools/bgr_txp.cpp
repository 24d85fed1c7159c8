#include <cstdio>
#include <string>

#include "formats/little_endian.h"
#include "frame/report.h"
#include "frame/text.h"
#include "tools/commands.h"
#include "tools/tag_stream.h"

namespace bgr {
namespace {

constexpr const char* kBeginObject = "<bgno> ========== BEGIN OBJECT ==========";
constexpr const char* kEndObject = "<endo> ========== END OBJECT ==========";

}  // namespace

void WriteMarker(std::FILE* stream, std::string_view text) {
  if (!stream) return;
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fputc(0, stream);
}

int BgrTxp(std::string_view file, std::int32_t level, std::int32_t pv) {
  int ok = 1;
  Stream in = WrapFileOpen(file, "rb");
  if (!in) {
    ok = 0;
    Report("BgrTxp source file '%s' not found", file);
  }
  std::string dest(file);
  SetExtension(dest, "txp");
  Stream out = WrapFileOpen(dest, "wb");
  if (!out) {
    ok = 0;
    Report("BgrTxp dest file '%s' not openable", dest);
  }
  std::FILE* f = out.get();
  std::int32_t count = 0;
  long countAt = 0;
  WriteMarker(f, kBeginObject);
  std::string tag;
  while (ScanTag(tag, in.get(), nullptr, pv)) {
    if (tag == "<orgn>") {
      WriteMarker(f, "<orgn> ---- origin ----");
      for (int i = 0; i < 3; ++i) CopyDouble(in.get(), f, 0.0, pv);
      CopyLong(in.get(), f, 0, 1, false, pv);
      if (pv) std::printf("\n");
    } else if (tag == "<vloc>") {
      if (count == 0) {
        WriteMarker(f, "<vert> ---- vertex pool ----");
        countAt = f ? std::ftell(f) : 0;
        WriteI32(f, count);
      }
      if (level == 0) {
        for (int i = 0; i < 3; ++i) CopyDouble(in.get(), f, 0.0, pv);
        if (pv) std::printf("\n");
      }
      count = WrapAdd(count, 1);
    }
  }
  if (count > 0 && level == 0) {
    WriteMarker(f, "<poly> ---- polygon ----");
    WriteMarker(f, kBeginObject);
    WriteMarker(f, "<pvrt> ---- vertex reference list ----");
    WriteI32(f, count);
    for (std::int32_t i = 0; i < count; ++i) WriteI32(f, i);
    WriteMarker(f, kEndObject);
  }
  WriteMarker(f, kEndObject);
  if (level == 0 && count > 0 && f && std::fseek(f, countAt, SEEK_SET) == 0) WriteI32(f, count);
  WrapFileClose(in);
  WrapFileClose(out);
  return ok;
}

}  // namespace bgr
