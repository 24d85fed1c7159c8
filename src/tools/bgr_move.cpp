#include <cstdio>
#include <string>

#include "frame/report.h"
#include "frame/text.h"
#include "tools/commands.h"
#include "tools/tag_stream.h"

namespace bgr {

int BgrMove(std::string_view source, std::string_view destination, double north, double east, std::int32_t vmin,
            std::int32_t vmax, std::int32_t pv) {
  CopyStreams files(source, destination);
  Stream& in = files.in;
  Stream& out = files.out;
  if (vmin == -1) {
    vmin = 0;
    vmax = 9999;
  } else if (vmax == -1) {
    vmax = vmin;
  }
  std::int32_t node = 0;
  std::string tag;
  while (ScanTag(tag, in.get(), out.get(), pv)) {
    if (tag != "<vloc>") continue;
    if (vmin <= node && node <= vmax) {
      if (pv) std::printf("%s (%d)", tag.c_str(), node);
      CopyDouble(in.get(), out.get(), east, pv);
      CopyDouble(in.get(), out.get(), 0.0, pv);
      CopyDouble(in.get(), out.get(), north, pv);
      if (pv) std::printf("\n");
    }
    node = WrapAdd(node, 1);
  }
  WrapFileClose(in);
  WrapFileClose(out);
  return files.ok;
}

}  // namespace bgr
