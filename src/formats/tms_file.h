// Writer and reader of the TMS tile file: the BGR framing plus length-prefixed
// sections, filled through the working records 'points' and 'polygon'.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "formats/bgr_file.h"
#include "geometry/texpoints.h"

namespace bgr {

// Which part of the file is open: none, a tile, or one of its four sections.
enum class TmsState : std::int32_t { kNone = 0, kTile = 1, kPave = 2, kEdmk = 3, kCntr = 4, kLite = 5 };

class TmsFile {
 public:
  bool OpenReplace(RunContext& ctx, std::string_view name) { return file.OpenReplace(ctx, name); }
  bool OpenRead(RunContext& ctx, std::string_view name) { return file.OpenRead(ctx, name); }
  [[nodiscard]] bool Close();
  bool WriteOrigin(const OriginRecord& origin) { return file.WriteOrigin(origin); }
  bool ReadOrigin(OriginRecord& origin) { return file.ReadOrigin(origin); }
  bool WriteHeader();
  bool ReadHeader();

  bool WriteTile();
  bool WritePave() { return WritePolygonSection("<pave>", TmsState::kPave); }
  bool WriteEdmk() { return WritePolygonSection("<edmk>", TmsState::kEdmk); }
  bool WriteCntr() { return WritePolygonSection("<cntr>", TmsState::kCntr); }
  bool WriteLite();
  bool WriteTileEnd();

  bool ReadTile();
  bool ReadPave() { return ReadPolygonSection("<pave>", TmsState::kPave); }
  bool ReadEdmk() { return ReadPolygonSection("<edmk>", TmsState::kEdmk); }
  bool ReadCntr() { return ReadPolygonSection("<cntr>", TmsState::kCntr); }
  // The polygon section that comes next, tried in the order a tile holds them:
  // its layer (0 pave, 1 edmk, 2 cntr), or -1 when none does.
  int ReadPolygonLayer() { return ReadPave() ? 0 : ReadEdmk() ? 1 : ReadCntr() ? 2 : -1; }
  static constexpr const char* kPolygonTags[] = {"<pave>", "<edmk>", "<cntr>"};
  bool ReadLite();
  bool ReadTileEnd();

  TmsState state() const { return state_; }

  BgrFile file;
  std::int32_t tilesX = 8;
  std::int32_t tilesZ = 8;
  float tileFeet = 1000.0f;
  std::array<double, 3> lowl{};
  std::int32_t tileX = 0;
  std::int32_t tileZ = 0;
  std::int32_t lightType = 0;
  float lightStep = 0;
  TEXPOINTS points;
  TEXTURE polygon;

 private:
  long sectionStart_ = 0;  // where the open section's length word stands; 0 when none is open
  TmsState state_ = TmsState::kNone;

  bool BeginSection();
  bool EndSection();
  bool CheckWord(std::int32_t value);
  bool WritePolygonSection(std::string_view tag, TmsState section);
  bool ReadPolygonSection(std::string_view tag, TmsState section);
  bool WritePointList();
  bool WritePolygonRecord();
  void ReadPointList();
  bool ReadPolygonRecord();
};

}  // namespace bgr
