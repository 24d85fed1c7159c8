// A run context for in-process tests: console and diagnostics kept in memory,
// report lines on the console unless a test gives the report a folder.
#pragma once

#include "frame/output.h"
#include "frame/run_context.h"

namespace bgrtest {

struct TestRun {
  TestRun() { ctx.KeepReportOnConsole(); }
  bgr::OutputSink console;
  bgr::OutputSink diagnostics;
  bgr::RunContext ctx{console, diagnostics};
};

}  // namespace bgrtest
