#include "platform/platform.h"

#include "platform/path_text.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <unordered_map>
#include <system_error>
#include <thread>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#undef MoveFile  // ours, not the system's macro
#include <fcntl.h>
#include <io.h>
#include <process.h>
#else
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace platform {
namespace {

bool Exists(const std::string& path) {
  std::error_code ec;
  return fs::exists(fs::symlink_status(path, ec));
}

// The names of the folders looked into, folded to one case. A folder's list is
// read again only when its change time moved on behind this program's back: a
// script that makes thousands of files in one folder would otherwise read the
// folder at every file it opens. Files that this program makes or removes are
// entered at once. It mirrors the file system, which is one for the process.
class FolderNames {
 public:
  static FolderNames& Shared() {
    static FolderNames names;
    return names;
  }

  struct Stamp {
    std::int64_t seconds = -1, nanoseconds = -1, inode = -1, device = -1;
    bool operator==(const Stamp&) const = default;
  };

  // The entry of 'dir' whose name equals 'name' ignoring case; the first in
  // name order. 'stamp' is the folder's as the caller just saw it, if it did.
  std::string Find(const std::string& dir, std::string_view name, const Stamp* stamp = nullptr) {
    std::lock_guard<std::mutex> hold(mutex_);
    Listing* listing = Current(Key(dir), stamp);
    if (!listing) return {};
    auto it = listing->names.find(Folded(name));
    return it == listing->names.end() || it->second.empty() ? std::string() : it->second.front();
  }

  // This program made, or moved here, the file 'path' (native).
  void Added(const std::string& path) { Change(path, true); }
  void Removed(const std::string& path) { Change(path, false); }
  void Moved(const std::string& from, const std::string& to) {
    std::lock_guard<std::mutex> hold(mutex_);
    std::string fromDir = Enter(from, false), toDir = Enter(to, true);
    Restamp(fromDir);
    if (toDir != fromDir) Restamp(toDir);
  }

#if !defined(_WIN32)
  static Stamp StampOf(const struct stat& st) {
    return {static_cast<std::int64_t>(st.st_mtim.tv_sec), static_cast<std::int64_t>(st.st_mtim.tv_nsec),
            static_cast<std::int64_t>(st.st_ino), static_cast<std::int64_t>(st.st_dev)};
  }
#endif

 private:
  struct Listing {
    Stamp stamp;
    std::unordered_map<std::string, std::vector<std::string>> names;  // folded name: the real ones in name order
  };

  static std::string Key(const std::string& dir) {
    if (dir.empty()) return ".";
    std::string key = dir;
    while (key.size() > 1 && key.back() == '/') key.pop_back();
    return key;
  }

  static std::string Folded(std::string_view name) {
    std::string f(name);
    for (char& c : f) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return f;
  }

  static Stamp StampOf(const std::string& dir) {
    Stamp stamp;
#if !defined(_WIN32)
    struct stat st;
    if (::stat(dir.c_str(), &st) != 0) return stamp;
    stamp = StampOf(st);
#else
    (void)dir;
#endif
    return stamp;
  }

  Listing* Current(const std::string& dir, const Stamp* known) {
    Stamp now = known ? *known : StampOf(dir);
    if (now.seconds < 0) {
      listings_.erase(dir);
      return nullptr;
    }
    Listing& listing = listings_[dir];
    if (listing.stamp == now) return &listing;
    listing.names.clear();
    std::error_code ec;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
      Enter(listing, it->path().filename().string());
    }
    listing.stamp = now;
    return &listing;
  }

  static void Enter(Listing& listing, std::string name) {
    auto& spellings = listing.names[Folded(name)];
    auto at = std::lower_bound(spellings.begin(), spellings.end(), name);
    if (at == spellings.end() || *at != name) spellings.insert(at, std::move(name));
  }

  void Change(const std::string& path, bool added) {
    std::lock_guard<std::mutex> hold(mutex_);
    Restamp(Enter(path, added));
  }

  // The name of 'path' into or out of its folder's listing; the folder's key,
  // or nothing when the folder isn't listed.
  std::string Enter(const std::string& path, bool added) {
    std::size_t slash = path.find_last_of('/');
    std::string dir = Key(slash == std::string::npos ? std::string() : path.substr(0, slash == 0 ? 1 : slash));
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    auto it = listings_.find(dir);
    if (it == listings_.end()) return {};
    Listing& listing = it->second;
    if (added) {
      Enter(listing, name);
    } else {
      auto at = listing.names.find(Folded(name));
      if (at != listing.names.end()) std::erase(at->second, name);
    }
    return dir;
  }

  // a change of another program in the same moment goes unseen: a risk as small as the moment
  void Restamp(const std::string& dir) {
    if (dir.empty()) return;
    auto it = listings_.find(dir);
    if (it != listings_.end()) it->second.stamp = StampOf(dir);
  }

  std::mutex mutex_;
  std::unordered_map<std::string, Listing> listings_;
};

std::string FindNoCaseIn(const std::string& dir, std::string_view name) { return FolderNames::Shared().Find(dir, name); }

// A path text with '/' between its parts, each part found on disk under its
// case when lookUp is set.
std::string Walk(std::string_view path, bool lookUp) {
  std::string result;
  std::size_t pos = 0;
  if (!path.empty() && IsSeparator(path[0])) {
    result = "/";
    while (pos < path.size() && IsSeparator(path[pos])) ++pos;
  }
  while (pos < path.size()) {
    std::size_t next = pos;
    while (next < path.size() && !IsSeparator(path[next])) ++next;
    std::string_view part = path.substr(pos, next - pos);
    std::string name(part);
    if (lookUp && part != "." && part != "..") {
      std::string candidate = result + name;
      if (!Exists(candidate)) {
        std::string found = FindNoCaseIn(result, part);
        if (found.empty()) {
          lookUp = false;  // nothing below a missing folder can exist
        } else {
          name = found;
        }
      }
    }
    result += name;
    while (next < path.size() && IsSeparator(path[next])) ++next;
    if (next > pos + part.size()) result += '/';
    pos = next;
  }
  return result;
}

// A native path, and what stands there when the look-up could tell it
// without a further call (not behind a symbolic link).
struct Resolved {
  std::string native;
  bool kindKnown = false;
  PathKind kind = PathKind::kMissing;
  FolderNames::Stamp stamp{};  // of a folder, as the look-up saw it

  static Resolved Unknown(std::string native) { return {std::move(native), false, PathKind::kMissing, {}}; }
  static Resolved Missing(std::string native) { return {std::move(native), true, PathKind::kMissing, {}}; }
};

// NativePath's answer with as few calls to the system as it takes: a path that
// exists as written is one look, a new file in a known folder two.
Resolved Resolve(std::string_view path) {
  std::string spelled = Walk(path, false);
  if (spelled.empty()) return Resolved::Unknown({});
#if !defined(_WIN32)
  struct stat st;
  if (::lstat(spelled.c_str(), &st) == 0) {
    if (S_ISLNK(st.st_mode)) return Resolved::Unknown(spelled);
    PathKind kind = S_ISREG(st.st_mode)   ? PathKind::kRegular
                    : S_ISDIR(st.st_mode) ? PathKind::kDirectory
                    : (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode)) ? PathKind::kDevice
                                                                    : PathKind::kOther;
    return {spelled, true, kind, S_ISDIR(st.st_mode) ? FolderNames::StampOf(st) : FolderNames::Stamp{}};
  }
  // Missing as written: the folder is resolved the same way, then the name
  // looked for in its listing under another case.
  std::size_t slash = spelled.find_last_of('/');
  std::string name = slash == std::string::npos ? spelled : spelled.substr(slash + 1);
  if (name.empty() || name == "." || name == "..") return Resolved::Unknown(Walk(path, true));
  Resolved folder;
  if (slash == std::string::npos) {
    folder = Resolved::Unknown("");
  } else if (slash == 0) {
    folder = Resolved::Unknown("/");
  } else {
    folder = Resolve(std::string_view(spelled).substr(0, slash));
  }
  bool stamped = folder.kindKnown && folder.kind == PathKind::kDirectory;
  std::string prefix = folder.native.empty() || folder.native.back() == '/' ? folder.native : folder.native + '/';
  if (folder.kindKnown && folder.kind == PathKind::kMissing) return Resolved::Missing(prefix + name);
  std::string found = FolderNames::Shared().Find(folder.native, name, stamped ? &folder.stamp : nullptr);
  if (found.empty()) return Resolved::Missing(prefix + name);
  return Resolved::Unknown(prefix + found);
#else
  return Resolved::Unknown(Walk(path, true));
#endif
}

}  // namespace

