#include "tools/replace_by_temp.h"

#include <string>

#include "formats/bgr_file.h"
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

int OpenSourceAndTemp(BgrFile& source, BgrFile& temp, std::string_view name, std::string_view command) {
  int ok = 1;
  if (!source.OpenRead(name)) {
    ok = 0;
    Report(std::string(command) + " source file '%s' not found", name);
  }
  if (!temp.OpenWrite(kTempBgr)) {
    ok = 0;
    Report(std::string(command) + " temp file '%s' not found", kTempBgr);
  }
  return ok;
}

}  // namespace bgr
