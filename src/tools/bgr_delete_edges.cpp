#include <string>

#include "formats/tag_stream.h"
#include "frame/options.h"
#include "frame/run_context.h"
#include "platform/platform.h"
#include "tools/commands.h"

namespace bgr {

int BgrDeleteEdges(RunContext& ctx, const Settings& s, std::string_view source, std::string_view destination) {
  CopyStreams files(ctx, source, destination);
  OutputSink& out = ctx.console();
  std::int32_t pv = s.printValues;
  TagStream tags(out, files.in.get(), files.out.get(), pv);
  long mark = 0;  // where the record being read begins in the copy
  std::string tag;
  while (tags.ScanTag(tag)) {
    if (tag != "<edge>") {
      mark = tags.copied();
      continue;
    }
    if (pv) out.Printf("%s ", tag.c_str());
    std::int32_t from = tags.CopyLong(0);
    std::int32_t to = tags.CopyLong(0);
    if (pv) out.Put('\n');
    bool match = (from == s.vmin && (to == s.vmax || s.vmax == -1)) || (to == s.vmin && (from == s.vmax || s.vmax == -1));
    if (!match) {
      mark = tags.copied();
      continue;
    }
    out.Printf("Deleted %d %d\n", from, to);
    while (tags.ScanTag(tag) && tag != "<endo>") {
    }
    tags.RewindCopy(mark);  // what follows overwrites the edge
  }
  tags.WarnIfCut(ctx, source);
  // no byte of a deleted record may stay behind the last write
  if (files.out && !platform::TruncateStream(files.out.get(), static_cast<std::uint64_t>(tags.copied()))) {
    ctx.Report("BgrMove cannot write '%s': %s", destination, 0, 0, "the file cannot be cut to its new length");
    files.ok = 0;
  }
  return files.Finish(ctx);
}

}  // namespace bgr
