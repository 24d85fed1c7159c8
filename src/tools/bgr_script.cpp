#include <memory>

#include "frame/options.h"
#include "frame/run_context.h"
#include "script/script_run.h"
#include "tools/commands.h"

namespace bgr {

int RunScript(RunContext& ctx, const Settings& settings) {
  RefCell cell{settings.refCell.quarter, settings.refCell.column, settings.refCell.band};
  auto run = std::make_unique<ScriptRun>(ctx, cell);  // the tables are too large for the stack
  return run->Run(settings.textName);
}

}  // namespace bgr
