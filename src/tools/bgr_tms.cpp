#include <memory>

#include "frame/run_context.h"
#include "tms/tms_job.h"
#include "tools/commands.h"

namespace bgr {

int BgrTms(RunContext& ctx, std::string_view file) {
  auto job = std::make_unique<TmsJob>(ctx);  // the tables are too large for the stack
  return job->Run(file);
}

}  // namespace bgr
