#pragma once

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

// Scans the options and runs the one command they select; -1 when the number of
// file names doesn't fit the mode.
int Dispatch(int argc, const char* const* argv);

// The whole run: report start, dispatch, report end. Its result is the exit value.
int RunBgrtool(int argc, const char* const* argv);

}  // namespace bgr
