#include "frame/report.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

#include "frame/text.h"
#include "platform/platform.h"

namespace bgr {
namespace {

constexpr const char* kCredit = "bgrtool airport ground builder";

struct ReportState {
  std::string reportPath;
  bool reportToFile = true;
  bool reportToConsole = true;
  bool reportBusy = false;
  std::int64_t startClock = 0;
};

ReportState& State() {
  static ReportState state;
  return state;
}

// The file, standard output as fall-back when the console is on, or nothing.
class ReportStream {
 public:
  ReportStream() {
    ReportState& st = State();
    if (st.reportPath.empty()) st.reportPath = "report.txt";
    if (st.reportToFile) file_ = WrapFileOpen(st.reportPath, "a");
    if (file_) {
      out_ = file_.get();
    } else if (st.reportToConsole) {
      out_ = stdout;
    }
  }
  std::FILE* get() const { return out_; }
  // When the stream has fallen back on standard output, a line reaches the
  // console once, through the stream.
  bool IsConsole() const { return out_ == stdout; }
  void Write(std::string_view text) const {
    if (out_) std::fwrite(text.data(), 1, text.size(), out_);
  }

 private:
  Stream file_;
  std::FILE* out_ = nullptr;
};

void Console(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string FormatOne(const std::string& conversion, auto value) {
  int size = std::snprintf(nullptr, 0, conversion.c_str(), value);
  if (size <= 0) return {};
  std::string out(static_cast<std::size_t>(size) + 1, '\0');
  std::snprintf(out.data(), out.size(), conversion.c_str(), value);
  out.resize(static_cast<std::size_t>(size));
  return out;
}

}  // namespace

Stream& Stream::operator=(Stream&& other) noexcept {
  if (this != &other) {
    Close();
    file_ = other.release();
  }
  return *this;
}

Stream::~Stream() { Close(); }

std::FILE* Stream::release() {
  std::FILE* file = file_;
  file_ = nullptr;
  return file;
}

bool Stream::Close() {
  if (!file_) return false;
  std::FILE* file = release();
  return std::fclose(file) == 0;
}

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
  std::size_t cut = argv0.find_last_of("\\/");
  std::string path(cut == std::string_view::npos ? std::string_view{} : argv0.substr(0, cut + 1));
  return path + "report.txt";
}

const std::string& ReportPath() { return State().reportPath; }

void ReportStart(int argc, const char* const* argv, std::string_view version, bool toConsole, bool clearOldReport) {
  ReportState& st = State();
  st.reportToConsole = toConsole;
  st.startClock = platform::NowMs();
  std::string_view argv0 = argc > 0 && argv[0] ? argv[0] : "";
  st.reportPath = ReportPathFor(argv0);
  if (clearOldReport) DeleteFiles(st.reportPath);
  ReportStream stream;
  std::string banner = std::string(kCredit) + "," + std::string(version) + "\n";
  std::string commandLine(FileNamePart(argv0));
  for (int i = 1; i < argc; ++i) {
    commandLine += ' ';
    commandLine += argv[i] ? argv[i] : "";
  }
  commandLine += '\n';
  if (st.reportToConsole) Console(" " + banner + commandLine);
  if (!stream.IsConsole()) stream.Write("\n" + banner + commandLine);
}

void Report(std::string_view format, std::string_view text, std::int16_t shortNumber, std::int32_t longNumber,
            std::string_view text2) {
  ReportState& st = State();
  if (st.reportBusy) return;
  st.reportBusy = true;
  {
    ReportStream stream;
    bool reportOnly = !format.empty() && format[0] == '>';
    bool console = st.reportToConsole && !stream.IsConsole();
    if (reportOnly) {
      format.remove_prefix(1);
    } else {
      stream.Write("ERROR: ");
      if (console) Console("ERROR: ");
    }
    std::string line = FormatReportLine(format, text, shortNumber, longNumber, text2);
    stream.Write(line);
    if (!reportOnly && console) Console(line);
    stream.Write("\n");
    if (!reportOnly && console) Console("\n");
  }
  st.reportBusy = false;
}

void ReportFatal(std::string_view format, std::string_view text, std::int16_t shortNumber, std::int32_t longNumber) {
  Report(format, text, shortNumber, longNumber, "");
  State().reportToFile = false;
  Report(format, text, shortNumber, longNumber, "");
  std::fflush(stdout);
  std::exit(1);
}

void ReportEnd() {
  ReportState& st = State();
  double seconds = static_cast<double>(platform::NowMs() - st.startClock) / 1000.0;
  char line[64];
  std::snprintf(line, sizeof line, "TIME= %.3lf sec\n", seconds);
  Console(line);
  ReportStream stream;
  if (!stream.IsConsole()) stream.Write(line);
  std::fflush(stdout);
}

Stream WrapFileOpen(std::string_view name, std::string_view mode) {
  name = SkipBlanks(name);
  bool exists = mode == "exists";
  std::string openMode = exists ? std::string("r") : std::string(mode);
  Stream stream(platform::OpenFile(name, openMode.c_str()));
  if (!stream && !exists) Report(">INFO: WrapFileOpen(%s, [%d%ld] %s) failed", name, 0, 0, mode);
  return stream;
}

bool WrapFileClose(Stream& stream) { return stream.Close(); }

bool FileExists(std::string_view name) {
  if (SkipBlanks(name).empty()) return false;
  Stream stream = WrapFileOpen(name, "exists");
  return static_cast<bool>(stream);
}

int DeleteFiles(std::string_view pattern) {
  if (pattern.find_first_of("?*") == std::string_view::npos) return platform::RemoveFile(pattern) ? 1 : 0;
  std::size_t cut = pattern.find_last_of("\\/");
  std::string dir(cut == std::string_view::npos ? std::string_view{} : pattern.substr(0, cut + 1));
  FileFinder finder;
  for (bool found = finder.First(pattern); found; found = finder.Next()) platform::RemoveFile(dir + finder.name());
  finder.Close();
  return 0;
}

int ShellMove(std::string_view from, std::string_view to) { return platform::MoveFile(from, to) ? 0 : 1; }

int ReadByte(std::FILE* stream) { return stream ? std::getc(stream) : EOF; }

int WriteByte(std::FILE* stream, int value) {
  if (stream) std::putc(value & 0xFF, stream);
  return value;
}

bool FileFinder::First(std::string_view pattern) {
  Close();
  names_ = platform::FindEntries(pattern);
  at_ = 0;
  found_ = !names_.empty();
  return found_;
}

bool FileFinder::Next() {
  if (found_ && ++at_ >= names_.size()) found_ = false;
  return found_;
}

void FileFinder::Close() {
  names_.clear();
  at_ = 0;
  found_ = false;
}

}  // namespace bgr
