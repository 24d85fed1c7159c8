// The whole -tm job on small networks with their PLY companions. The first
// bytes describe a network compactly, so that the fuzzer reaches the passes
// rather than the file reader (which has a target of its own); the rest is the
// PLY text.
#include <algorithm>
#include <memory>

#include "formats/bgr_file.h"
#include "fuzz_common.h"
#include "tms/tms_job.h"

namespace {

struct Reader {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t at = 0;
  int Byte() { return at < size ? data[at++] : 0; }
  int Short() {
    int low = Byte();
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | Byte() << 8));
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bgrfuzz::Run run;
  Reader in{data, size};
  int head = in.Byte();
  // feet per step of a coordinate: from a fine grid to points far beyond 32-bit working units
  double scale = (head & 3) == 3 ? 65536.0 : (head & 3) == 2 ? 64.0 : (head & 3) == 1 ? 8.0 : 1.0;
  int points = in.Byte() % 48, edges = in.Byte() % 64;
  std::string bgr = bgrfuzz::WorkDir() + "/job.bgr";
  {
    bgr::BgrFile file;
    file.OpenWrite(run.ctx, bgr);
    file.WriteOrigin({in.Short() / 100.0, in.Short() / 100.0, 0});
    for (int i = 0; i < points; ++i) {
      double x = in.Short() * scale, z = in.Short() * scale;
      file.WriteNode({x, 0, z});
    }
    for (int i = 0; i < edges; ++i) {
      int from = in.Byte() - 2, to = in.Byte() - 2;  // some name no point at all
      int width = in.Byte() * 4, type = in.Byte() % 3, flags = in.Byte() & 31;
      file.WriteEdge({from, to, width, type == 2 ? 7 : type, 0, flags});
    }
    (void)file.Close();
  }
  std::size_t rest = std::min(in.at, size);
  bgrfuzz::WriteInput("job.PLY", data + rest, size - rest);
  auto job = std::make_unique<bgr::TmsJob>(run.ctx);
  job->Run(bgr);
  return 0;
}
