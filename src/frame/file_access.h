// The one door through which the program opens, closes, deletes and moves files.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"

namespace bgr {

class RunContext;

// Owns a C stream. Close tells whether every write reached the file; a stream
// that goes out of scope unclosed is closed without a word, so a writer that
// cares closes it itself.
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
  // False for a closed stream, a write that failed on the way, or a failed close;
  // the system's reason is then in error().
  bool Close();
  // Every byte written so far handed to the system: false, with the reason in
  // error(), when a write failed.
  bool Flush();
  const std::string& error() const { return error_; }

 private:
  std::FILE* file_ = nullptr;
  std::string error_;
};

Stream WrapFileOpen(RunContext& ctx, std::string_view name, std::string_view mode);

// The one way a file is written safely: under a part name beside its final
// name, with every write checked at the close, put in place in one rename
// (platform::MoveFile: the data reaches the disk first, the mode and a link at
// the name are kept). Until then, and after any failure, the file of that name
// stays as it was. A device is written straight. An unfinished file is dropped.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() { Drop(); }

  // Opens for writing; a failed open is reported as WrapFileOpen reports it,
  // under the final name, with 'mode'.
  bool Open(RunContext& ctx, std::string_view name, std::string_view mode = "wb");
  // The temporary file of an in-place edit: written under the fixed name
  // 'temporary', which its owner holds against other runs, and opened as
  // WrapFileOpen opens it. Commit then only closes it, every write checked, and
  // Drop only lets it go: the owner puts it in place (PutInPlace) or removes it.
  bool OpenTemporary(RunContext& ctx, std::string_view temporary, std::string_view mode = "wb");
  std::FILE* get() const { return stream_.get(); }
  explicit operator bool() const { return static_cast<bool>(stream_); }
  const std::string& name() const { return name_; }
  // Closes the file with every byte checked and puts it in place; empty when
  // done, else the system's reason (the part is dropped then).
  [[nodiscard]] std::string Commit();
  // Closes the file and removes the part: the old file stays as it was.
  void Drop();
  // With ok, commits, a failure being an error line in the command's words;
  // otherwise drops. True when the file is in place.
  bool Finish(RunContext& ctx, bool ok, std::string_view command);

 private:
  Stream stream_;
  std::string name_;
  std::string part_;      // empty while writing straight to the name (a device, a temporary)
  bool unnamed_ = false;  // a new file, named only once it is whole
  platform::FoundPath target_;
};
// Puts a finished file in the place of 'name' in one step (the data reaches the
// disk first; the mode and a link at the name are kept). True when done.
[[nodiscard]] bool PutInPlace(std::string_view part, std::string_view name);
// The output of a command that reads 'source': refused, in the command's words,
// when it is the source itself (false: the command does nothing); otherwise
// opened, a failed open said in the command's words and clearing 'ok'.
bool OpenDestination(RunContext& ctx, std::string_view command, std::string_view source, std::string_view destination,
                     OutputFile& out, int& ok);

bool WrapFileClose(Stream& stream);
bool FileExists(RunContext& ctx, std::string_view name);
// Why a file can't be read, in the system's words ("No such file or directory")
// or ours ("it is a folder"); empty when it opens for reading.
std::string WhyUnreadable(std::string_view name);
int DeleteFiles(std::string_view pattern);

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
