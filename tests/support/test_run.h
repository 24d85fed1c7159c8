// A run context for in-process tests: console and diagnostics kept in memory,
// report lines on the console unless a test gives the report a folder.
#pragma once

#include "frame/run_context.h"

namespace bgrtest {

using TestRun = bgr::QuietRun;

}  // namespace bgrtest
