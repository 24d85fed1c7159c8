// What the program needs of the operating system: paths written with backslashes
// on a case-insensitive system, file moves, wildcard scans and a millisecond clock.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A path text with '\' or '/' as native path; every component that exists on disk
// under another case is taken as it stands there. Components that don't exist
// stay as given, so new files are created with the name the user wrote.
std::string NativePath(std::string_view path);

enum class PathKind { kMissing, kRegular, kDirectory, kDevice, kOther };
// What stands at a path, its last link followed: kOther is a FIFO, a socket or
// the like, which would block or never end a read.
PathKind KindOf(std::string_view path);

// fopen of a path text. Refuses directories, as the source system's fopen does,
// and anything but a regular file for reading (a device or FIFO never ends or
// blocks); writes may also go to a device such as /dev/null.
std::FILE* OpenFile(std::string_view path, const char* mode);

// Standard output and error carry bytes as they are (no CR before LF on Windows).
void UseBinaryStdio();
// The stream is a terminal that a user watches, not a file or a pipe.
bool IsTerminal(std::FILE* stream);

// An existing file at the path that an open for writing would accept (not
// marked read-only, or this user may write it anyway).
bool Writable(std::string_view path);

// Both paths name one existing file, however they are spelled.
bool SameFile(std::string_view a, std::string_view b);

// Asks the system to start writing what the stream holds to the disk, without
// waiting: a large file that is synced at its end then waits less. A hint.
void StartWriteback(std::FILE* f);

// Cuts an open stream's file to its first 'size' bytes.
bool TruncateStream(std::FILE* f, std::uint64_t size);

// A name for a new file beside 'path' in its folder, unique to this process.
std::string PartNameBeside(std::string_view path);

// A path as it was found on the disk once, for a caller that does several
// things with it: its native spelling and what stood there.
struct FoundPath {
  std::string native;
  PathKind kind = PathKind::kMissing;
  bool free = false;  // nothing stands at the name, not even a link to nowhere
};
FoundPath FindPath(std::string_view path);

// A file with no name yet, in the folder of 'path': nothing of it is seen, nor
// left behind by a run that stops, until NameUnnamed gives it its name. Null
// where the system has no such files; the caller then writes a part file.
std::FILE* OpenUnnamedBeside(const FoundPath& path);
// Gives the unnamed file 'f', its bytes flushed, the name 'path', where no file
// may stand: empty when done, else the system's reason.
std::string NameUnnamed(std::FILE* f, const FoundPath& path);

// An exclusive lock on a file between runs: taken on the file at a path
// (created empty when missing, never truncated by the taking), held until
// Release or destruction, so a second run waits or gives up.
class FileLock {
 public:
  FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock() { Release(); }
  // Waits up to waitMs for another holder; false when it still holds the file
  // or the file can't be made.
  bool Acquire(std::string_view path, int waitMs);
  void Release();
  // The locked file is the one at 'path'.
  bool IsFile(std::string_view path) const;
  // The last Acquire gave up because another run held the file.
  bool busy() const { return busy_; }

 private:
  int fd_ = -1;
  void* handle_ = nullptr;  // on Windows: the open, locked file
  std::string heldPath_;
  bool busy_ = false;
};

// Removes a file (never a directory). True when it is gone.
bool RemoveFile(std::string_view path);

// Puts 'from' at the name 'to', replacing an existing 'to' in one step where the
// file system allows it, and across file systems by a copy. The new file reaches
// the disk first; it takes the mode of the file it replaces, and a 'to' that is
// a symbolic link has the file it points to replaced. On failure both files stay
// where they were.
bool MoveFile(std::string_view from, std::string_view to);

// Names (without folder) of the entries in the pattern's folder that match the
// pattern's last component, in name order.
std::vector<std::string> FindEntries(std::string_view pattern);

std::int64_t NowMs();

// Byte access without the stream lock: the program has one thread, and the
// listings walk files of many megabytes a byte at a time.
inline int GetByte(std::FILE* f) {
#if defined(_WIN32)
  return _getc_nolock(f);
#else
  return getc_unlocked(f);
#endif
}
inline void PutByte(int c, std::FILE* f) {
#if defined(_WIN32)
  _putc_nolock(c, f);
#else
  putc_unlocked(c, f);
#endif
}

// A shared library looked for at run time, for a feature that works without
// it; empty when the system has no library of that name. It stays loaded to
// the end of the process: libraries with type registries of their own (GLib's)
// can't be unloaded safely.
class SharedLibrary {
 public:
  explicit SharedLibrary(const char* name);
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;
  explicit operator bool() const { return handle_ != nullptr; }
  // The address of a function or object of the library, or null.
  void* Symbol(const char* name) const;

 private:
  void* handle_ = nullptr;
};

}  // namespace platform