std::string NativePath(std::string_view path) { return Resolve(path).native; }

namespace {

PathKind KindOfNative(const std::string& native) {
  std::error_code ec;
  fs::file_status st = fs::status(native, ec);
  switch (st.type()) {
    case fs::file_type::not_found:
      return PathKind::kMissing;
    case fs::file_type::regular:
      return PathKind::kRegular;
    case fs::file_type::directory:
      return PathKind::kDirectory;
    case fs::file_type::character:
    case fs::file_type::block:
      return PathKind::kDevice;
    default:
      return ec ? PathKind::kMissing : PathKind::kOther;
  }
}

#if !defined(_WIN32)
// Forces a file's bytes, or a folder's entries, to the disk.
bool SyncPath(const std::string& native, bool folder) {
  int fd = ::open(native.empty() ? "." : native.c_str(), folder ? O_RDONLY | O_DIRECTORY : O_RDONLY);
  if (fd < 0) return false;
  bool ok = ::fsync(fd) == 0;
  ::close(fd);
  return ok;
}
#endif

}  // namespace

namespace {

PathKind KindOfResolved(const Resolved& r) { return r.kindKnown ? r.kind : KindOfNative(r.native); }

}  // namespace

PathKind KindOf(std::string_view path) { return KindOfResolved(Resolve(path)); }

