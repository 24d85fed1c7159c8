#include <cstdio>
#include <cstring>

#include "formats/bgr_file.h"
#include "formats/network_content.h"
#include "formats/replace_by_temp.h"
#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "geometry/node_table.h"
#include "geometry/planar.h"
#include "script/string_list.h"
#include "tools/commands.h"

namespace bgr {
namespace {

constexpr std::int32_t kEditListBytes = 10240;  // room for the lines of one script

// A script is applied as a whole or not at all: each pass writes _TEMP_.BGR
// from what the pass before it made (the file itself for the first), and only
// the end of the script puts the result in the file's place.
struct ScriptEdit {
  ScriptEdit(RunContext& c, std::string_view f) : ctx(c), file(f), edit(c, "Bgr") {}
  RunContext& ctx;
  std::string_view file;
  TempEdit edit;
  bool anyPass = false;
};

// The copy of _TEMP_.BGR that the next pass reads, while the pass writes anew.
Stream ScratchCopyOfTemp(RunContext& ctx) {
  Stream scratch(std::tmpfile());
  Stream temp(platform::OpenFile(kTempBgr, "rb"));
  if (!scratch || !temp) {
    ctx.Report("Bgr cannot keep '%s' between the lines of the script", kTempBgr);
    return {};
  }
  char buffer[65536];
  for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, temp.get())) > 0;) {
    if (std::fwrite(buffer, 1, n, scratch.get()) != n) {
      ctx.Report("Bgr cannot keep '%s' between the lines of the script", kTempBgr);
      return {};
    }
  }
  return scratch;
}

// The frame that every operation shares: the source, _TEMP_.BGR, the origin,
// the operation's own work.
template <class Work>
int EditPass(ScriptEdit& e, Work work) {
  BgrFile in, temp;
  int ok = 1;
  if (e.anyPass) {
    // the pass before wrote _TEMP_.BGR; a copy of it is read while it is written anew
    Stream previous = ScratchCopyOfTemp(e.ctx);
    if (!previous) ok = 0;
    in.AttachRead(e.ctx, std::move(previous), kTempBgr);
  } else if (!in.OpenRead(e.ctx, e.file)) {
    ok = 0;
    e.ctx.Report("Bgr source file '%s' not found", e.file);
    TellWhatStandsInstead(e.ctx, e.file);
  }
  if (!e.edit.OpenTemp(temp, {e.file})) ok = 0;
  OriginRecord origin;
  in.ReadOrigin(origin);
  temp.WriteOrigin(origin);
  work(in, temp);
  in.Abandon();
  bool written = temp.Close();
  e.anyPass = true;
  return ok != 0 && written ? 1 : 0;
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

int BgrReplaceEdges(ScriptEdit& e, std::int32_t first, std::int32_t second, std::int32_t tolerance) {
  NodeTable nodes("Bgr cannot allocate points");
  return EditPass(e, [&](BgrFile& in, BgrFile& out) {
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

int BgrAlignNodes(ScriptEdit& e, std::int32_t first, std::int32_t second, std::int32_t tolerance) {
  NodeTable nodes("Bgr cannot allocate points");
  return EditPass(e, [&](BgrFile& in, BgrFile& out) {
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

int BgrWidthEdges(ScriptEdit& e, std::int32_t smallest, std::int32_t largest) {
  return EditPass(e, [&](BgrFile& in, BgrFile& out) {
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
  ScriptEdit edit(ctx, file);
  StringListWalk walk(list, "<bgr-");
  for (auto line = walk.Next(); line && result != 0; line = walk.Next()) {
    std::int32_t a = -1, b = -1, c = 10;
    if (ScanCommand(*line, "replace-edges>", "replace-edges> %d %d %d", &a, &b, &c)) {
      result = BgrReplaceEdges(edit, a, b, c);
      continue;
    }
    a = -1, b = -1, c = 10;
    if (ScanCommand(*line, "align-nodes>", "align-nodes> %d %d %d", &a, &b, &c)) {
      result = BgrAlignNodes(edit, a, b, c);
      continue;
    }
    a = 25, b = 100;
    if (ScanCommand(*line, "width-edges>", "width-edges> %d %d", &a, &b, &c)) result = BgrWidthEdges(edit, a, b);
  }
  if (!edit.anyPass) return result;
  return edit.edit.Finish(result != 0, file) ? 1 : 0;
}

}  // namespace bgr
