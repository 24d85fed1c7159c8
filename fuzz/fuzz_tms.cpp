// The TMS reader and listing on hostile bytes.
#include "fuzz_common.h"
#include "tools/commands.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bgrfuzz::Run run;
  bgr::TmsList(run.ctx, bgrfuzz::WriteInput("in.tms", data, size));
  return 0;
}