void StartWriteback(std::FILE* f) {
#if defined(SYNC_FILE_RANGE_WRITE)
  if (std::fflush(f) == 0) ::sync_file_range(::fileno(f), 0, 0, SYNC_FILE_RANGE_WRITE);
#else
  (void)f;
#endif
}

FoundPath FindPath(std::string_view path) {
  Resolved resolved = Resolve(path);
  return {resolved.native, KindOfResolved(resolved), resolved.kindKnown && resolved.kind == PathKind::kMissing};
}

std::FILE* OpenFile(std::string_view path, const char* mode) {
  Resolved resolved = Resolve(path);
  const std::string& native = resolved.native;
  if (native.empty()) return nullptr;
  PathKind kind = KindOfResolved(resolved);
  bool reading = mode[0] == 'r';
  if (kind == PathKind::kDirectory || kind == PathKind::kOther || (reading && kind == PathKind::kDevice)) {
    errno = kind == PathKind::kDirectory ? EISDIR : EINVAL;
    return nullptr;
  }
  if (reading && kind == PathKind::kMissing) {
    errno = ENOENT;  // as the open would fail, without asking
    return nullptr;
  }
  bool made = !reading && kind == PathKind::kMissing;
  // every file in binary mode: the same bytes on every system, no CR put before LF
  std::string binary(mode);
  if (binary.find('b') == std::string::npos) binary += 'b';
  std::FILE* f = std::fopen(native.c_str(), binary.c_str());
  if (f && made) FolderNames::Shared().Added(native);
  return f;
}

void UseBinaryStdio() {
#if defined(_WIN32)
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
#endif
}

