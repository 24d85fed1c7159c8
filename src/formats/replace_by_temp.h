// The commands that change a BGR file in place write _TEMP_.BGR in the current
// folder and then put it in the target's place: the one write path of
// frame/file_access.h (OutputFile, PutInPlace) under a fixed temporary name.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/platform.h"

namespace bgr {

class BgrFile;
class RunContext;

inline constexpr const char* kTempBgr = "_TEMP_.BGR";
// How long a run waits for another run in the same folder to finish its edit.
inline constexpr int kTempWaitMs = 30000;

// The temporary file of one in-place edit. It is held against other runs from
// the opening to the end of the edit, so two runs in one folder take turns; a
// file that the edit reads may not be the temporary file itself.
class TempEdit {
 public:
  TempEdit(RunContext& ctx, std::string_view command) : ctx_(ctx), command_(command) {}
  TempEdit(const TempEdit&) = delete;
  TempEdit& operator=(const TempEdit&) = delete;

  // Takes _TEMP_.BGR and opens it for writing; every file in 'inputs' is checked
  // not to be it. Failures are reported in the command's words; false then.
  bool OpenTemp(BgrFile& temp, std::initializer_list<std::string_view> inputs);
  // Ends the edit: with ok the new file takes the target's place, else the
  // temporary file goes and the target stays as it was. True when replaced.
  [[nodiscard]] bool Finish(bool ok, std::string_view target);

 private:
  RunContext& ctx_;
  std::string command_;
  platform::FileLock lock_;
  bool held_ = false;
};

// Opens the source for reading and _TEMP_.BGR for writing; each failure is
// reported in the command's words ("<command> source file '...' not found",
// "<command> temp file '...' not found"). 1 when both opened.
int OpenSourceAndTemp(RunContext& ctx, TempEdit& edit, BgrFile& source, BgrFile& temp, std::string_view name,
                      std::string_view command);

}  // namespace bgr
