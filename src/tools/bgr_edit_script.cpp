#include <cstdio>
#include <cstring>

#include "formats/bgr_file.h"
#include "frame/report.h"
#include "frame/text.h"
#include "geometry/planar.h"
#include "script/string_list.h"
#include "tools/commands.h"
#include "tools/node_table.h"
#include "tools/replace_by_temp.h"

namespace bgr {
namespace {

constexpr std::int32_t kEditListBytes = 10240;

// The frame that every operation shares: the source, _TEMP_.BGR, the origin,
// the operation's own work, and the swap.
template <class Work>
int EditPass(std::string_view file, Work work) {
  BgrFile in, temp;
  int ok = OpenSourceAndTemp(in, temp, file, "Bgr");
  double lat = 0, lon = 0, third = 0;
  in.ReadOrigin(&lat, &lon, &third);
  temp.WriteOrigin(lat, lon, third);
  work(in, temp);
  in.Close();
  temp.Close();
  ReplaceByTemp(ok != 0, file);
  return ok;
}

struct EdgeRecord {
  std::int32_t from = 0, to = 0, width = 0, type = 0, packed = 0, flags = 0;
  bool Read(BgrFile& f) { return f.ReadEdge(&from, &to, &width, &type, &packed, &flags); }
  void Write(BgrFile& f) const { f.WriteEdge(from, to, width, type, packed, flags); }
};

bool Valid(const NodeTable& nodes, std::int32_t first, std::int32_t second) {
  return nodes.Contains(first) && nodes.Contains(second);
}

IntLine LineBetween(const NodeTable& nodes, std::int32_t first, std::int32_t second) {
  IntLine line;
  line.Set(TruncToLong(nodes[first].x), TruncToLong(nodes[first].z), TruncToLong(nodes[second].x),
           TruncToLong(nodes[second].z));
  return line;
}

bool NearLine(const IntLine& line, const DoublePoint& p, std::int32_t tolerance) {
  return line.IsNear(TruncToLong(p.x), TruncToLong(p.z), tolerance);
}

// A command matches when its fixed text is there in full and a number or
// nothing follows; numbers left out keep their defaults.
bool ScanCommand(const std::string& line, const char* head, const char* format, std::int32_t* a, std::int32_t* b,
                 std::int32_t* c) {
  if (line.compare(0, std::strlen(head), head) != 0) return false;
  return std::sscanf(line.c_str(), format, a, b, c) != 0;
}

}  // namespace

int BgrReplaceEdges(std::string_view file, std::int32_t first, std::int32_t second, std::int32_t tolerance) {
  NodeTable nodes("Bgr cannot allocate points");
  return EditPass(file, [&](BgrFile& in, BgrFile& out) {
    double x, y, z;
    while (in.ReadNode(&x, &y, &z)) {
      out.WriteNode(x, y, z, false, false);
      insert_double_points(nodes, x, y, z);
    }
    bool valid = Valid(nodes, first, second);
    IntLine line;
    if (valid) line = LineBetween(nodes, first, second);
    auto near = [&](std::int32_t n) { return nodes.Contains(n) && NearLine(line, nodes[n], tolerance); };
    EdgeRecord edge;
    bool anyEdge = false;
    while (edge.Read(in)) {
      anyEdge = true;
      if (valid && near(edge.from) && near(edge.to)) continue;
      edge.Write(out);
    }
    if (valid && anyEdge) {
      // the new edge takes the values of the last edge read
      EdgeRecord chain = edge;
      chain.from = first;
      chain.to = second;
      chain.Write(out);
    }
  });
}

int BgrAlignNodes(std::string_view file, std::int32_t first, std::int32_t second, std::int32_t tolerance) {
  NodeTable nodes("Bgr cannot allocate points");
  return EditPass(file, [&](BgrFile& in, BgrFile& out) {
    double x, y, z;
    while (in.ReadNode(&x, &y, &z)) insert_double_points(nodes, x, y, z);
    bool valid = Valid(nodes, first, second);
    IntLine line;
    if (valid) line = LineBetween(nodes, first, second);
    for (std::int32_t i = 0; i < nodes.count(); ++i) {
      DoublePoint p = nodes[i];
      if (valid && NearLine(line, p, tolerance)) {
        if (line.dx != 0) {
          p.z = line.YAtX(TruncToLong(p.x));
        } else {
          p.x = line.x1;  // a line along z has no z for an x: the node moves across onto it
        }
      }
      out.WriteNode(p.x, p.y, p.z, false, false);
    }
    EdgeRecord edge;
    while (edge.Read(in)) edge.Write(out);
  });
}

int BgrWidthEdges(std::string_view file, std::int32_t smallest, std::int32_t largest) {
  return EditPass(file, [&](BgrFile& in, BgrFile& out) {
    double x, y, z;
    while (in.ReadNode(&x, &y, &z)) out.WriteNode(x, y, z, false, false);
    EdgeRecord edge;
    while (edge.Read(in)) {
      if (edge.width < smallest) {
        edge.width = smallest;
        edge.packed = 0;
      } else if (edge.width > largest) {
        edge.width = largest;
        edge.packed = 0;
      }
      edge.Write(out);
    }
  });
}

int BgrEditScript(std::string_view file, std::string_view script) {
  STRING_LIST list;
  int result = list.Create(kEditListBytes) && list.Load(script) > 0 ? 1 : 0;
  if (result == 0) return 0;
  for (auto line = list.First("<bgr-", nullptr); line && result != 0; line = STRING_LIST::Next(nullptr)) {
    std::int32_t a = -1, b = -1, c = 10;
    if (ScanCommand(*line, "replace-edges>", "replace-edges> %d %d %d", &a, &b, &c)) {
      result = BgrReplaceEdges(file, a, b, c);
      continue;
    }
    a = -1, b = -1, c = 10;
    if (ScanCommand(*line, "align-nodes>", "align-nodes> %d %d %d", &a, &b, &c)) {
      result = BgrAlignNodes(file, a, b, c);
      continue;
    }
    a = 25, b = 100;
    if (ScanCommand(*line, "width-edges>", "width-edges> %d %d", &a, &b, &c)) result = BgrWidthEdges(file, a, b);
  }
  return result;
}

}  // namespace bgr
