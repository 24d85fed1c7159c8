#include "script/airport_database.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "formats/little_endian.h"
#include "frame/file_access.h"
#include "frame/run_context.h"
#include "frame/text.h"

namespace bgr {
namespace {

constexpr double kFullCircle = 1296000.0;
constexpr double kHalfCircle = 648000.0;
constexpr double kCell = 300.0;  // arc-seconds; the reach is under 283
constexpr std::int64_t kLonCells = 4320;  // the full circle in cells
constexpr std::int32_t kListBytes = 32768;

bool Usual(double lat, double lon) { return std::fabs(lat) <= kHalfCircle && lon >= 0 && lon < kFullCircle; }

std::int64_t CellOf(double v) { return static_cast<std::int64_t>(std::floor(v / kCell)); }

std::uint64_t Key(std::int64_t latCell, std::int64_t lonCell) {
  return static_cast<std::uint64_t>(latCell + 100000) << 32 | static_cast<std::uint64_t>(lonCell);
}

}  // namespace

bool AirportDatabase::Open(std::string_view path) {
  Close();
  Stream file = WrapFileOpen(ctx_, path, "rb");
  open_ = static_cast<bool>(file);
  if (!open_) return false;
  unsigned char header[kDbdHeaderBytes];
  if (std::fread(header, 1, kDbdHeaderBytes, file.get()) != kDbdHeaderBytes) return false;
  recordCount_ = DecodeU32(header + kDbdRecordCountAt);
  recordSize_ = DecodeU32(header + kDbdRecordSizeAt);
  // records of no bytes hold no code, so none could name an airport
  if (recordSize_ == 0) recordCount_ = 0;
  std::string dbt(path);
  SetExtension(dbt, "dbt");
  fields_.Create(kListBytes);
  fields_.Load(dbt);
  if (fields_.count() == 0) return false;
  // a header that lies about its size is found out by the read, not by a huge allocation
  std::uint64_t size = std::uint64_t{recordCount_} * recordSize_;
  std::vector<unsigned char> table;
  constexpr std::size_t kChunk = 1 << 20;
  while (table.size() < size) {
    std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, size - table.size()));
    std::size_t at = table.size();
    table.resize(at + want);
    std::size_t got = std::fread(table.data() + at, 1, want, file.get());
    if (got != want) return false;
  }
  table_ = std::move(table);
  return true;
}

void AirportDatabase::Close() {
  open_ = false;
  table_.clear();
  places_.clear();
  cells_.clear();
  odd_.clear();
}

std::int32_t AirportDatabase::FieldOffset(std::string_view tag, std::int32_t* size) {
  std::int32_t index = fields_.FindPrefix(tag, 4);
  if (index < 0) return 0;
  std::string entry = fields_.Get(index);
  std::sscanf(entry.c_str(), "%4c,%d,%d,%c", fieldTag_, &fieldOffset_, &fieldSize_, &fieldType_);
  *size = fieldSize_;
  return fieldOffset_;
}

double AirportDatabase::Field(std::uint32_t record, std::int32_t offset) const {
  // a field that doesn't lie wholly within the record reads as 0
  if (offset < 0 || std::uint64_t(offset) + 8 > recordSize_) return 0.0;
  const unsigned char* at = table_.data() + std::size_t{record} * recordSize_ + static_cast<std::size_t>(offset);
  return std::bit_cast<double>(DecodeU64(at));
}

std::string AirportDatabase::Code(std::uint32_t record) const {
  if (aica_ < 0 || static_cast<std::uint32_t>(aica_) >= recordSize_) return {};
  const char* at = reinterpret_cast<const char*>(table_.data()) + std::size_t{record} * recordSize_ +
                   static_cast<std::size_t>(aica_);
  std::size_t room = recordSize_ - static_cast<std::size_t>(aica_);
  return std::string(at, strnlen(at, room));
}

double AirportDatabase::Distance(std::uint32_t record, double lat, double lon) const {
  const Place& p = places_[record];
  double dlat = p.lat - lat;
  double dlon = p.lon - lon;
  if (dlon > kHalfCircle) {
    dlon -= kFullCircle;
  } else if (dlon < -kHalfCircle) {
    dlon += kFullCircle;
  }
  return dlat * dlat + dlon * dlon;
}

void AirportDatabase::BuildIndex() {
  places_.resize(recordCount_);
  for (std::uint32_t r = 0; r < recordCount_; ++r) {
    places_[r] = {Field(r, alat_), Field(r, alon_)};
    if (!Usual(places_[r].lat, places_[r].lon)) {
      odd_.push_back(r);
    } else {
      cells_[Key(CellOf(places_[r].lat), CellOf(places_[r].lon))].push_back(r);
    }
  }
}

std::int32_t AirportDatabase::NearestByWalk(double lat, double lon) const {
  std::int32_t best = -1;
  double bestDistance = kReachSquared;
  // the records whose places were read: none before a complete open
  for (std::uint32_t r = 0; r < places_.size(); ++r) {
    double d = Distance(r, lat, lon);
    if (d < bestDistance) {
      bestDistance = d;
      best = static_cast<std::int32_t>(r);
    }
  }
  return best;
}

std::int32_t AirportDatabase::NearestByIndex(double lat, double lon) const {
  if (!Usual(lat, lon)) return NearestByWalk(lat, lon);
  std::int64_t best = -1;
  double bestDistance = kReachSquared;
  auto consider = [&](std::uint32_t r) {
    double d = Distance(r, lat, lon);
    // the walk keeps the first of equals: the lowest record number
    if (d < bestDistance || (d == bestDistance && best >= 0 && r < best)) {
      bestDistance = d;
      best = r;
    }
  };
  std::int64_t latCell = CellOf(lat), lonCell = CellOf(lon);
  for (std::int64_t i = -1; i <= 1; ++i) {
    for (std::int64_t j = -1; j <= 1; ++j) {
      auto it = cells_.find(Key(latCell + i, ((lonCell + j) % kLonCells + kLonCells) % kLonCells));
      if (it == cells_.end()) continue;
      for (std::uint32_t r : it->second) consider(r);
    }
  }
  for (std::uint32_t r : odd_) consider(r);
  return static_cast<std::int32_t>(best);
}

std::int32_t AirportDatabase::FindAirport(double* lat, double* lon, std::string& name) {
  name = "NONE";
  if (!open_ && Open(kAirportDatabase)) {
    std::int32_t size = 0;
    aica_ = FieldOffset(kCodeField, &size);
    alat_ = FieldOffset(kLatitudeField, &size);
    alon_ = FieldOffset(kLongitudeField, &size);
    BuildIndex();
  }
  if (aica_ == kNoField || alat_ == kNoField || alon_ == kNoField || !open_) return 0;
  std::int32_t best = NearestByIndex(*lat, *lon);
  if (best < 0) return 0;
  std::string code = Code(static_cast<std::uint32_t>(best));
  if (code.size() != 4) return 0;
  *lat = places_[static_cast<std::size_t>(best)].lat;
  *lon = places_[static_cast<std::size_t>(best)].lon;
  name = (code[0] == 'K' || code[0] == 'k') ? code.substr(1) : code;
  return 1;
}

}  // namespace bgr
