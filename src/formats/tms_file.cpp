#include "formats/tms_file.h"

#include <array>
#include <iterator>

#include "formats/working_units.h"
#include "frame/int32_math.h"

namespace bgr {
namespace {

// The fixed words behind a polygon section's length, and those of a polygon
// record behind its vertex count; no reader looks at them.
constexpr std::int32_t kSectionWords[] = {20, 0x10000, 2, 0};
constexpr std::int32_t kPolygonMark = 5;
constexpr std::int32_t kPolygonWords[] = {0, 0xFFFF, 0, 0};
constexpr std::int32_t kClosingWord = 0;

}  // namespace

bool TmsFile::Close() {
  EndSection();
  state_ = TmsState::kNone;
  return file.Close();
}

bool TmsFile::WriteHeader() {
  return file.WriteTag("<tlxz>") && file.WriteLong(tilesX) && file.WriteLong(tilesZ) && file.WriteTag("<feet>") &&
         file.WriteRaw32(&tileFeet) && file.WriteTag("<lowl>") && file.WriteDouble(lowl[0]) &&
         file.WriteDouble(lowl[1]) && file.WriteDouble(lowl[2]);
}

bool TmsFile::ReadHeader() {
  return file.ReadTag("<tlxz>") && file.ReadLong(&tilesX) && file.ReadLong(&tilesZ) && file.ReadTag("<feet>") &&
         file.ReadFloat(&tileFeet) && file.ReadTag("<lowl>") && file.ReadDouble(&lowl[0]) &&
         file.ReadDouble(&lowl[1]) && file.ReadDouble(&lowl[2]);
}

bool TmsFile::BeginSection() {
  if (sectionStart_ != 0) return false;
  sectionStart_ = file.Tell();
  file.WriteLong(0);
  return true;
}

bool TmsFile::EndSection() {
  if (sectionStart_ == 0) return false;
  file.WriteLong(kClosingWord);
  long end = file.Tell();
  file.Seek(sectionStart_);
  file.WriteLong(static_cast<std::int32_t>(end - sectionStart_ - 4));
  file.Seek(end);
  sectionStart_ = 0;
  return true;
}

bool TmsFile::WriteTile() {
  if (!file.WriteTag("<tile>") || !file.WriteTag("<bgno>") || !file.WriteTag("<indx>")) return false;
  file.WriteLong(tileX);
  file.WriteLong(tileZ);
  state_ = TmsState::kTile;
  return true;
}

bool TmsFile::WritePointList() {
  if (points.count() < 0 || points.count() > points.capacity()) return false;
  bool ok = file.WriteLong(points.count());
  // in runs of words, a tile's point list being thousands of them
  std::array<std::int32_t, 3 * 256> run;
  std::size_t used = 0;
  for (const TEXPOINT& p : points.points()) {
    run[used++] = p.x;
    run[used++] = p.y;
    run[used++] = p.z;
    if (used == run.size()) {
      ok = file.WriteLongs(run.data(), used) && ok;
      used = 0;
    }
  }
  return file.WriteLongs(run.data(), used) && ok;
}

bool TmsFile::WritePolygonRecord() {
  if (polygon.count < 3 || polygon.count > TEXTURE::kMaxVerts) return false;
  std::array<std::int32_t, 2 + std::size(kPolygonWords) + TEXTURE::kMaxVerts> record;
  std::size_t used = 0;
  record[used++] = kPolygonMark;
  record[used++] = polygon.count;
  for (std::int32_t word : kPolygonWords) record[used++] = word;
  for (std::int32_t i = 0; i < polygon.count; ++i) record[used++] = polygon.verts[static_cast<std::size_t>(i)].point;
  return file.WriteLongs(record.data(), used);
}

bool TmsFile::WritePolygonSection(std::string_view tag, TmsState section) {
  if (state_ != TmsState::kTile && state_ != section) {
    state_ = TmsState::kTile;
    EndSection();
  }
  if (state_ == TmsState::kTile && file.WriteTag(tag)) {
    BeginSection();
    for (std::int32_t word : kSectionWords) file.WriteLong(word);
    WritePointList();
    state_ = section;
  }
  if (state_ != section) return false;
  return WritePolygonRecord();
}

bool TmsFile::WriteLite() {
  if (state_ != TmsState::kTile && state_ != TmsState::kLite) {
    state_ = TmsState::kTile;
    EndSection();
  }
  if (state_ == TmsState::kTile && file.WriteTag("<lite>")) {
    BeginSection();
    state_ = TmsState::kLite;
  }
  if (state_ != TmsState::kLite) return false;
  std::int32_t n = points.count();
  if (n < 0 || n > points.capacity()) n = 0;
  if (n != 0) {
    file.WriteLong(n);
    file.WriteLong(lightType);
  }
  for (std::int32_t i = 0; i < n; ++i) {
    // lights are stored in whole feet
    float x = static_cast<float>(points[i].x / kUnitsPerFoot);
    float z = static_cast<float>(points[i].z / kUnitsPerFoot);
    file.WriteRaw32(&x);
    file.WriteRaw32(&z);
  }
  if (n > 1) file.WriteRaw32(&lightStep);
  return true;
}

bool TmsFile::WriteTileEnd() {
  if (state_ != TmsState::kNone && state_ != TmsState::kTile) {
    state_ = TmsState::kTile;
    EndSection();
  }
  if (state_ == TmsState::kTile && file.WriteTag("<endo>")) {
    state_ = TmsState::kNone;
    return true;
  }
  return false;
}

bool TmsFile::ReadTile() {
  if (!file.ReadTag("<tile>") || !file.ReadTag("<bgno>") || !file.ReadTag("<indx>")) return false;
  file.ReadLong(&tileX);
  file.ReadLong(&tileZ);
  state_ = TmsState::kTile;
  return true;
}

// A word that doesn't fit is given back by stepping four bytes back from where
// the read left the stream, also when the end of the file cut it short.
bool TmsFile::CheckWord(std::int32_t value) {
  std::int32_t word = 0;
  if (file.ReadLong(&word) && word == value) return true;
  file.Seek(file.Tell() - 4);
  return false;
}

void TmsFile::ReadPointList() {
  std::int32_t n = 0;
  file.ReadLong(&n);
  if (n < 0 || n > points.capacity()) n = 0;
  auto table = points.EditAll();
  for (std::int32_t i = 0; i < n; ++i) {
    TEXPOINT& p = table[static_cast<std::size_t>(i)];
    file.ReadLong(&p.x);
    file.ReadLong(&p.y);
    file.ReadLong(&p.z);
  }
  points.SetCount(n);
}

bool TmsFile::ReadPolygonRecord() {
  polygon.count = 0;
  if (!CheckWord(kPolygonMark)) return false;
  std::int32_t n = 0;
  file.ReadLong(&n);
  if (n < 0 || n > TEXTURE::kMaxVerts) return false;
  polygon.count = n;
  std::int32_t fixed;
  for (int i = 0; i < 4; ++i) file.ReadLong(&fixed);
  for (std::int32_t i = 0; i < n; ++i) file.ReadLong(&polygon.verts[i].point);
  return polygon.count > 0;
}

bool TmsFile::ReadPolygonSection(std::string_view tag, TmsState section) {
  if (state_ == TmsState::kTile && file.ReadTag(tag)) {
    std::int32_t word;
    for (int i = 0; i < 5; ++i) file.ReadLong(&word);
    ReadPointList();
    state_ = section;
  }
  if (state_ != section) return false;
  if (ReadPolygonRecord()) return true;
  state_ = TmsState::kTile;
  CheckWord(kClosingWord);
  return false;
}

bool TmsFile::ReadLite() {
  if (state_ == TmsState::kTile && file.ReadTag("<lite>")) {
    std::int32_t length;
    file.ReadLong(&length);
    state_ = TmsState::kLite;
  }
  if (state_ != TmsState::kLite) return false;
  std::int32_t n = 0;
  file.ReadLong(&n);
  if (n < 0 || n > points.capacity()) n = 0;
  if (n != 0) file.ReadLong(&lightType);
  auto table = points.EditAll();
  for (std::int32_t i = 0; i < n; ++i) {
    float x = 0, z = 0;
    file.ReadFloat(&x);
    file.ReadFloat(&z);
    table[static_cast<std::size_t>(i)] =
        TEXPOINT{TruncToLong(x * double{kUnitsPerFoot}), 0, TruncToLong(z * double{kUnitsPerFoot})};
  }
  points.SetCount(n);
  lightStep = 0;
  if (n > 1) file.ReadFloat(&lightStep);
  if (n == 0) {
    state_ = TmsState::kTile;
    return false;
  }
  return true;
}

bool TmsFile::ReadTileEnd() {
  if (state_ == TmsState::kTile && file.ReadTag("<endo>")) {
    state_ = TmsState::kNone;
    return true;
  }
  return false;
}

}  // namespace bgr
