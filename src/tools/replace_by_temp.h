#pragma once

#include <string_view>

namespace bgr {

class BgrFile;

inline constexpr const char* kTempBgr = "_TEMP_.BGR";

// Ends a command that wrote _TEMP_.BGR: with ok the new file takes the target's
// place, else the temporary file goes and the target stays as it was.
void ReplaceByTemp(bool ok, std::string_view target);

// Opens the source for reading and _TEMP_.BGR for writing; each failure is
// reported in the command's words ("<command> source file '...' not found",
// "<command> temp file '...' not found"). 1 when both opened.
int OpenSourceAndTemp(BgrFile& source, BgrFile& temp, std::string_view name, std::string_view command);

}  // namespace bgr
