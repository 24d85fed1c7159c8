// The airport database: a DBD file of fixed-size records and its dbt companion,
// a text list that says where the code, latitude and longitude lie in a record.
// Given a position it finds the nearest airport within about 283 arc-seconds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "script/string_list.h"

namespace bgr {

class RunContext;

inline constexpr const char* kAirportDatabase = "DATABASE\\AIRPORT.DBD";

// The DBD layout: a header with the record count and size as little-endian
// words, then the records; the dbt companion names where each field lies.
inline constexpr std::size_t kDbdHeaderBytes = 56;
inline constexpr std::size_t kDbdRecordCountAt = 16;
inline constexpr std::size_t kDbdRecordSizeAt = 20;
// The dbt tags of the fields that a search reads: the code, then latitude and
// longitude as doubles in arc-seconds.
inline constexpr const char* kCodeField = "aica";
inline constexpr const char* kLatitudeField = "alat";
inline constexpr const char* kLongitudeField = "alon";

class AirportDatabase {
 public:
  static constexpr std::int32_t kNoField = 999999;
  static constexpr double kReachSquared = 80000.0;  // arc-seconds squared

  explicit AirportDatabase(RunContext& ctx) : ctx_(ctx), fields_(ctx) {}

  bool IsOpen() const { return open_; }
  // Open with its fields found: a search can find an airport.
  bool Usable() const { return open_ && aica_ != kNoField && alat_ != kNoField && alon_ != kNoField; }
  bool Open(std::string_view path);
  void Close();
  // The field's offset in a record, 0 when the dbt file lacks the tag.
  std::int32_t FieldOffset(std::string_view tag, std::int32_t* size);
  // The nearest airport's position into lat and lon, and its name (a leading K
  // left out); 0 and "NONE" when there is none.
  std::int32_t FindAirport(double* lat, double* lon, std::string& name);

  // The plain search over all records that the index must agree with: the
  // number of the first record at the smallest distance, or -1.
  std::int32_t NearestByWalk(double lat, double lon) const;
  std::int32_t NearestByIndex(double lat, double lon) const;

  std::uint32_t recordCount() const { return recordCount_; }
  std::uint32_t recordSize() const { return recordSize_; }

 private:
  struct Place {
    double lat = 0, lon = 0;
  };
  double Field(std::uint32_t record, std::int32_t offset) const;
  std::string Code(std::uint32_t record) const;
  double Distance(std::uint32_t record, double lat, double lon) const;
  void BuildIndex();

  RunContext& ctx_;
  STRING_LIST fields_;
  bool open_ = false;
  std::vector<unsigned char> table_;
  std::uint32_t recordSize_ = 0;
  std::uint32_t recordCount_ = 0;
  std::int32_t aica_ = kNoField, alat_ = kNoField, alon_ = kNoField;
  // The last dbt entry parsed: a field that doesn't parse keeps the value before it.
  char fieldTag_[4] = {};
  std::int32_t fieldOffset_ = 0, fieldSize_ = 0;
  char fieldType_ = 0;
  // Records by cells of 300 arc-seconds, more than the reach: a search looks
  // at the 3 by 3 cells round its position. Records with a position outside
  // the usual ranges, and searches from there, take the plain walk.
  std::vector<Place> places_;
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> cells_;
  std::vector<std::uint32_t> odd_;
};

}  // namespace bgr
