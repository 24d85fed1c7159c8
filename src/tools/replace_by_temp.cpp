#include "tools/replace_by_temp.h"

#include "frame/report.h"

namespace bgr {

void ReplaceByTemp(bool ok, std::string_view target) {
  if (!ok) {
    DeleteFiles(kTempBgr);
    return;
  }
  // The move replaces the target in one step, so there is no moment without
  // it; should it fail, both files stay where the user can find them.
  if (ShellMove(kTempBgr, target) != 0) Report("ReplaceByTemp cannot move '%s' to '%s'", kTempBgr, 0, 0, target);
}

}  // namespace bgr
