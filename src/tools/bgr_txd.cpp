#include <string>

#include "formats/bgr_file.h"
#include "formats/little_endian.h"
#include "frame/report.h"
#include "frame/text.h"
#include "tools/commands.h"
#include "tools/node_table.h"

namespace bgr {

int BgrTxd(std::string_view file) {
  int ok = 1;
  std::int32_t edgeCount = 0;
  NodeTable nodes("BgrTxd cannot allocate points");
  BgrFile in;
  if (!in.OpenRead(file)) {
    ok = 0;
    Report("BgrTxd source file '%s' not found", file);
  }
  std::string dest(file);
  SetExtension(dest, "txd");
  Stream out = WrapFileOpen(dest, "wb");
  if (!out) {
    ok = 0;
    Report("BgrTxd dest file '%s' not openable", dest);
  }
  std::FILE* f = out.get();
  double lat, lon, third;
  in.ReadOrigin(&lat, &lon, &third);
  double x, y, z;
  while (in.ReadNode(&x, &y, &z)) {
    if (nodes.count() >= kNodeTableSize) {
      ok = 0;
      Report("BgrTxd too many nodes in %s", dest);
    } else {
      insert_double_points(nodes, x, y, z);
    }
  }
  WriteI32(f, 0);  // the edge count, written when it is known
  std::int32_t from, to, width, type, packed, flags;
  while (in.ReadEdge(&from, &to, &width, &type, &packed, &flags)) {
    WriteI32(f, from);
    WriteI32(f, to);
    WriteF64(f, 0.0);
    WriteF64(f, 75.0);
    WriteF64(f, 75.0);
    edgeCount = WrapAdd(edgeCount, 1);
  }
  WriteI32(f, nodes.count());
  for (std::int32_t i = 0; i < nodes.count(); ++i) {
    WriteF64(f, nodes[i].x);
    WriteF64(f, nodes[i].z);
    WriteF64(f, 0.0);
    WriteF64(f, 0.0);
  }
  if (f && std::fseek(f, 0, SEEK_SET) == 0) WriteI32(f, edgeCount);
  in.Close();
  WrapFileClose(out);
  return ok;
}

}  // namespace bgr
