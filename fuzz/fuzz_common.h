// Shared set-up of the fuzz targets: inputs go through real files, as users'
// files do, and the console and report are quiet.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "frame/report.h"

namespace bgrfuzz {

inline const std::string& WorkDir() {
  static const std::string dir = [] {
    char pattern[] = "/tmp/bgrfuzz-XXXXXX";
    const char* made = mkdtemp(pattern);
    std::string d = made ? made : "/tmp";
    // a report beside a program in a folder that can't exist: no report file
    const char* argv[] = {"/nonexistent-bgrfuzz/bgrtool"};
    bgr::ReportStart(1, argv, bgr::kVersion, false, false);
    int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    close(null);
    return d;
  }();
  return dir;
}

inline std::string WriteInput(const char* name, const std::uint8_t* data, std::size_t size) {
  std::string path = WorkDir() + "/" + name;
  if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
    std::fwrite(data, 1, size, f);
    std::fclose(f);
  }
  return path;
}

}  // namespace bgrfuzz
