// The commands that change a BGR file in place write _TEMP_.BGR in the current
// folder and then put it in the target's place.
#pragma once

#include <string_view>

namespace bgr {

class BgrFile;
class RunContext;

inline constexpr const char* kTempBgr = "_TEMP_.BGR";

// Ends a command that wrote _TEMP_.BGR: with ok the new file takes the target's
// place, else the temporary file goes and the target stays as it was. The
// result is ok and'ed with the move's success.
[[nodiscard]] bool ReplaceByTemp(RunContext& ctx, bool ok, std::string_view target);

// Opens the source for reading and _TEMP_.BGR for writing; each failure is
// reported in the command's words ("<command> source file '...' not found",
// "<command> temp file '...' not found"). 1 when both opened.
int OpenSourceAndTemp(RunContext& ctx, BgrFile& source, BgrFile& temp, std::string_view name,
                      std::string_view command);

}  // namespace bgr
