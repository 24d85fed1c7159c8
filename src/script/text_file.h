// A line reader with a cursor over the blank- or tab-separated fields of the line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/file_access.h"

namespace bgr {

class RunContext;

class TextFile {
 public:
  bool IsOpen() const { return openKind != 0; }
  bool Open(RunContext& ctx, std::string_view name, std::string_view mode, std::int32_t kind);
  bool OpenRead(RunContext& ctx, std::string_view name) { return Open(ctx, name, "r", 1); }
  bool Close();
  std::int32_t ReadLine();
  bool SkipBlanks();
  std::int32_t SkipWord();
  std::int32_t SkipFields(std::int32_t n);
  bool ScanField(const char* format, std::int32_t* out, char stop);
  bool ScanField(const char* format, double* out, char stop);
  bool ReadField(std::string& out);

  std::int32_t openKind = 0;
  long lineStart = 0;
  std::int32_t lineNumber = 0;
  Stream file;
  std::string line;
  std::int16_t cursor = 0;

 private:
  template <class T>
  bool Scan(const char* format, T* out, char stop);
  std::size_t At() const { return static_cast<std::size_t>(cursor); }
};

}  // namespace bgr
