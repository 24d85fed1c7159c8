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

// fopen of a path text; refuses directories, as the source system's fopen does.
std::FILE* OpenFile(std::string_view path, const char* mode);

// Removes a file (never a directory). True when it is gone.
bool RemoveFile(std::string_view path);

// Puts 'from' at the name 'to', replacing an existing 'to' in one step where the
// file system allows it, and across file systems by a copy. On failure both files
// stay where they were.
bool MoveFile(std::string_view from, std::string_view to);

// Cuts a file to its first 'size' bytes.
bool TruncateFile(std::string_view path, std::uint64_t size);

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

}  // namespace platform
