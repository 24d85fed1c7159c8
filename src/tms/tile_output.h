// The last step of a TMS job that makes something: the whole tile store into
// the TMS file.
#pragma once

#include <cstdint>
#include <string_view>

#include "geometry/texpoints.h"

namespace bgr {

class RunContext;
class TileGrid;
class TmsFile;


// Walks the tile store into the job's TMS writer. Light strings are written as
// records of positions, looked up in the tile's light points.
class TileOutput {
 public:
  TileOutput(RunContext& ctx, TileGrid& grid, TmsFile& tms) : ctx_(ctx), grid_(grid), tms_(tms) {}
  // False when the file could not be written whole; the old file then stays.
  bool Write(std::string_view name, double originLat, double originLon);
  void WriteTileSection(std::int32_t layer);

 private:
  RunContext& ctx_;
  TileGrid& grid_;
  TmsFile& tms_;
  TEXPOINTS lightPoints_;
  std::int32_t lastLayer_ = 0;
};

}  // namespace bgr
