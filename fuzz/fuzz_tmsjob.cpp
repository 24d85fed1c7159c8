// The whole -tm job on small networks with their PLY companions. The first
// bytes describe a network compactly, so that the fuzzer reaches the passes
// rather than the file reader (which has a target of its own); the rest is the
// PLY text.
#include <algorithm>
#include <memory>

#include "fuzz_common.h"
#include "tms/tms_job.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bgrfuzz::Run run;
  bgrfuzz::Reader in{data, size};
  std::string bgr = bgrfuzz::WorkDir() + "/job.bgr";
  bgrfuzz::WriteCompactNetwork(run, in, bgr);
  std::size_t rest = std::min(in.at, size);
  bgrfuzz::WriteInput("job.PLY", data + rest, size - rest);
  auto job = std::make_unique<bgr::TmsJob>(run.ctx);
  job->Run(bgr);
  return 0;
}
