// Shared set-up of the fuzz targets: inputs go through real files, as users'
// files do, and each input runs in a fresh run context whose console and report
// are kept in memory.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "formats/bgr_file.h"
#include "frame/run_context.h"

namespace bgrfuzz {

// One folder per process, removed with everything in it when the process ends.
class WorkFolder {
 public:
  WorkFolder() {
    char pattern[] = "/tmp/bgrfuzz-XXXXXX";
    const char* made = mkdtemp(pattern);
    // the in-place commands write their temporary file in the current folder
    if (made && chdir(made) == 0) path_ = made;
  }
  ~WorkFolder() {
    if (path_ == "/tmp") return;
    std::error_code ignored;
    std::filesystem::current_path("/tmp", ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_ = "/tmp";
};

inline const std::string& WorkDir() {
  static const WorkFolder folder;
  return folder.path();
}

using Run = bgr::QuietRun;

}  // namespace bgrfuzz

// The targets work in a folder of their own that goes when the process ends, so
// a crash file is written where the fuzzer was started unless a prefix is named.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  for (int i = 1; i < *argc; ++i)
    if (std::strncmp((*argv)[i], "-artifact_prefix=", 17) == 0) return 0;
  static std::string prefix = "-artifact_prefix=" + std::filesystem::current_path().string() + "/";
  static std::vector<char*> args;
  args.assign(*argv, *argv + *argc);
  args.insert(args.begin() + 1, prefix.data());
  args.push_back(nullptr);
  *argv = args.data();
  ++*argc;
  return 0;
}

namespace bgrfuzz {

inline std::string WriteInput(const char* name, const std::uint8_t* data, std::size_t size) {
  std::string path = WorkDir() + "/" + name;
  if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
    std::fwrite(data, 1, size, f);
    std::fclose(f);
  }
  return path;
}

struct Reader {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t at = 0;
  int Byte() { return at < size ? data[at++] : 0; }
  int Short() {
    int low = Byte();
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | Byte() << 8));
  }
};

// A small network described compactly by the bytes, so that the fuzzer reaches
// the passes rather than the file reader (which has a target of its own).
inline void WriteCompactNetwork(Run& run, Reader& in, const std::string& path) {
  int head = in.Byte();
  // feet per step of a coordinate: from a fine grid to points far beyond 32-bit working units
  double scale = (head & 3) == 3 ? 65536.0 : (head & 3) == 2 ? 64.0 : (head & 3) == 1 ? 8.0 : 1.0;
  int points = in.Byte() % 48, edges = in.Byte() % 64;
  bgr::BgrFile file;
  file.OpenReplace(run.ctx, path);
  file.WriteOrigin({in.Short() / 100.0, in.Short() / 100.0, 0});
  for (int i = 0; i < points; ++i) {
    double x = in.Short() * scale, z = in.Short() * scale;
    file.WriteNode({x, 0, z});
  }
  for (int i = 0; i < edges; ++i) {
    int from = in.Byte() - 2, to = in.Byte() - 2;  // some name no point at all
    int width = in.Byte() * 4, type = in.Byte() % 3, flags = in.Byte() & 31;
    file.WriteEdge({from, to, width, type == 2 ? 7 : type, 0, flags});
  }
  (void)file.Close();
}

}  // namespace bgrfuzz
