#pragma once

#include <string_view>

namespace bgr {

inline constexpr const char* kTempBgr = "_TEMP_.BGR";

// Ends a command that wrote _TEMP_.BGR: with ok the new file takes the target's
// place, else the temporary file goes and the target stays as it was.
void ReplaceByTemp(bool ok, std::string_view target);

}  // namespace bgr
