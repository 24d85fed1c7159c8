// The script interpreter on hostile scripts, with a small database and an
// exclusion list made from the input too. The first byte chooses how the input
// is split: script only, or exclusion list then script.
#include <filesystem>
#include <memory>

#include "fuzz_common.h"
#include "script/script_run.h"
#include "support/airport_db.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = [] {
    std::filesystem::create_directories(bgrfuzz::WorkDir() + "/DATABASE");
    std::filesystem::create_directories(bgrfuzz::WorkDir() + "/DATA");
    for (const auto& [name, bytes] : bgrtest::DatabaseFiles(
             {{"LMMX", 100000, 50000}, {"KSEA", 170000, 856000}, {"ABC", 100100, 50000}, {"NZXX", 150000, 647990}})) {
      std::FILE* f = std::fopen((bgrfuzz::WorkDir() + "/" + name).c_str(), "wb");
      std::fwrite(bytes.data(), 1, bytes.size(), f);
      std::fclose(f);
    }
    std::filesystem::current_path(bgrfuzz::WorkDir());
    return true;
  }();
  (void)ready;
  std::filesystem::remove_all("DATA");
  std::filesystem::create_directories("DATA");
  std::size_t split = 0;
  if (size > 0 && data[0] % 2 == 1) {
    split = std::min<std::size_t>(size, 1 + data[0] * 2u);
    bgrfuzz::WriteInput("excllist.txt", data + 1, split - 1);
  } else {
    std::filesystem::remove("excllist.txt");
    split = size > 0 ? 1 : 0;
  }
  bgrfuzz::WriteInput("script.txt", data + split, size - split);
  bgrfuzz::Run run;
  auto script = std::make_unique<bgr::ScriptRun>(run.ctx, bgr::RefCell::Unrestricted());
  script->Run("script.txt");
  return 0;
}
