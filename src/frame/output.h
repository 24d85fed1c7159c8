// The one path of console output: every line a command shows goes through a
// sink, which writes to a stream or keeps the text for an in-process caller.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace bgr {

class OutputSink {
 public:
  // Buffered writes to 'stream'; with 'lineFlush' each Write reaches it at once.
  explicit OutputSink(std::FILE* stream, bool lineFlush = false) : stream_(stream), lineFlush_(lineFlush) {}
  // Keeps everything written, for Take.
  OutputSink() = default;
  OutputSink(const OutputSink&) = delete;
  OutputSink& operator=(const OutputSink&) = delete;

  void Write(std::string_view text) {
    buffer_.append(text);
    if (stream_ && (lineFlush_ || buffer_.size() >= kFlushBytes)) Flush();
  }
  void Put(char c) {
    buffer_.push_back(c);
    if (stream_ && buffer_.size() >= kFlushBytes) Flush();
  }
  void Printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
  // False when the stream refused the text.
  bool Flush();
  // What a capturing sink holds; the sink starts empty again.
  std::string Take();

 private:
  static constexpr std::size_t kFlushBytes = 1 << 16;
  std::FILE* stream_ = nullptr;
  bool lineFlush_ = false;
  std::string buffer_;
};

}  // namespace bgr
