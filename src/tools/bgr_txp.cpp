#include <string>

#include "formats/little_endian.h"
#include "formats/network_content.h"
#include "formats/tag_stream.h"
#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/options.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "platform/platform.h"
#include "tools/commands.h"

namespace bgr {
namespace {

constexpr const char* kBeginObject = "<bgno> ========== BEGIN OBJECT ==========";
constexpr const char* kEndObject = "<endo> ========== END OBJECT ==========";

// A text and its terminating zero; a null stream writes nothing.
void WriteMarker(std::FILE* stream, std::string_view text) {
  if (!stream) return;
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fputc(0, stream);
}

}  // namespace

int BgrTxp(RunContext& ctx, const Settings& s, std::string_view file) {
  int ok = 1;
  Stream in = WrapFileOpen(ctx, file, "rb");
  if (!in) {
    ok = 0;
    ctx.Report("BgrTxp source file '%s' not found", file);
  }
  TellWhatStandsInstead(ctx, file);  // also a file that opens but holds no network
  std::string dest(file);
  SetExtension(dest, "txp");
  OutputFile out;
  // a source named like its export would be replaced by it
  if (!OpenDestination(ctx, "BgrTxp", file, dest, out, ok)) return 0;
  std::FILE* f = out.get();
  OutputSink& console = ctx.console();
  std::int32_t pv = s.printValues;
  // only the values reach the export: the walk copies them alone, not the tags
  TagStream tags(console, in.get(), nullptr, pv);
  auto copyValues = [&](int doubles, bool withLong) {
    tags.CopyTo(f);
    for (int i = 0; i < doubles; ++i) tags.CopyDouble(0.0);
    if (withLong) tags.CopyLong(0);
    tags.CopyTo(nullptr);
  };
  std::int32_t count = 0;
  long countAt = 0;
  WriteMarker(f, kBeginObject);
  std::string tag;
  while (tags.ScanTag(tag)) {
    if (tag == "<orgn>") {
      WriteMarker(f, "<orgn> ---- origin ----");
      copyValues(3, true);
      if (pv) console.Put('\n');
    } else if (tag == "<vloc>") {
      if (count == 0) {
        WriteMarker(f, "<vert> ---- vertex pool ----");
        countAt = f ? std::ftell(f) : 0;
        WriteI32(f, count);
      }
      if (s.txpLevel == 0) {
        copyValues(3, false);
        if (pv) console.Put('\n');
      }
      count = WrapAdd(count, 1);
    }
  }
  tags.WarnIfCut(ctx, file);
  if (count > 0 && s.txpLevel == 0) {
    WriteMarker(f, "<poly> ---- polygon ----");
    WriteMarker(f, kBeginObject);
    WriteMarker(f, "<pvrt> ---- vertex reference list ----");
    WriteI32(f, count);
    for (std::int32_t i = 0; i < count; ++i) WriteI32(f, i);
    WriteMarker(f, kEndObject);
  }
  WriteMarker(f, kEndObject);
  if (s.txpLevel == 0 && count > 0 && f && std::fseek(f, countAt, SEEK_SET) == 0) WriteI32(f, count);
  WrapFileClose(in);
  return out.Finish(ctx, ok != 0, "BgrTxp") ? 1 : 0;
}

}  // namespace bgr
