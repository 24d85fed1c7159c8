// The BGR reader and the tag-walking listing on hostile bytes.
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
  return 0;
}
