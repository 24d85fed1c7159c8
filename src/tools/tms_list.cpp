#include "tools/commands.h"

namespace bgr {
int TmsList(std::string_view) { return 1; }
}  // namespace bgr
