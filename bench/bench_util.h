#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "frame/output.h"
#include "frame/run_context.h"

namespace bgrbench {

// A run whose console goes to /dev/null through the real output path, so a
// listing costs what it costs a user, and whose report lines stay in memory.
class QuietRun {
 public:
  QuietRun() : null_(std::fopen("/dev/null", "w")), console_(null_) { ctx_.KeepReportOnConsole(); }
  ~QuietRun() {
    console_.Flush();
    std::fclose(null_);
  }
  bgr::RunContext& ctx() { return ctx_; }

 private:
  std::FILE* null_;
  bgr::OutputSink console_;
  bgr::OutputSink diagnostics_;
  bgr::RunContext ctx_{console_, diagnostics_};
};

inline std::string TempPath(const std::string& name) {
  return (std::filesystem::temp_directory_path() / ("bgrbench-" + name)).string();
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace bgrbench
