// What one run of the program owns: the run report (report.txt beside the
// program), the console and diagnostics sinks, and the few marks that the
// program keeps for the whole run (once-only warnings, the TMS listing's range,
// the one string-list walk). Commands get it as their first argument.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/output.h"

namespace bgr {

class STRING_LIST;

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

// Warnings that come once a run, however often their cause comes back.
struct OnceWarnings {
  bool pointTableFull = false;    // TEXPOINTS::Add
  bool polygonAllocFailed = false;  // TextureList::Add
  bool plyTooManyPoints = false;  // TaxiwayList::ReadPly
  bool segmentListFull = false;   // SegmentList::Add, both lists of the TMS job
  bool apronComplex = false;      // GenerateApron: a polygon with holes or touching itself
  bool apronTriangulationFailed = false;  // GenerateApronPolygons
  bool networkNotSaved = false;   // TaxiwayList::Save, on standard error
};

// The point range of the TMS listing; it starts once a run and is never reset.
struct ListRange {
  std::int32_t lowX = 9999999, lowZ = 9999999, highX = -9999999, highZ = -9999999;
};

// The one walk over a string list that a run has at a time.
struct ListIteration {
  const STRING_LIST* list = nullptr;
  std::string prefix;
  std::int32_t position = 0;
};

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
  void ReportEnd();
  // In-process runs (tests, tools) keep report lines on the console sink.
  void KeepReportOnConsole() { reportToFile_ = false; }

  const std::string& reportPath() const { return reportPath_; }

  OnceWarnings once;
  ListRange listRange;
  ListIteration listIteration;

 private:
  class ReportStream;

  OutputSink& console_;
  OutputSink& diagnostics_;
  std::string reportPath_;
  bool reportToFile_ = true;
  bool reportToConsole_ = true;
  bool reportBusy_ = false;
  std::int64_t startClock_ = 0;
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
