// The PLY companion's readers on hostile text.
#include "formats/taxiway_list.h"
#include "fuzz_common.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bgrfuzz::Run run;
  bgrfuzz::WriteInput("in.PLY", data, size);
  bgr::TaxiwayList list(run.ctx);
  list.Load(bgrfuzz::WorkDir() + "/in.bgr-missing", 0);
  list.plyName = bgrfuzz::WorkDir() + "/in.PLY";
  list.OpenPly("r");
  bgr::TEXPOINTS pts;
  bgr::TEXTURE tex;
  for (std::int32_t shift : {-1, 0}) {
    list.RewindPly();
    pts.SetCount(0);
    for (int guard = 0; guard < 100000 && list.ReadPly(pts, tex, shift); ++guard) {
    }
  }
  list.RewindPly();
  std::int32_t kind = 0, x1 = 0, z1 = 0, x2 = 0, z2 = 0, count = 0;
  while (list.ReadLgt(&kind, &x1, &z1, &x2, &z2, &count)) {
  }
  list.ClosePly();
  return 0;
}
