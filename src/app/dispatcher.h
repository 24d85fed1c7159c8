// The app layer: the one place that knows every command.
#pragma once

#include "frame/output.h"

namespace bgr {

inline constexpr const char* kVersion = " v1.03";

inline constexpr const char* kUsageText =
    "paras: <options> filename [fielname2]\n"
    "       -deVMIN:VMAX      delete edge(s)\n"
    "       -lsVMIN:VMAX      list (some/all) vertices\n"
    "       -mg               merge filename into filename2\n"
    "       -gr               graph filename\n"
    "       -teNAME           interpret text file NAME\n"
    "       -mvN:E:VMIN:VMAX  move (some/all) vertices north N east E (float)\n"
    "       -pg               purge - remove unused vertices\n"
    "       -txd              generate TXD (taxiwayeditor)\n";

class RunContext;

// Scans the options and runs the one command they select; -1 when the number of
// file names doesn't fit the mode.
int Dispatch(RunContext& ctx, int argc, const char* const* argv);

// The whole run: report start, dispatch, report end. Its result is the exit
// value: 1 done (also after a fatal stop), 0 failed, -1 usage.
int RunBgrtool(int argc, const char* const* argv, OutputSink& console, OutputSink& diagnostics);

}  // namespace bgr
