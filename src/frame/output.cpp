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

void OutputSink::Pass(std::string_view text) {
  if (!stream_) {
    captured_.append(text);
  } else if (std::fwrite(text.data(), 1, text.size(), stream_) != text.size()) {
    failed_ = true;
  }
}

void OutputSink::Spill() {
  Pass(std::string_view(buffer_.get(), used_));
  used_ = 0;
}

bool OutputSink::Flush() {
  Spill();
  if (stream_ && std::fflush(stream_) != 0) failed_ = true;
  return !failed_;
}

std::string OutputSink::Take() {
  Spill();
  std::string out;
  out.swap(captured_);
  return out;
}

}  // namespace bgr
