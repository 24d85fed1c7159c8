#include "formats/replace_by_temp.h"

#include <string>

#include "formats/bgr_file.h"
#include "frame/file_access.h"
#include "frame/run_context.h"

namespace bgr {

bool ReplaceByTemp(RunContext& ctx, bool ok, std::string_view target) {
  if (!ok) {
    DeleteFiles(kTempBgr);
    return false;
  }
  // The move replaces the target in one step, so there is no moment without
  // it; should it fail, both files stay where the user can find them.
  if (ShellMove(kTempBgr, target) == 0) return true;
  ctx.Report("ReplaceByTemp cannot move '%s' to '%s'", kTempBgr, 0, 0, target);
  return false;
}

int OpenSourceAndTemp(RunContext& ctx, BgrFile& source, BgrFile& temp, std::string_view name,
                      std::string_view command) {
  int ok = 1;
  if (!source.OpenRead(ctx, name)) {
    ok = 0;
    ctx.Report(std::string(command) + " source file '%s' not found", name);
  }
  if (!temp.OpenWrite(ctx, kTempBgr)) {
    ok = 0;
    ctx.Report(std::string(command) + " temp file '%s' not found", kTempBgr);
  }
  return ok;
}

}  // namespace bgr
