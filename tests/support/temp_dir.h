#pragma once

#include <string>
#include <string_view>

namespace bgrtest {

// A fresh folder under the system's temporary folder, removed with its content.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }
  void Write(std::string_view name, std::string_view bytes) const;
  std::string Read(std::string_view name) const;
  bool Exists(std::string_view name) const;

 private:
  std::string path_;
};

// Runs a function with the current folder switched to 'dir'.
class ScopedChdir {
 public:
  explicit ScopedChdir(const std::string& dir);
  ~ScopedChdir();

 private:
  std::string previous_;
};

// A fresh folder that is the current one while the object lives.
class CurrentTempDir : public TempDir {
 private:
  ScopedChdir here_{path()};
};

}  // namespace bgrtest