bool IsTerminal(std::FILE* stream) {
#if defined(_WIN32)
  return _isatty(_fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

bool Writable(std::string_view path) {
  std::string native = NativePath(path);
#if defined(_WIN32)
  DWORD attributes = ::GetFileAttributesA(native.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) == 0;
#else
  return ::access(native.c_str(), W_OK) == 0;
#endif
}

bool SameFile(std::string_view a, std::string_view b) {
  std::error_code ec;
  return fs::equivalent(NativePath(a), NativePath(b), ec) && !ec;
}

bool TruncateStream(std::FILE* f, std::uint64_t size) {
  if (!f || std::fflush(f) != 0) return false;
#if defined(_WIN32)
  return _chsize_s(_fileno(f), static_cast<long long>(size)) == 0;
#else
  struct stat st;
  if (::fstat(fileno(f), &st) == 0 && !S_ISREG(st.st_mode)) return true;  // a device has no length to cut
  return ::ftruncate(fileno(f), static_cast<off_t>(size)) == 0;
#endif
}

std::string PartNameBeside(std::string_view path) {
#if defined(_WIN32)
  int pid = _getpid();
#else
  int pid = static_cast<int>(::getpid());
#endif
  return std::string(path) + "." + std::to_string(pid) + ".part";
}

std::FILE* OpenUnnamedBeside(const FoundPath& path) {
#if defined(O_TMPFILE)
  // such a file is named through its entry under /proc; without it, none is made
  static const bool nameable = ::access("/proc/self/fd", X_OK) == 0;
  const std::string& native = path.native;
  if (native.empty() || !nameable) return nullptr;
  std::size_t slash = native.find_last_of('/');
  std::string folder = slash == std::string::npos ? std::string(".") : native.substr(0, slash == 0 ? 1 : slash);
  int fd = ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  if (fd < 0) return nullptr;
  std::FILE* f = ::fdopen(fd, "wb");
  if (!f) ::close(fd);
  return f;
#else
  (void)path;
  return nullptr;
#endif
}

std::string NameUnnamed(std::FILE* f, const FoundPath& path) {
#if defined(O_TMPFILE)
  const std::string& native = path.native;
  std::string self = "/proc/self/fd/" + std::to_string(::fileno(f));
  if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, native.c_str(), AT_SYMLINK_FOLLOW) != 0) return std::strerror(errno);
  FolderNames::Shared().Added(native);
  return {};
#else
  (void)f;
  (void)path;
  return "Function not implemented";
#endif
}

