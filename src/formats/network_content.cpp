#include "formats/network_content.h"

namespace bgr {

NetworkContent ReadNetworkContent(RunContext& ctx, std::string_view path) {
  NetworkContent content;
  BgrFile file;
  if (!file.OpenRead(ctx, path)) {
    file.Abandon();
    return content;
  }
  content.read = true;
  file.ReadOrigin(content.origin);
  NodeRecord node;
  while (file.ReadNode(node)) content.nodes.push_back(node);
  EdgeRecord edge;
  while (file.ReadEdge(edge)) content.edges.push_back(edge);
  bool closed = file.ReadTag("<endo>");
  content.stoppedAt = file.Tell();
  content.length = file.Length();
  content.complete = closed && content.stoppedAt == content.length;
  file.Abandon();
  return content;
}

}  // namespace bgr
