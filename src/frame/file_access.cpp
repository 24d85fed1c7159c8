#include "frame/file_access.h"

#include <cerrno>
#include <cstring>

#include "frame/run_context.h"
#include "frame/text.h"
#include "platform/path_text.h"
#include "platform/platform.h"

namespace bgr {

Stream& Stream::operator=(Stream&& other) noexcept {
  if (this != &other) {
    if (file_) std::fclose(release());
    file_ = other.release();
  }
  return *this;
}

Stream::~Stream() {
  if (file_) std::fclose(release());
}

std::FILE* Stream::release() {
  std::FILE* file = file_;
  file_ = nullptr;
  return file;
}

bool Stream::Flush() {
  if (!file_) return false;
  errno = 0;
  if (std::fflush(file_) == 0 && !std::ferror(file_)) return true;
  error_ = errno != 0 ? std::strerror(errno) : "Input/output error";
  return false;
}

bool Stream::Close() {
  if (!file_) return false;
  std::FILE* file = release();
  errno = 0;
  bool wroteAll = std::fflush(file) == 0 && !std::ferror(file);
  int reason = errno;
  bool closed = std::fclose(file) == 0;
  if (wroteAll && !closed) reason = errno;
  if (wroteAll && closed) return true;
  // a write that failed earlier leaves no errno behind: the error mark is all there is
  error_ = reason != 0 ? std::strerror(reason) : "Input/output error";
  return false;
}

Stream WrapFileOpen(RunContext& ctx, std::string_view name, std::string_view mode) {
  name = SkipBlanks(name);
  bool exists = mode == "exists";
  std::string openMode = exists ? std::string("r") : std::string(mode);
  Stream stream(platform::OpenFile(name, openMode.c_str()));
  if (!stream && !exists) {
    ctx.Report(">INFO: WrapFileOpen(%s, [%d%ld] %s) failed", name, 0, 0, mode);
    // a FIFO or device would block or never end: say why it is refused
    platform::PathKind kind = platform::KindOf(name);
    if (kind == platform::PathKind::kOther || (openMode[0] == 'r' && kind == platform::PathKind::kDevice))
      ctx.Report("WrapFileOpen '%s' is not a regular file", name);
  }
  return stream;
}

namespace {

// The part beside 'name' ('part' stays empty for a device, written straight).
Stream OpenPart(RunContext& ctx, std::string_view name, std::string& part, bool& unnamed, platform::FoundPath& target,
               std::string_view mode) {
  part.clear();
  unnamed = false;
  target = platform::FindPath(name);
  platform::PathKind kind = target.kind;
  if (kind == platform::PathKind::kDevice) return WrapFileOpen(ctx, name, mode);
  // what an open of the name itself would refuse (a folder, a FIFO, a read-only
  // file) is refused now, in the open's own words, before any work is done
  if (kind == platform::PathKind::kDirectory || kind == platform::PathKind::kOther) return WrapFileOpen(ctx, name, mode);
  if (kind == platform::PathKind::kRegular && !platform::Writable(name)) {
    ctx.Report(">INFO: WrapFileOpen(%s, [%d%ld] %s) failed", name, 0, 0, mode);
    return {};
  }
  // a new file has nothing to protect but itself from being seen half made:
  // it is written without a name and named at the end, which costs no rename
  if (target.free) {
    Stream stream(platform::OpenUnnamedBeside(target));
    unnamed = static_cast<bool>(stream);
    if (stream) return stream;
  }
  std::string beside = platform::PartNameBeside(name);
  Stream stream(platform::OpenFile(beside, "wb"));
  if (stream) {
    part = std::move(beside);
  } else {
    ctx.Report(">INFO: WrapFileOpen(%s, [%d%ld] %s) failed", name, 0, 0, mode);
  }
  return stream;
}

}  // namespace

bool OutputFile::Open(RunContext& ctx, std::string_view name, std::string_view mode) {
  Drop();
  name = SkipBlanks(name);
  name_ = name;
  stream_ = OpenPart(ctx, name, part_, unnamed_, target_, mode);
  return static_cast<bool>(stream_);
}

bool OutputFile::OpenTemporary(RunContext& ctx, std::string_view temporary, std::string_view mode) {
  Drop();
  name_ = SkipBlanks(temporary);
  stream_ = WrapFileOpen(ctx, name_, mode);
  return static_cast<bool>(stream_);
}

std::string OutputFile::Commit() {
  std::string failure;
  if (unnamed_) {
    // named once every byte is out, so that a file of that name is whole
    failure = stream_.Flush() ? platform::NameUnnamed(stream_.get(), target_) : stream_.error();
    if (!stream_.Close() && failure.empty()) {
      failure = stream_.error();
      platform::RemoveFile(target_.native);
    }
    unnamed_ = false;
  } else if (!stream_.Close()) {
    failure = stream_.error();
  } else if (!part_.empty() && !PutInPlace(part_, name_)) {
    failure = "the new file cannot take the old one's place";
  }
  if (!failure.empty() && !part_.empty()) platform::RemoveFile(part_);
  part_.clear();
  return failure;
}

void OutputFile::Drop() {
  if (stream_) std::fclose(stream_.release());  // an unnamed file goes with its stream
  unnamed_ = false;
  if (!part_.empty()) platform::RemoveFile(part_);
  part_.clear();
}

bool PutInPlace(std::string_view part, std::string_view name) { return platform::MoveFile(part, name); }

bool OutputFile::Finish(RunContext& ctx, bool ok, std::string_view command) {
  if (!stream_) return false;
  if (!ok) {
    Drop();
    return false;
  }
  std::string failure = Commit();
  if (failure.empty()) return true;
  ctx.Report(std::string(command) + " cannot write '%s': %s", name_, 0, 0, failure);
  return false;
}

bool OpenDestination(RunContext& ctx, std::string_view command, std::string_view source, std::string_view destination,
                     OutputFile& out, int& ok) {
  if (platform::SameFile(source, destination)) {
    ctx.Report(std::string(command) + " source and destination are the same file '%s'", destination);
    return false;
  }
  if (!out.Open(ctx, destination)) {
    ok = 0;
    ctx.Report(std::string(command) + " dest file '%s' not openable", destination);
  }
  return true;
}

bool WrapFileClose(Stream& stream) { return stream.Close(); }

bool FileExists(RunContext& ctx, std::string_view name) {
  if (SkipBlanks(name).empty()) return false;
  return static_cast<bool>(WrapFileOpen(ctx, name, "exists"));
}

std::string WhyUnreadable(std::string_view name) {
  name = SkipBlanks(name);
  switch (platform::KindOf(name)) {
    case platform::PathKind::kDirectory:
      return "it is a folder";
    case platform::PathKind::kDevice:
    case platform::PathKind::kOther:
      return "it is a device or a pipe, not a file";
    default:
      break;
  }
  errno = ENOENT;  // an empty name opens nothing and sets nothing
  if (std::FILE* f = platform::OpenFile(name, "rb")) {
    std::fclose(f);
    return {};
  }
  return std::strerror(errno);
}

int DeleteFiles(std::string_view pattern) {
  if (pattern.find_first_of("?*") == std::string_view::npos) return platform::RemoveFile(pattern) ? 1 : 0;
  std::string dir(platform::FolderPart(pattern));
  FileFinder finder;
  for (bool found = finder.First(pattern); found; found = finder.Next()) platform::RemoveFile(dir + finder.name());
  finder.Close();
  return 0;
}

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
