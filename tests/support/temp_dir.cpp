#include "support/temp_dir.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace bgrtest {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "bgrtest-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ec;
  std::filesystem::remove_all(path_, ec);
}

void TempDir::Write(std::string_view name, std::string_view bytes) const {
  std::filesystem::path p = *this / name;
  std::filesystem::create_directories(p.parent_path());
  std::ofstream out(p, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string TempDir::Read(std::string_view name) const {
  std::ifstream in(*this / name, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

bool TempDir::Exists(std::string_view name) const { return std::filesystem::exists(*this / name); }

ScopedChdir::ScopedChdir(const std::string& dir) {
  previous_ = std::filesystem::current_path().string();
  std::filesystem::current_path(dir);
}

ScopedChdir::~ScopedChdir() {
  std::error_code ec;
  std::filesystem::current_path(previous_, ec);
}

}  // namespace bgrtest
