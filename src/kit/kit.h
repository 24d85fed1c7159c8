// bgrkit: the companion program of bgrtool, with subcommands in the manner of
// command-line GIS tools. Each subcommand is one source file that registers its
// options on the program and returns an exit value: 0 done, 1 failed (or, for
// a check, problems found), 2 bad usage.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "frame/output.h"
#include "frame/run_context.h"

namespace CLI {
class App;
}

namespace bgr::kit {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kBadUsage = 2;

// A subcommand's set-up: it adds its options to 'command' and returns the work
// to do once the command line has been read.
using Setup = std::function<std::function<int()>(CLI::App& command)>;

struct Subcommand {
  const char* name;
  const char* summary;
  Setup setup;
};

// The library's run context for a subcommand: its report lines (errors of
// file access) go to standard error.
struct KitRun {
  KitRun() { ctx.KeepReportOnConsole(); }
  ~KitRun() {
    out.Flush();
    diagnostics.Flush();
  }
  OutputSink out{stderr, true};
  OutputSink diagnostics{stderr, true};
  RunContext ctx{out, diagnostics};
};

// Every subcommand, in the order of the help text.
std::vector<Subcommand> Subcommands();

// The program: parses argv, runs one subcommand, gives the exit value.
int RunKit(int argc, const char* const* argv);

// Each subcommand's set-up, in a file of its own.
std::function<int()> SetupMakeDb(CLI::App& command);
std::function<int()> SetupRender(CLI::App& command);
std::function<int()> SetupCheck(CLI::App& command);
std::function<int()> SetupOsm(CLI::App& command);
std::function<int()> SetupRunways(CLI::App& command);
std::function<int()> SetupView(CLI::App& command);

}  // namespace bgr::kit
