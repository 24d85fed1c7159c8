// The PLY companion's readers on hostile text.
#include "formats/ply_reader.h"
#include "fuzz_common.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bgrfuzz::Run run;
  bgrfuzz::WriteInput("in.PLY", data, size);
  bgr::PlyReader ply(run.ctx);
  ply.Open(bgrfuzz::WorkDir() + "/in.PLY");
  bgr::TEXPOINTS pts;
  bgr::TEXTURE tex;
  for (std::int32_t shift : {-1, 0}) {
    ply.Rewind();
    pts.SetCount(0);
    for (int guard = 0; guard < 100000 && ply.ReadPly(pts, tex, shift); ++guard) {
    }
  }
  ply.Rewind();
  std::int32_t kind = 0, x1 = 0, z1 = 0, x2 = 0, z2 = 0, count = 0;
  while (ply.ReadLgt(&kind, &x1, &z1, &x2, &z2, &count)) {
  }
  return 0;
}
