#include <cstdio>
#include <cstring>

#include "formats/bgr_file.h"
#include "formats/replace_by_temp.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "geometry/node_table.h"
#include "geometry/planar.h"
#include "script/string_list.h"
#include "tools/commands.h"

namespace bgr {
namespace {

constexpr std::int32_t kEditListBytes = 10240;  // room for the lines of one script

// The frame that every operation shares: the source, _TEMP_.BGR, the origin,
// the operation's own work, and the swap.
template <class Work>
int EditPass(RunContext& ctx, std::string_view file, Work work) {
  BgrFile in, temp;
  int ok = OpenSourceAndTemp(ctx, in, temp, file, "Bgr");
  OriginRecord origin;
  in.ReadOrigin(origin);
  temp.WriteOrigin(origin);
  work(in, temp);
  in.Abandon();
  bool written = temp.Close();
  return ReplaceByTemp(ctx, ok != 0 && written, file) ? 1 : 0;
}

// Reads all nodes of the file into the table.
void ReadAllNodes(BgrFile& in, NodeTable& nodes) {
  NodeRecord node;
  while (in.ReadNode(node)) insert_double_points(nodes, node.x, node.y, node.z);
}

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

int BgrReplaceEdges(RunContext& ctx, std::string_view file, std::int32_t first, std::int32_t second,
                    std::int32_t tolerance) {
  NodeTable nodes("Bgr cannot allocate points");
  return EditPass(ctx, file, [&](BgrFile& in, BgrFile& out) {
    NodeRecord node;
    while (in.ReadNode(node)) {
      out.WriteNode(node);
      insert_double_points(nodes, node.x, node.y, node.z);
    }
    bool valid = Valid(nodes, first, second);
    IntLine line;
    if (valid) line = LineBetween(nodes, first, second);
    auto near = [&](std::int32_t n) { return nodes.Contains(n) && NearLine(line, nodes[n], tolerance); };
    EdgeRecord edge;
    bool anyEdge = false;
    while (in.ReadEdge(edge)) {
      anyEdge = true;
      if (valid && near(edge.from) && near(edge.to)) continue;
      out.WriteEdge(edge);
    }
    if (valid && anyEdge) {
      // the new edge takes the values of the last edge read
      EdgeRecord chain = edge;
      chain.from = first;
      chain.to = second;
      out.WriteEdge(chain);
    }
  });
}

int BgrAlignNodes(RunContext& ctx, std::string_view file, std::int32_t first, std::int32_t second,
                  std::int32_t tolerance) {
  NodeTable nodes("Bgr cannot allocate points");
  return EditPass(ctx, file, [&](BgrFile& in, BgrFile& out) {
    ReadAllNodes(in, nodes);
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
      out.WriteNode({p.x, p.y, p.z});
    }
    EdgeRecord edge;
    while (in.ReadEdge(edge)) out.WriteEdge(edge);
  });
}

int BgrWidthEdges(RunContext& ctx, std::string_view file, std::int32_t smallest, std::int32_t largest) {
  return EditPass(ctx, file, [&](BgrFile& in, BgrFile& out) {
    NodeRecord node;
    while (in.ReadNode(node)) out.WriteNode(node);
    EdgeRecord edge;
    while (in.ReadEdge(edge)) {
      if (edge.width < smallest) {
        edge.width = smallest;
        edge.packed = 0;
      } else if (edge.width > largest) {
        edge.width = largest;
        edge.packed = 0;
      }
      out.WriteEdge(edge);
    }
  });
}

}  // namespace

int BgrEditScript(RunContext& ctx, std::string_view file, std::string_view script) {
  STRING_LIST list(ctx);
  int result = list.Create(kEditListBytes) && list.Load(script) > 0 ? 1 : 0;
  if (result == 0) return 0;
  for (auto line = list.First("<bgr-", nullptr); line && result != 0; line = STRING_LIST::Next(ctx, nullptr)) {
    std::int32_t a = -1, b = -1, c = 10;
    if (ScanCommand(*line, "replace-edges>", "replace-edges> %d %d %d", &a, &b, &c)) {
      result = BgrReplaceEdges(ctx, file, a, b, c);
      continue;
    }
    a = -1, b = -1, c = 10;
    if (ScanCommand(*line, "align-nodes>", "align-nodes> %d %d %d", &a, &b, &c)) {
      result = BgrAlignNodes(ctx, file, a, b, c);
      continue;
    }
    a = 25, b = 100;
    if (ScanCommand(*line, "width-edges>", "width-edges> %d %d", &a, &b, &c)) result = BgrWidthEdges(ctx, file, a, b);
  }
  return result;
}

}  // namespace bgr
