#include "formats/replace_by_temp.h"

#include "formats/bgr_file.h"
#include "formats/network_content.h"
#include "frame/file_access.h"
#include "frame/run_context.h"

namespace bgr {

bool TempEdit::OpenTemp(BgrFile& temp, std::initializer_list<std::string_view> inputs) {
  if (!held_) {
    if (!lock_.Acquire(kTempBgr, kTempWaitMs)) {
      if (lock_.busy()) {
        ctx_.Report(command_ + " temp file '%s' is held by another run", kTempBgr);
      } else {
        // the file can't be made: the line that a failed open writes, then the command's
        ctx_.Report(">INFO: WrapFileOpen(%s, [%d%ld] %s) failed", kTempBgr, 0, 0, "wb");
        ctx_.Report(command_ + " temp file '%s' not found", kTempBgr);
      }
      return false;
    }
    held_ = true;
  }
  for (std::string_view input : inputs) {
    if (lock_.IsFile(input)) {
      ctx_.Report(command_ + " cannot change '%s' in place: it is the temporary file itself", input);
      lock_.Release();
      held_ = false;
      return false;
    }
  }
  if (temp.OpenTemporary(ctx_, kTempBgr)) return true;
  ctx_.Report(command_ + " temp file '%s' not found", kTempBgr);
  return false;
}

bool TempEdit::Finish(bool ok, std::string_view target) {
  if (!held_) return false;  // never touch a temporary file that this run doesn't hold
  bool replaced = false;
  if (!ok) {
    DeleteFiles(kTempBgr);
  } else if (PutInPlace(kTempBgr, target)) {
    replaced = true;
  } else {
    // the move replaces the target in one step, so there is no moment without
    // it; should it fail, both files stay where the user can find them
    ctx_.Report("ReplaceByTemp cannot move '%s' to '%s'", kTempBgr, 0, 0, target);
  }
  lock_.Release();
  held_ = false;
  return replaced;
}

int OpenSourceAndTemp(RunContext& ctx, TempEdit& edit, BgrFile& source, BgrFile& temp, std::string_view name,
                      std::string_view command) {
  int ok = 1;
  if (!source.OpenRead(ctx, name)) {
    ok = 0;
    ctx.Report(std::string(command) + " source file '%s' not found", name);
    TellWhatStandsInstead(ctx, name);
  }
  if (!edit.OpenTemp(temp, {name})) ok = 0;
  return ok;
}

}  // namespace bgr
