// A small airport database as bgrkit makedb lays it out: a header of 56 bytes
// with the record count at 16 and the record size at 20, records of a code in
// 8 bytes and two doubles (arc-seconds), and the dbt text that names them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/bgr_builder.h"

namespace bgrtest {

struct DbAirport {
  std::string code;
  double lat = 0;  // arc-seconds
  double lon = 0;
};

inline std::string DbdBytes(const std::vector<DbAirport>& airports) {
  Bytes b;
  b.Long(0).Long(0).Long(0).Long(0).Long(static_cast<std::int32_t>(airports.size())).Long(24);
  for (int i = 0; i < 8; ++i) b.Long(0);
  for (const DbAirport& a : airports) {
    std::string code = a.code;
    code.resize(8, '\0');
    b.Raw(code).Double(a.lat).Double(a.lon);
  }
  return b.data;
}

inline const char* kDbtText = "aica,0,8,C\nalat,8,8,N\nalon,16,8,N\n";

// The files of a database for a test folder.
inline std::vector<std::pair<std::string, std::string>> DatabaseFiles(const std::vector<DbAirport>& airports) {
  return {{"DATABASE/AIRPORT.DBD", DbdBytes(airports)}, {"DATABASE/AIRPORT.dbt", kDbtText}};
}

}  // namespace bgrtest
