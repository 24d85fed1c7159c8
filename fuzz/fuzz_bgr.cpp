// The BGR reader, the tag-walking listing and every command that reads a BGR
// (moves, deletes, merges both ways, purge, edit script, exports) on hostile bytes.
#include "formats/bgr_file.h"
#include "formats/taxiway_list.h"
#include "frame/options.h"
#include "fuzz_common.h"
#include "tools/commands.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bgrfuzz::Run run;
  bgr::RunContext& ctx = run.ctx;
  std::string path = bgrfuzz::WriteInput("in.bgr", data, size);
  bgr::Settings all;
  all.printValues = 1;
  bgr::BgrList(ctx, all, path);
  bgr::Settings some;
  some.vmin = 2;
  some.vmax = 5;
  bgr::BgrList(ctx, some, path);
  bgr::BgrFile file;
  if (file.OpenRead(ctx, path)) {
    bgr::OriginRecord origin;
    bgr::NodeRecord node;
    bgr::EdgeRecord edge;
    file.ReadOrigin(origin);
    while (file.ReadNode(node)) {
    }
    while (file.ReadEdge(edge)) {
    }
  }
  file.Abandon();
  bgr::TaxiwayList list(ctx);
  list.Load(path, 0);
  (void)list.Save(bgrfuzz::WorkDir() + "/out.bgr");

  // the commands, each on a fresh copy where it changes its file in place
  const std::string dir = bgrfuzz::WorkDir() + "/";
  static const std::uint8_t kScript[] = "<bgr-replace-edges> 0 2 5\n<bgr-align-nodes> 1 2\n<bgr-width-edges> 50 80\n";
  std::string script = bgrfuzz::WriteInput("fix.txt", kScript, sizeof kScript - 1);
  bgr::Settings move;
  move.north = 1;
  move.east = 2;
  bgr::BgrMove(ctx, move, path, dir + "moved.bgr");
  bgr::Settings one;
  one.vmin = 1;
  bgr::BgrDeleteEdges(ctx, one, path, dir + "deleted.bgr");
  bgr::BgrMerge(ctx, path, bgrfuzz::WriteInput("into.bgr", data, size));
  bgr::BgrMerge(ctx, dir + "out.bgr", bgrfuzz::WriteInput("merged.bgr", data, size));
  bgr::BgrPurge(ctx, bgrfuzz::WriteInput("purged.bgr", data, size));
  bgr::BgrEditScript(ctx, bgrfuzz::WriteInput("edited.bgr", data, size), script);
  bgr::BgrTxd(ctx, path);
  bgr::BgrTxp(ctx, all, path);
  bgr::Settings otherLevel;
  otherLevel.txpLevel = 1;
  bgr::BgrTxp(ctx, otherLevel, path);
  return 0;
}
