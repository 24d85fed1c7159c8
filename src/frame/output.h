// The one path of console output: every line a command shows goes through a
// sink, which writes to a stream or keeps the text for an in-process caller.
#pragma once

#include <cstdio>
#include <cstring>
#include <memory>
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

  // A listing puts out a few characters for every byte of files of many
  // megabytes: both calls are a copy into a buffer of our own.
  void Put(char c) {
    if (used_ == kBufferBytes) Spill();
    buffer_[used_++] = c;
  }
  void Write(std::string_view text) {
    if (text.size() > kBufferBytes - used_) Spill();
    if (text.size() > kBufferBytes) {
      Pass(text);
    } else {
      std::memcpy(buffer_.get() + used_, text.data(), text.size());
      used_ += text.size();
    }
    if (lineFlush_) Flush();
  }
  void Printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
  // False when the stream refused the text.
  bool Flush();
  // What a capturing sink holds; the sink starts empty again.
  std::string Take();
  // A terminal shows progress that a file or a pipe would only collect.
  bool terminal() const { return terminal_; }
  void SetTerminal(bool terminal) { terminal_ = terminal; }

 private:
  static constexpr std::size_t kBufferBytes = 1 << 16;
  void Spill();
  void Pass(std::string_view text);

  std::FILE* stream_ = nullptr;
  bool lineFlush_ = false;
  std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kBufferBytes);  // no page touched unused
  std::size_t used_ = 0;
  std::string captured_;
  bool failed_ = false;
  bool terminal_ = false;
};

}  // namespace bgr
