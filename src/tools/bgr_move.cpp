#include <string>

#include "formats/tag_stream.h"
#include "frame/int32_math.h"
#include "frame/options.h"
#include "frame/run_context.h"
#include "tools/commands.h"

namespace bgr {

int BgrMove(RunContext& ctx, const Settings& s, std::string_view source, std::string_view destination) {
  CopyStreams files(ctx, source, destination);
  NodeRange nodes = SelectedNodes(s);
  OutputSink& out = ctx.console();
  TagStream tags(out, files.in.get(), files.out.get(), s.printValues);
  std::int32_t node = 0;
  std::string tag;
  while (tags.ScanTag(tag)) {
    if (tag != "<vloc>") continue;
    if (nodes.Holds(node)) {
      if (s.printValues) out.Printf("%s (%d)", tag.c_str(), node);
      tags.CopyDouble(s.east);
      tags.CopyDouble(0.0);
      tags.CopyDouble(s.north);
      if (s.printValues) out.Put('\n');
    }
    node = WrapAdd(node, 1);
  }
  tags.WarnIfCut(ctx, source);
  return files.Finish(ctx);
}

}  // namespace bgr
