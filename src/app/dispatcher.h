// The app layer: the one place that knows every command.
#pragma once

#include "frame/options.h"
#include "frame/output.h"

namespace bgr {

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

// Every option, one line each: what --help shows (the text above is kept
// for a wrong number of file names).
inline constexpr const char* kHelpText =
    "usage: bgrtool <options> filename [filename2]\n"
    "  (no option)       list a BGR file without values, or a TMS file by its extension\n"
    "  -lsVMIN:VMAX      list with values; only nodes VMIN..VMAX (-ls5: node 5)\n"
    "  -prHEX            set the value echo (0 off), keep the mode\n"
    "  -tm               make NAME.TMS from the BGR file and its NAME.PLY; write the repaired network back\n"
    "  -mvN:E:VMIN:VMAX  copy filename to filename2, nodes VMIN..VMAX moved N ft north, E ft east\n"
    "  -deVMIN:VMAX      copy filename to filename2 without the edges between VMIN and VMAX\n"
    "  -mg               merge filename into filename2\n"
    "  -pg               purge: drop unused nodes, join nodes within 5 ft\n"
    "  -rsNAME           apply the edit script NAME to filename\n"
    "  -txd              write NAME.txd: edges, then nodes\n"
    "  -txp, -txp0       write NAME.txp: origin, vertex pool, one polygon (-txp0: an empty pool)\n"
    "  -gr               graph: not implemented\n"
    "  -teNAME           run the airport script NAME; no file names\n"
    "  -tiCCCBBB         restrict scripts to world cell column CCC, band BBB\n"
    "  --help, --version this text; the version (each as the only argument)\n"
    "Exit values: 1 done, 0 failed (the reason is in report.txt), 255 wrong number of file names.\n"
    "Every run appends its banner, command line, errors and time to report.txt beside the program.\n";

class RunContext;

// Scans the options and runs the one command they select; -1 when the number of
// file names doesn't fit the mode.
int Dispatch(RunContext& ctx, int argc, const char* const* argv);

// The whole run: report start, dispatch, report end. Its result is the exit
// value: 1 done (also after a fatal stop), 0 failed, -1 usage.
int RunBgrtool(int argc, const char* const* argv, OutputSink& console, OutputSink& diagnostics);

}  // namespace bgr
