#include "frame/run_context.h"

#include <cctype>
#include <cstring>

#include "frame/file_access.h"
#include "platform/path_text.h"
#include "platform/platform.h"

namespace bgr {
namespace {

constexpr const char* kCredit = "bgrtool airport ground builder";

std::string FormatOne(const std::string& conversion, auto value) {
  int size = std::snprintf(nullptr, 0, conversion.c_str(), value);
  if (size <= 0) return {};
  std::string out(static_cast<std::size_t>(size) + 1, '\0');
  std::snprintf(out.data(), out.size(), conversion.c_str(), value);
  out.resize(static_cast<std::size_t>(size));
  return out;
}

}  // namespace

void ReportFatal(std::string_view format, std::string_view text, std::int16_t shortNumber, std::int32_t longNumber) {
  throw FatalStop{std::string(format), std::string(text), shortNumber, longNumber};
}

// One opening of the report: the file, the console as fall-back when the
// console is on, or nothing.
class RunContext::ReportStream {
 public:
  explicit ReportStream(RunContext& ctx) {
    if (ctx.reportPath_.empty()) ctx.reportPath_ = "report.txt";
    if (ctx.reportToFile_) file_ = WrapFileOpen(ctx, ctx.reportPath_, "a");
    if (!file_ && ctx.reportToConsole_) console_ = &ctx.console_;
  }
  // When the stream has fallen back on the console, a line reaches it once,
  // through the stream.
  bool IsConsole() const { return console_ != nullptr; }
  void Write(std::string_view text) {
    if (file_) {
      std::fwrite(text.data(), 1, text.size(), file_.get());
    } else if (console_) {
      console_->Write(text);
    }
  }

 private:
  Stream file_;
  OutputSink* console_ = nullptr;
};

std::string FormatReportLine(std::string_view format, std::string_view text, std::int16_t shortNumber,
                             std::int32_t longNumber, std::string_view text2) {
  std::string out;
  int textsShown = 0;
  std::size_t i = 0;
  while (i < format.size()) {
    char c = format[i];
    if (c != '%') {
      out += c;
      ++i;
      continue;
    }
    std::size_t j = i + 1;
    std::string conversion = "%";
    while (j < format.size() && std::strchr("-+ #0", format[j])) conversion += format[j++];
    while (j < format.size() && (std::isdigit(static_cast<unsigned char>(format[j])) || format[j] == '.'))
      conversion += format[j++];
    bool isLong = false;
    while (j < format.size() && std::strchr("hlLqjzt", format[j])) {
      if (format[j] == 'l') isLong = true;
      ++j;
    }
    if (j >= format.size()) {
      out += format.substr(i);
      break;
    }
    char conv = format[j];
    conversion += conv;
    switch (conv) {
      case '%':
        out += '%';
        break;
      case 's': {
        std::string value(textsShown++ == 0 ? text : text2);
        out += FormatOne(conversion, value.c_str());
        break;
      }
      case 'd':
      case 'i':
        out += FormatOne(conversion, isLong ? static_cast<int>(longNumber) : static_cast<int>(shortNumber));
        break;
      case 'u':
      case 'x':
      case 'X':
      case 'o':
        out += FormatOne(conversion, isLong ? static_cast<unsigned>(longNumber)
                                      : static_cast<unsigned>(static_cast<std::uint16_t>(shortNumber)));
        break;
      default:
        out += format.substr(i, j + 1 - i);
        break;
    }
    i = j + 1;
  }
  return out;
}

std::string ReportPathFor(std::string_view argv0) {
  return std::string(platform::FolderPart(argv0)) + "report.txt";
}

void RunContext::ReportStart(int argc, const char* const* argv, std::string_view version, bool toConsole,
                             bool clearOldReport) {
  reportToConsole_ = toConsole;
  startClock_ = platform::NowMs();
  std::string_view argv0 = argc > 0 && argv[0] ? argv[0] : "";
  reportPath_ = ReportPathFor(argv0);
  if (clearOldReport) DeleteFiles(reportPath_);
  ReportStream stream(*this);
  std::string banner = std::string(kCredit) + "," + std::string(version) + "\n";
  std::string commandLine(platform::FileNamePart(argv0));
  for (int i = 1; i < argc; ++i) {
    commandLine += ' ';
    commandLine += argv[i] ? argv[i] : "";
  }
  commandLine += '\n';
  if (reportToConsole_) console_.Write(" " + banner + commandLine);
  if (!stream.IsConsole()) stream.Write("\n" + banner + commandLine);
}

void RunContext::Report(std::string_view format, std::string_view text, std::int16_t shortNumber,
                        std::int32_t longNumber, std::string_view text2) {
  if (reportBusy_) return;
  reportBusy_ = true;
  {
    ReportStream stream(*this);
    bool reportOnly = !format.empty() && format[0] == '>';
    bool console = reportToConsole_ && !stream.IsConsole();
    if (reportOnly) format.remove_prefix(1);
    std::string line = reportOnly ? std::string() : std::string("ERROR: ");
    line += FormatReportLine(format, text, shortNumber, longNumber, text2);
    line += '\n';
    stream.Write(line);
    if (!reportOnly && console) console_.Write(line);
  }
  reportBusy_ = false;
}

void RunContext::ReportOnce(std::string_view format, std::string_view text, std::int16_t shortNumber,
                            std::int32_t longNumber, std::string_view text2) {
  std::lock_guard<std::mutex> hold(onceMutex_);
  if (!FirstTime(format)) return;
  Report(format, text, shortNumber, longNumber, text2);
}

void RunContext::ReportFatalLines(const FatalStop& stop) {
  Report(stop.format, stop.text, stop.shortNumber, stop.longNumber, "");
  reportToFile_ = false;
  Report(stop.format, stop.text, stop.shortNumber, stop.longNumber, "");
}

void RunContext::ReportEnd() {
  double seconds = static_cast<double>(platform::NowMs() - startClock_) / 1000.0;
  char line[64];
  std::snprintf(line, sizeof line, "TIME= %.3lf sec\n", seconds);
  console_.Write(line);
  ReportStream stream(*this);
  if (!stream.IsConsole()) stream.Write(line);
}

}  // namespace bgr
