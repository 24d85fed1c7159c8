#include "platform/platform.h"

#include "platform/path_text.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace platform {
namespace {

bool Exists(const std::string& path) {
  std::error_code ec;
  return fs::exists(fs::symlink_status(path, ec));
}

// The entry of 'dir' whose name equals 'name' ignoring case; the first in name order.
std::string FindNoCaseIn(const std::string& dir, std::string_view name) {
  std::error_code ec;
  std::vector<std::string> hits;
  for (fs::directory_iterator it(dir.empty() ? "." : dir, ec), end; !ec && it != end; it.increment(ec)) {
    std::string entry = it->path().filename().string();
    if (EqualNoCase(entry, name)) hits.push_back(std::move(entry));
  }
  if (hits.empty()) return {};
  return *std::min_element(hits.begin(), hits.end());
}

}  // namespace

std::string NativePath(std::string_view path) {
  std::string result;
  std::size_t pos = 0;
  if (!path.empty() && IsSeparator(path[0])) {
    result = "/";
    while (pos < path.size() && IsSeparator(path[pos])) ++pos;
  }
  bool lookUp = true;
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

std::FILE* OpenFile(std::string_view path, const char* mode) {
  std::string native = NativePath(path);
  if (native.empty()) return nullptr;
  std::error_code ec;
  if (fs::is_directory(native, ec)) return nullptr;
  return std::fopen(native.c_str(), mode);
}

bool RemoveFile(std::string_view path) {
  std::string native = NativePath(path);
  std::error_code ec;
  if (native.empty() || fs::is_directory(fs::symlink_status(native, ec))) return false;
  return std::remove(native.c_str()) == 0;
}

bool MoveFile(std::string_view from, std::string_view to) {
  std::string source = NativePath(from);
  std::string target = NativePath(to);
  std::error_code ec;
  if (source.empty() || target.empty() || !fs::is_regular_file(source, ec)) return false;
  if (fs::is_directory(target, ec)) return false;
  fs::rename(source, target, ec);
  if (!ec) return true;
  if (ec != std::errc::cross_device_link) return false;
  // Another file system: copy beside the target first, so the target is replaced
  // in one rename and never missing.
  std::string part = target + ".part~";
  fs::copy_file(source, part, fs::copy_options::overwrite_existing, ec);
  if (ec) {
    fs::remove(part, ec);
    return false;
  }
  fs::rename(part, target, ec);
  if (ec) {
    fs::remove(part, ec);
    return false;
  }
  fs::remove(source, ec);
  return true;
}

bool TruncateFile(std::string_view path, std::uint64_t size) {
  std::error_code ec;
  fs::resize_file(NativePath(path), size, ec);
  return !ec;
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

}  // namespace platform
