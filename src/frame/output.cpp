#include "frame/output.h"

#include <cstdarg>

namespace bgr {

void OutputSink::Printf(const char* format, ...) {
  char small[256];
  std::va_list args;
  va_start(args, format);
  std::va_list again;
  va_copy(again, args);
  int size = std::vsnprintf(small, sizeof small, format, args);
  va_end(args);
  if (size < 0) {
    va_end(again);
    return;
  }
  if (static_cast<std::size_t>(size) < sizeof small) {
    va_end(again);
    Write(std::string_view(small, static_cast<std::size_t>(size)));
    return;
  }
  std::string large(static_cast<std::size_t>(size) + 1, '\0');
  std::vsnprintf(large.data(), large.size(), format, again);
  va_end(again);
  large.resize(static_cast<std::size_t>(size));
  Write(large);
}

bool OutputSink::Flush() {
  if (!stream_) return true;
  bool ok = std::fwrite(buffer_.data(), 1, buffer_.size(), stream_) == buffer_.size();
  buffer_.clear();
  return std::fflush(stream_) == 0 && ok;
}

std::string OutputSink::Take() {
  std::string out;
  out.swap(buffer_);
  return out;
}

}  // namespace bgr
