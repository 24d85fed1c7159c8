// Walks a BGR stream tag by tag without knowing its records, copying and echoing
// what passes; the base of every byte-copying command.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "frame/file_access.h"
#include "frame/output.h"
#include "platform/platform.h"

namespace bgr {

class RunContext;

inline constexpr std::size_t kMaxTagLength = 62;

class TagStream {
 public:
  // 'copy' may be null; while printValues isn't 0 the values that pass are
  // echoed on 'console'.
  TagStream(OutputSink& console, std::FILE* source, std::FILE* copy, std::int32_t printValues)
      : console_(console), source_(source), copy_(copy), printValues_(printValues) {}

  // Reads on to the next tag "<...>" and its zero byte. Bytes before the tag are
  // echoed as " %02X"; everything read goes to the copy.
  bool ScanTag(std::string& tag);
  double CopyDouble(double add);
  std::int32_t CopyLong(std::int32_t add, std::int32_t divisor = 1, bool quiet = false);

  // Where the values that CopyDouble and CopyLong pass go from now on.
  void CopyTo(std::FILE* copy) { copy_ = copy; }

  // When the walk ended before the end of the file (bytes inside a value that
  // look like a tag), says so on standard error: nothing behind was read.
  void WarnIfCut(RunContext& ctx, std::string_view name) const;

  // Bytes written to the copy so far; a rewind makes what follows overwrite.
  long copied() const { return copied_; }
  bool RewindCopy(long position);

 private:
  void CopyByte(int c) {
    if (copy_) {
      platform::PutByte(c, copy_);
      ++copied_;
    }
  }

  OutputSink& console_;
  std::FILE* source_;
  std::FILE* copy_;
  std::int32_t printValues_;
  long copied_ = 0;
  long read_ = 0;
  long cutAt_ = -1;  // where a walk that didn't reach the end of the file stopped
};

// The source and destination of a byte-copying command (move, edge delete);
// a failed open is reported in the commands' words and clears 'ok'. A
// destination that is the source itself is refused before anything is opened.
struct CopyStreams {
  CopyStreams(RunContext& ctx, std::string_view source, std::string_view destination);
  // Puts the destination in place when all went well; the command's result.
  [[nodiscard]] int Finish(RunContext& ctx);
  Stream in;
  OutputFile out;
  int ok = 1;
};

}  // namespace bgr
