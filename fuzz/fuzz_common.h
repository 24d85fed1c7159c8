// Shared set-up of the fuzz targets: inputs go through real files, as users'
// files do, and each input runs in a fresh run context whose console and report
// are kept in memory.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "frame/output.h"
#include "frame/run_context.h"

namespace bgrfuzz {

inline const std::string& WorkDir() {
  static const std::string dir = [] {
    char pattern[] = "/tmp/bgrfuzz-XXXXXX";
    const char* made = mkdtemp(pattern);
    return std::string(made ? made : "/tmp");
  }();
  return dir;
}

struct Run {
  Run() { ctx.KeepReportOnConsole(); }
  bgr::OutputSink console;
  bgr::OutputSink diagnostics;
  bgr::RunContext ctx{console, diagnostics};
};

inline std::string WriteInput(const char* name, const std::uint8_t* data, std::size_t size) {
  std::string path = WorkDir() + "/" + name;
  if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
    std::fwrite(data, 1, size, f);
    std::fclose(f);
  }
  return path;
}

}  // namespace bgrfuzz
