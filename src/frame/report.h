// The run report (report.txt beside the program) and the one door through which
// files are opened and closed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace bgr {

inline constexpr const char* kVersion = " v1.03";

// Owns a C stream; closes it when it goes out of scope.
class Stream {
 public:
  Stream() = default;
  explicit Stream(std::FILE* file) : file_(file) {}
  Stream(Stream&& other) noexcept : file_(other.release()) {}
  Stream& operator=(Stream&& other) noexcept;
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream();

  std::FILE* get() const { return file_; }
  explicit operator bool() const { return file_ != nullptr; }
  std::FILE* release();
  bool Close();  // false for a closed stream or a failed close

 private:
  std::FILE* file_ = nullptr;
};

void ReportStart(int argc, const char* const* argv, std::string_view version, bool toConsole, bool clearOldReport);
// One line to the report; a format that begins with '>' goes there alone, any
// other also to the console, both behind "ERROR: ". Each conversion shows its
// own value: %s text (a second %s text2), %d shortNumber, %ld longNumber.
void Report(std::string_view format, std::string_view text = "", std::int16_t shortNumber = 0,
            std::int32_t longNumber = 0, std::string_view text2 = "");
[[noreturn]] void ReportFatal(std::string_view format, std::string_view text = "", std::int16_t shortNumber = 0,
                              std::int32_t longNumber = 0);
void ReportEnd();

std::string FormatReportLine(std::string_view format, std::string_view text, std::int16_t shortNumber,
                             std::int32_t longNumber, std::string_view text2);
// report.txt in the place of the program's file name.
std::string ReportPathFor(std::string_view argv0);
const std::string& ReportPath();

Stream WrapFileOpen(std::string_view name, std::string_view mode);
bool WrapFileClose(Stream& stream);
bool FileExists(std::string_view name);
int DeleteFiles(std::string_view pattern);
// Moves a file to another name; 0 when done, as the command interpreter's move.
int ShellMove(std::string_view from, std::string_view to);

// One byte of a stream, or EOF; a null stream gives EOF.
int ReadByte(std::FILE* stream);
int WriteByte(std::FILE* stream, int value);

// A walk over the folder entries that match a pattern of '*' and '?'.
class FileFinder {
 public:
  bool First(std::string_view pattern);
  bool Next();
  void Close();
  bool found() const { return found_; }
  const std::string& name() const { return names_[at_]; }

 private:
  std::vector<std::string> names_;
  std::size_t at_ = 0;
  bool found_ = false;
};

}  // namespace bgr
