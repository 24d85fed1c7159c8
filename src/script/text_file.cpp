#include "script/text_file.h"

#include <cstdio>

#include "frame/line_reader.h"
#include "frame/text.h"

namespace bgr {

bool TextFile::Open(RunContext& ctx, std::string_view name, std::string_view mode, std::int32_t kind) {
  Close();
  cursor = 0;
  lineStart = 0;
  lineNumber = 0;
  line.clear();
  file = WrapFileOpen(ctx, name, mode);
  openKind = file ? kind : 0;
  return IsOpen();
}

bool TextFile::Close() {
  bool closed = false;
  if (IsOpen()) closed = WrapFileClose(file);
  openKind = 0;
  return closed;
}

std::int32_t TextFile::ReadLine() {
  cursor = 0;
  if (!file) {
    line.clear();
    return 0;
  }
  lineStart = std::ftell(file.get());
  if (!ReadLimitedLine(file.get(), line)) return 0;
  ++lineNumber;
  return 1;
}

bool TextFile::SkipBlanks() {
  while (At() < line.size() && (line[At()] == ' ' || line[At()] == '\t')) ++cursor;
  return At() < line.size();
}

std::int32_t TextFile::SkipWord() {
  while (At() < line.size() && line[At()] != ' ' && line[At()] != '\t') ++cursor;
  return At() < line.size() ? 1 : 0;
}

std::int32_t TextFile::SkipFields(std::int32_t n) {
  for (std::int32_t i = 0; i < n; ++i) {
    if (!SkipBlanks()) return 0;
    if (SkipWord() == 0) return 0;
  }
  return 1;
}

template <class T>
bool TextFile::Scan(const char* format, T* out, char stop) {
  if (!SkipBlanks()) return false;
  if (std::sscanf(line.c_str() + At(), format, out) != 1) return false;
  if (stop == 0) {
    SkipWord();
  } else {
    while (At() < line.size() && line[At()] != stop) ++cursor;
    if (At() < line.size()) ++cursor;
  }
  return true;
}

bool TextFile::ScanField(const char* format, std::int32_t* out, char stop) { return Scan(format, out, stop); }
bool TextFile::ScanField(const char* format, double* out, char stop) { return Scan(format, out, stop); }

bool TextFile::ReadField(std::string& out) {
  if (!SkipBlanks()) return false;
  std::string_view rest = std::string_view(line).substr(At());
  std::size_t before = rest.size();
  out = NextToken(rest);
  cursor = static_cast<std::int16_t>(cursor + static_cast<std::int16_t>(before - rest.size()));
  return true;
}

}  // namespace bgr
