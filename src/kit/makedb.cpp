// bgrkit makedb: the airport database that scripts look airports up in, made
// from a CSV table of airports (a header row; code, latitude and longitude in
// degrees by column name). The layout:
//   DBD: a header of 56 bytes (record count at 16, record size at 20, the rest
//        0), then records of 24 bytes: the code, zero-terminated in 8 bytes;
//        the latitude and the longitude as little-endian doubles in
//        arc-seconds, north and east positive, the longitude from 0 to 1296000.
//   dbt: one line a field, "tag,offset,size,type": aica, alat, alon.
#include <CLI/CLI.hpp>
#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "frame/file_access.h"
#include "frame/text.h"
#include "kit/csv_table.h"
#include "kit/kit.h"

namespace bgr::kit {
namespace {

constexpr std::size_t kCodeBytes = 8;
constexpr std::size_t kRecordBytes = 24;
constexpr std::size_t kHeaderBytes = 56;
constexpr int kShownBadRows = 5;

struct Options {
  std::string csv;
  std::string output;
  std::string codeColumn, latColumn, lonColumn;
};

void PutWord(std::string& bytes, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void PutDouble(std::string& bytes, double v) {
  auto u = std::bit_cast<std::uint64_t>(v);
  PutWord(bytes, static_cast<std::uint32_t>(u));
  PutWord(bytes, static_cast<std::uint32_t>(u >> 32));
}

bool WriteWhole(RunContext& ctx, const std::string& path, const std::string& bytes) {
  OutputFile out;
  if (!out.Open(ctx, path)) {
    std::cerr << "bgrkit makedb: cannot write '" << path << "'\n";
    return false;
  }
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), out.get()) == bytes.size();
  return out.Finish(ctx, ok, "bgrkit makedb");
}

int MakeDb(const Options& o) {
  Table table;
  std::string error;
  if (!ReadCsv(o.csv, table, error)) {
    std::cerr << "bgrkit makedb: " << error << "\n";
    return kFailed;
  }
  if (table.rows.empty()) {
    std::cerr << "bgrkit makedb: '" << o.csv << "' has no header row\n";
    return kFailed;
  }
  const auto& header = table.rows.front();
  int code = Column(header, {o.codeColumn, "ident", "code", "icao"});
  int lat = Column(header, {o.latColumn, "latitude_deg", "latitude", "lat"});
  int lon = Column(header, {o.lonColumn, "longitude_deg", "longitude", "lon"});
  if (code < 0 || lat < 0 || lon < 0) {
    std::cerr << "bgrkit makedb: '" << o.csv << "' lacks a column for the "
              << (code < 0 ? "code" : lat < 0 ? "latitude" : "longitude") << " (--code, --lat, --lon name them)\n";
    return kFailed;
  }
  std::string records;
  std::uint32_t count = 0;
  std::vector<std::size_t> bad;
  int widest = std::max({code, lat, lon});
  for (std::size_t r = 1; r < table.rows.size(); ++r) {
    const auto& row = table.rows[r];
    double latitude = 0, longitude = 0;
    bool ok = static_cast<int>(row.size()) > widest && row[static_cast<std::size_t>(code)].size() >= 3 &&
              row[static_cast<std::size_t>(code)].size() <= 5 &&
              row[static_cast<std::size_t>(code)].find_first_of(" \t") == std::string::npos &&
              Number(row[static_cast<std::size_t>(lat)], &latitude) &&
              Number(row[static_cast<std::size_t>(lon)], &longitude) && std::fabs(latitude) <= 90 &&
              std::fabs(longitude) <= 180;
    if (!ok) {
      bad.push_back(r + 1);
      continue;
    }
    std::string text = row[static_cast<std::size_t>(code)];
    text.resize(kCodeBytes, '\0');
    records += text;
    double east = longitude * 3600.0;
    if (east < 0) east += 1296000.0;  // eastward from Greenwich, as reference points are compared
    PutDouble(records, latitude * 3600.0);
    PutDouble(records, east);
    ++count;
  }
  if (!bad.empty()) {
    std::cerr << "bgrkit makedb: " << bad.size() << " row" << (bad.size() == 1 ? "" : "s")
              << " skipped (a missing field, a code not of 3 to 5 characters, or a number out of range), on line";
    for (std::size_t i = 0; i < bad.size() && i < kShownBadRows; ++i) std::cerr << (i ? ", " : " ") << bad[i];
    std::cerr << (bad.size() > kShownBadRows ? ", ...\n" : "\n");
  }
  if (count == 0) {
    std::cerr << "bgrkit makedb: no airport in '" << o.csv << "'\n";
    return kFailed;
  }
  std::string dbd;
  dbd.resize(16, '\0');
  PutWord(dbd, count);
  PutWord(dbd, static_cast<std::uint32_t>(kRecordBytes));
  dbd.resize(kHeaderBytes, '\0');
  dbd += records;
  std::string dbt = o.output;
  SetExtension(dbt, "dbt");
  std::string fields = "aica,0,8,C\nalat,8,8,N\nalon,16,8,N\n";

  std::error_code ec;
  std::filesystem::path folder = std::filesystem::path(o.output).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, ec);
  KitRun run;
  if (!WriteWhole(run.ctx, dbt, fields) || !WriteWhole(run.ctx, o.output, dbd)) return kFailed;
  std::cout << "bgrkit makedb: " << count << " airports in " << o.output << " and " << dbt << "\n";
  return kDone;
}

}  // namespace

std::function<int()> SetupMakeDb(CLI::App& command) {
  auto o = std::make_shared<Options>();
  command.add_option("csv", o->csv, "CSV of airports with a header row")->required();
  command.add_option("output", o->output, "the database to write, e.g. DATABASE/AIRPORT.DBD")->required();
  command.add_option("--code", o->codeColumn, "column of the airport code (3 to 5 characters)")
      ->default_val("ident");
  command.add_option("--lat", o->latColumn, "column of the latitude in degrees")->default_val("latitude_deg");
  command.add_option("--lon", o->lonColumn, "column of the longitude in degrees")->default_val("longitude_deg");
  command.footer(
      "The database's dbt companion is written beside it. Both files are written whole or not at all.\n"
      "Rows with a missing field, a code not of 3 to 5 characters or a number out of range are skipped.");
  return [o] { return MakeDb(*o); };
}

}  // namespace bgr::kit
