// Writer and reader of the TMS tile file: the BGR framing plus length-prefixed
// sections, filled through the working records 'points' and 'polygon'.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "formats/bgr_file.h"
#include "geometry/texpoints.h"

namespace bgr {

class TmsFile {
 public:
  bool OpenWrite(std::string_view name) { return file.OpenWrite(name); }
  bool OpenRead(std::string_view name) { return file.OpenRead(name); }
  bool Close();
  bool WriteOrigin(double latitude, double longitude, double third) {
    return file.WriteOrigin(latitude, longitude, third);
  }
  bool ReadOrigin(double* latitude, double* longitude, double* third) {
    return file.ReadOrigin(latitude, longitude, third);
  }
  bool WriteHeader();
  bool ReadHeader();

  bool WriteTile();
  bool WritePave() { return WritePolygonSection("<pave>", 2); }
  bool WriteEdmk() { return WritePolygonSection("<edmk>", 3); }
  bool WriteCntr() { return WritePolygonSection("<cntr>", 4); }
  bool WriteLite();
  bool WriteTileEnd();

  bool ReadTile();
  bool ReadPave() { return ReadPolygonSection("<pave>", 2); }
  bool ReadEdmk() { return ReadPolygonSection("<edmk>", 3); }
  bool ReadCntr() { return ReadPolygonSection("<cntr>", 4); }
  bool ReadLite();
  bool ReadTileEnd();

  long sectionStart = 0;
  BgrFile file;
  std::int32_t tilesX = 8;
  std::int32_t tilesZ = 8;
  float tileFeet = 1000.0f;
  std::array<double, 3> lowl{};
  std::int32_t state = 0;
  std::int32_t tileX = 0;
  std::int32_t tileZ = 0;
  std::int32_t lightType = 0;
  float lightStep = 0;
  TEXPOINTS points;
  TEXTURE polygon;

 private:
  bool BeginSection();
  bool EndSection();
  bool CheckWord(std::int32_t value);
  bool WritePolygonSection(std::string_view tag, std::int32_t sectionState);
  bool ReadPolygonSection(std::string_view tag, std::int32_t sectionState);
  bool WritePointList();
  bool WritePolygonRecord();
  void ReadPointList();
  bool ReadPolygonRecord();
};

}  // namespace bgr