bool FileLock::Acquire(std::string_view path, int waitMs) {
  Release();
  busy_ = false;
#if defined(_WIN32)
  std::string native = NativePath(path);
  std::int64_t until = NowMs() + waitMs;
  for (;;) {
    HANDLE h = ::CreateFileA(native.c_str(), GENERIC_READ | GENERIC_WRITE,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    OVERLAPPED at{};
    if (::LockFileEx(h, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &at)) {
      handle_ = h;
      heldPath_ = native;
      return true;
    }
    ::CloseHandle(h);
    if (NowMs() >= until) {
      busy_ = true;
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
#else
  std::string native = NativePath(path);
  std::int64_t until = NowMs() + waitMs;
  for (;;) {
    int fd = ::open(native.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return false;
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0) {
      // the holder before us may have moved the file away: the lock must be
      // on the file that stands at the path now
      struct stat held, now;
      if (::fstat(fd, &held) == 0 && ::stat(native.c_str(), &now) == 0 && held.st_dev == now.st_dev &&
          held.st_ino == now.st_ino) {
        fd_ = fd;
        return true;
      }
      ::close(fd);
      continue;
    }
    ::close(fd);
    if (NowMs() >= until) {
      busy_ = true;
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
#endif
}

void FileLock::Release() {
#if defined(_WIN32)
  if (handle_) ::CloseHandle(static_cast<HANDLE>(handle_));  // closing gives the lock back
  handle_ = nullptr;
#else
  if (fd_ >= 0) ::close(fd_);
#endif
  fd_ = -1;
}

bool FileLock::IsFile(std::string_view path) const {
#if defined(_WIN32)
  std::error_code ec;
  return handle_ && fs::equivalent(heldPath_, NativePath(path), ec) && !ec;
#else
  struct stat held, other;
  return fd_ >= 0 && ::fstat(fd_, &held) == 0 && ::stat(NativePath(path).c_str(), &other) == 0 &&
         held.st_dev == other.st_dev && held.st_ino == other.st_ino;
#endif
}

bool RemoveFile(std::string_view path) {
  std::string native = NativePath(path);
  std::error_code ec;
  if (native.empty() || fs::is_directory(fs::symlink_status(native, ec))) return false;
  if (std::remove(native.c_str()) != 0) return false;
  FolderNames::Shared().Removed(native);
  return true;
}

bool MoveFile(std::string_view from, std::string_view to) {
  Resolved source = Resolve(from);
  Resolved target = Resolve(to);
  std::error_code ec;
  if (source.native.empty() || target.native.empty() || KindOfResolved(source) != PathKind::kRegular) return false;
  if (!target.kindKnown && fs::is_symlink(fs::symlink_status(target.native, ec))) {
    // the file the link points to takes the bytes, also when it isn't there yet
    fs::path to = fs::read_symlink(target.native, ec);
    if (ec) return false;
    if (to.is_relative()) to = fs::path(target.native).parent_path() / to;
    fs::path resolved = fs::weakly_canonical(to, ec);
    if (ec) return false;
    target = Resolved::Unknown(resolved.string());
  }
  PathKind kind = KindOfResolved(target);
  if (kind == PathKind::kDirectory) return false;
  bool replacing = kind != PathKind::kMissing;
#if !defined(_WIN32)
  struct stat old;
  if (replacing && ::stat(target.native.c_str(), &old) == 0) {
    if (S_ISREG(old.st_mode)) fs::permissions(source.native, static_cast<fs::perms>(old.st_mode & 07777), ec);
    if (::chown(source.native.c_str(), old.st_uid, old.st_gid) != 0) {
      // a file of another owner keeps only its mode: we may not give it away
    }
  }
  // Replacing a file, its new bytes must be on the disk before the name moves
  // over, or a crash could leave the name with nothing; a file that is new
  // has no old content to lose, and a run that writes thousands of them
  // shouldn't wait for the disk at each.
  if (replacing && !SyncPath(source.native, false)) return false;
#else
  fs::file_status old = fs::status(target.native, ec);
  if (!ec && fs::is_regular_file(old)) fs::permissions(source.native, old.permissions(), ec);
#endif
  fs::rename(source.native, target.native, ec);
  if (!ec) FolderNames::Shared().Moved(source.native, target.native);
#if !defined(_WIN32)
  if (!ec && replacing) SyncPath(fs::path(target.native).parent_path().string(), true);
#endif
  const std::string& targetPath = target.native;
  if (!ec) return true;
  if (ec != std::errc::cross_device_link) return false;
  // Another file system: copy beside the target first, so the target is replaced
  // in one rename and never missing.
  std::string part = targetPath + ".part~";
  fs::copy_file(source.native, part, fs::copy_options::overwrite_existing, ec);
  if (ec) {
    fs::remove(part, ec);
    return false;
  }
  fs::rename(part, targetPath, ec);
  if (ec) {
    fs::remove(part, ec);
    return false;
  }
  fs::remove(source.native, ec);
  return true;
}

std::vector<std::string> FindEntries(std::string_view pattern) {
  std::string_view dirText = FolderPart(pattern);
  std::string_view namePattern = FileNamePart(pattern);
  std::string dir = dirText.empty() ? std::string(".") : NativePath(dirText);
  std::vector<std::string> names;
  std::error_code ec;
  for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
    std::string entry = it->path().filename().string();
    if (WildcardMatch(namePattern, entry)) names.push_back(std::move(entry));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::int64_t NowMs() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

#if defined(_WIN32)
SharedLibrary::SharedLibrary(const char* name) : handle_(reinterpret_cast<void*>(LoadLibraryA(name))) {}
SharedLibrary::~SharedLibrary() = default;
void* SharedLibrary::Symbol(const char* name) const {
  return handle_ ? reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(handle_), name)) : nullptr;
}
#else
SharedLibrary::SharedLibrary(const char* name) : handle_(dlopen(name, RTLD_NOW | RTLD_LOCAL)) {}
SharedLibrary::~SharedLibrary() = default;
// dlsym on a handle also searches the libraries that this one brought along
void* SharedLibrary::Symbol(const char* name) const { return handle_ ? dlsym(handle_, name) : nullptr; }
#endif

}  // namespace platform
