// What one run of the program owns: the run report (report.txt beside the
// program), the console and diagnostics sinks, and the report lines already
// given that come once a run. Commands get it as their first argument.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "frame/output.h"

namespace bgr {

// A fatal stop: ReportFatal throws it, the top of the run turns it into its
// report lines and the exit value, so that nothing below calls exit.
struct FatalStop {
  std::string format;
  std::string text;
  std::int16_t shortNumber = 0;
  std::int32_t longNumber = 0;
};

[[noreturn]] void ReportFatal(std::string_view format, std::string_view text = "", std::int16_t shortNumber = 0,
                              std::int32_t longNumber = 0);

class RunContext {
 public:
  RunContext(OutputSink& console, OutputSink& diagnostics) : console_(console), diagnostics_(diagnostics) {}
  RunContext(const RunContext&) = delete;
  RunContext& operator=(const RunContext&) = delete;

  OutputSink& console() { return console_; }
  // Standard error: warnings of our own and progress, never part of the output.
  OutputSink& diagnostics() { return diagnostics_; }

  void ReportStart(int argc, const char* const* argv, std::string_view version, bool toConsole, bool clearOldReport);
  // One line to the report; a format that begins with '>' goes there alone, any
  // other also to the console, both behind "ERROR: ". Each conversion shows its
  // own value: %s text (a second %s text2), %d shortNumber, %ld longNumber.
  void Report(std::string_view format, std::string_view text = "", std::int16_t shortNumber = 0,
              std::int32_t longNumber = 0, std::string_view text2 = "");
  // The lines of a fatal stop: the report and the console, then the console alone.
  void ReportFatalLines(const FatalStop& stop);
  // True the first time 'key' is raised in this run: for what is said once a
  // run, however often its cause comes back.
  bool FirstTime(std::string_view key) {
    if (raised_.contains(key)) return false;  // no text made for a key seen before
    raised_.emplace(key);
    return true;
  }
  // Report, once a run for each format. The one report call that may come from
  // two threads at once (the tile tables of two layers laid side by side).
  void ReportOnce(std::string_view format, std::string_view text = "", std::int16_t shortNumber = 0,
                  std::int32_t longNumber = 0, std::string_view text2 = "");
  void ReportEnd();
  // In-process runs (tests, tools) keep report lines on the console sink.
  void KeepReportOnConsole() { reportToFile_ = false; }

  const std::string& reportPath() const { return reportPath_; }

 private:
  class ReportStream;

  OutputSink& console_;
  OutputSink& diagnostics_;
  std::string reportPath_;
  bool reportToFile_ = true;
  bool reportToConsole_ = true;
  bool reportBusy_ = false;
  std::int64_t startClock_ = 0;
  std::set<std::string, std::less<>> raised_;
  std::mutex onceMutex_;
};

// A run whose console and report stay in memory: for reading files through the
// library's readers on the side, without a word to the user.
struct QuietRun {
  QuietRun() { ctx.KeepReportOnConsole(); }
  QuietRun(const QuietRun&) = delete;
  QuietRun& operator=(const QuietRun&) = delete;
  OutputSink console;
  OutputSink diagnostics;
  RunContext ctx{console, diagnostics};
};

std::string FormatReportLine(std::string_view format, std::string_view text, std::int16_t shortNumber,
                             std::int32_t longNumber, std::string_view text2);
// report.txt in the place of the program's file name.
std::string ReportPathFor(std::string_view argv0);

}  // namespace bgr
