#include <cstdio>
#include <string>

#include "frame/report.h"
#include "platform/platform.h"
#include "tools/commands.h"
#include "tools/tag_stream.h"

namespace bgr {

int BgrDeleteEdges(std::string_view source, std::string_view destination, std::int32_t first, std::int32_t second,
                   std::int32_t pv) {
  CopyStreams files(source, destination);
  Stream& in = files.in;
  Stream& out = files.out;
  std::FILE* dest = out.get();
  auto position = [dest] { return dest ? std::ftell(dest) : 0L; };
  long mark = 0;
  std::string tag;
  while (ScanTag(tag, in.get(), dest, pv)) {
    if (tag != "<edge>") {
      mark = position();  // where the next record begins
      continue;
    }
    if (pv) std::printf("%s ", tag.c_str());
    std::int32_t from = CopyLong(in.get(), dest, 0, 1, false, pv);
    std::int32_t to = CopyLong(in.get(), dest, 0, 1, false, pv);
    if (pv) std::printf("\n");
    bool match = (from == first && (to == second || second == -1)) || (to == first && (from == second || second == -1));
    if (!match) {
      mark = position();
      continue;
    }
    std::printf("Deleted %d %d\n", from, to);
    while (ScanTag(tag, in.get(), dest, pv) && tag != "<endo>") {
    }
    if (dest) std::fseek(dest, mark, SEEK_SET);  // what follows overwrites the edge
  }
  long end = position();
  WrapFileClose(in);
  WrapFileClose(out);
  // no byte of a deleted record may stay behind the last write
  if (dest) platform::TruncateFile(destination, static_cast<std::uint64_t>(end));
  return files.ok;
}

}  // namespace bgr
