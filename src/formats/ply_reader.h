// The readers of the PLY companion: its lines are read once, as the line reader
// splits them, and walked by the polygon and light readers; a walk starts over
// with Rewind. The network (TaxiwayList) only ever writes the companion.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/texpoints.h"

namespace bgr {

class RunContext;

// A PLY polygon of more corners is ended there and the rest made a polygon of its own.
inline constexpr std::int32_t kMaxPlyCorners = 255;

class PlyReader {
 public:
  explicit PlyReader(RunContext& ctx) : ctx_(ctx) {}

  // Reads the file's lines; a failed open is reported as every open is, and
  // reads as a companion with nothing in it.
  bool Open(std::string_view path, std::string_view mode = "r");
  bool IsOpen() const { return open_; }
  void Rewind() { next_ = 0; }
  // The next polygon into tex, its points merged into pts; shift < 0 moves a
  // point that finds its place taken.
  bool ReadPly(TEXPOINTS& pts, TEXTURE& tex, std::int32_t shift);
  std::int32_t ReadLgt(std::int32_t* kind, std::int32_t* x1, std::int32_t* z1, std::int32_t* x2, std::int32_t* z2,
                       std::int32_t* count);
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  bool NextLine(std::string& line);

  RunContext& ctx_;
  bool open_ = false;
  std::vector<std::string> lines_;
  std::size_t next_ = 0;
};

}  // namespace bgr
