#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace bgrbench {

// Sends standard output to /dev/null while it lives, so listings don't flood
// the benchmark's own report.
class QuietStdout {
 public:
  QuietStdout() {
    std::fflush(stdout);
    saved_ = dup(1);
    int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    close(null);
  }
  ~QuietStdout() {
    std::fflush(stdout);
    dup2(saved_, 1);
    close(saved_);
  }

 private:
  int saved_;
};

inline std::string TempPath(const std::string& name) {
  return (std::filesystem::temp_directory_path() / ("bgrbench-" + name)).string();
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace bgrbench
