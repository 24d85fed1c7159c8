// The last step of a TMS job that makes something: the whole tile store into
// the TMS file.
#pragma once

#include <cstdint>
#include <string_view>

#include "geometry/texpoints.h"

namespace bgr {

class TmsJob;


// Walks the tile store into the job's TMS writer. Light strings are written as
// records of positions, looked up in the tile's light points.
class TileOutput {
 public:
  explicit TileOutput(TmsJob& job) : job_(job) {}
  // False when the file could not be written whole; the old file then stays.
  bool Write(std::string_view name);
  void WriteTileSection(std::int32_t layer);

 private:
  TmsJob& job_;
  TEXPOINTS lightPoints_;
  std::int32_t lastLayer_ = 0;
};

}  // namespace bgr
