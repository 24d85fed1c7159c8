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
#include <map>

#include "formats/little_endian.h"
#include "frame/file_access.h"
#include "frame/text.h"
#include "kit/csv_table.h"
#include "kit/kit.h"
#include "script/airport_database.h"

namespace bgr::kit {
namespace {

// A record: the code, then latitude and longitude as doubles.
constexpr std::size_t kCodeBytes = 8;
constexpr std::size_t kRecordBytes = kCodeBytes + 2 * sizeof(double);
constexpr int kShownBadRows = 5;

struct Options {
  std::string csv;
  std::string output;
  std::string codeColumn, latColumn, lonColumn;
  bool codeGiven = false, latGiven = false, lonGiven = false;  // named on the command line
};

// "ident,gps_code": names tried in order.
std::vector<std::string> SplitNames(const std::string& text) {
  std::vector<std::string> names;
  std::size_t at = 0;
  while (at <= text.size()) {
    std::size_t comma = std::min(text.find(',', at), text.size());
    names.push_back(text.substr(at, comma - at));
    at = comma + 1;
  }
  return names;
}

// Codes on more than one row are all kept; the nearest airport wins a lookup.
void TellDuplicates(const std::map<std::string, std::vector<std::size_t>>& linesOf) {
  std::size_t doubled = 0;
  std::string shown;
  for (const auto& [code, lines] : linesOf) {
    if (lines.size() < 2) continue;
    if (++doubled > kShownBadRows) continue;
    shown += (shown.empty() ? " " : ", ") + code + " (lines";
    for (std::size_t i = 0; i < lines.size(); ++i) shown += (i ? ", " : " ") + std::to_string(lines[i]);
    shown += ")";
  }
  if (doubled == 0) return;
  std::cerr << "bgrkit makedb: " << doubled << (doubled == 1 ? " code stands" : " codes stand")
            << " on more than one row, and each row is kept:" << shown << (doubled > kShownBadRows ? ", ...\n" : "\n");
}

void PutDouble(std::string& bytes, double v) {
  unsigned char b[8];
  EncodeU64(std::bit_cast<std::uint64_t>(v), b);
  bytes.append(reinterpret_cast<const char*>(b), sizeof b);
}

// The dbt line of one field: "tag,offset,size,type".
std::string FieldLine(const char* tag, std::size_t offset, std::size_t size, char type) {
  return std::string(tag) + "," + std::to_string(offset) + "," + std::to_string(size) + "," + type + "\n";
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
  if (!ReadCsvWithHeader(o.csv, "bgrkit makedb", table)) return kFailed;
  const auto& header = table.rows.front();
  // a column the user named must be there; only the defaults fall back on other names
  std::vector<int> codes;
  int lat = -1, lon = -1;
  std::string missing;
  if (o.codeGiven) {
    for (const std::string& name : SplitNames(o.codeColumn)) {
      codes.push_back(Column(header, {name}));
      if (codes.back() < 0 && missing.empty()) missing = "'" + name + "' (--code)";
    }
  } else {
    codes.push_back(Column(header, {o.codeColumn, "ident", "code", "icao"}));
  }
  lat = o.latGiven ? Column(header, {o.latColumn}) : Column(header, {o.latColumn, "latitude_deg", "latitude", "lat"});
  lon = o.lonGiven ? Column(header, {o.lonColumn}) : Column(header, {o.lonColumn, "longitude_deg", "longitude", "lon"});
  if (missing.empty() && lat < 0 && o.latGiven) missing = "'" + o.latColumn + "' (--lat)";
  if (missing.empty() && lon < 0 && o.lonGiven) missing = "'" + o.lonColumn + "' (--lon)";
  if (!missing.empty()) {
    std::cerr << "bgrkit makedb: '" << o.csv << "' has no column " << missing << "; its columns are";
    for (std::size_t i = 0; i < header.size(); ++i) std::cerr << (i ? ", " : " ") << header[i];
    std::cerr << "\n";
    return kBadUsage;
  }
  if (codes.empty() || codes.front() < 0 || lat < 0 || lon < 0) {
    std::cerr << "bgrkit makedb: '" << o.csv << "' lacks a column for the "
              << (codes.empty() || codes.front() < 0 ? "code" : lat < 0 ? "latitude" : "longitude")
              << " (--code, --lat, --lon name them)\n";
    return kFailed;
  }
  std::string records;
  std::uint32_t count = 0;
  std::vector<std::size_t> bad;
  std::map<std::string, std::vector<std::size_t>> linesOf;  // code -> its lines
  for (std::size_t r = 1; r < table.rows.size(); ++r) {
    const auto& row = table.rows[r];
    auto field = [&row](int column) {
      return static_cast<std::size_t>(column) < row.size() ? row[static_cast<std::size_t>(column)] : std::string();
    };
    // the first of the code columns that holds a code of 3 to 5 characters
    std::string text;
    for (int column : codes) {
      std::string c = field(column);
      if (c.size() >= 3 && c.size() <= 5 && c.find_first_of(" \t") == std::string::npos) {
        text = c;
        break;
      }
    }
    double latitude = 0, longitude = 0;
    bool ok = !text.empty() && Number(field(lat), &latitude) && Number(field(lon), &longitude) &&
              std::fabs(latitude) <= 90 && std::fabs(longitude) <= 180;
    if (!ok) {
      bad.push_back(r + 1);
      continue;
    }
    linesOf[text].push_back(r + 1);
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
  TellDuplicates(linesOf);
  if (count == 0) {
    std::cerr << "bgrkit makedb: no airport in '" << o.csv << "'\n";
    return kFailed;
  }
  std::string dbd(kDbdHeaderBytes, '\0');
  auto* head = reinterpret_cast<unsigned char*>(dbd.data());
  EncodeU32(count, head + kDbdRecordCountAt);
  EncodeU32(static_cast<std::uint32_t>(kRecordBytes), head + kDbdRecordSizeAt);
  dbd += records;
  std::string dbt = o.output;
  SetExtension(dbt, "dbt");
  std::string fields = FieldLine(kCodeField, 0, kCodeBytes, 'C') +
                       FieldLine(kLatitudeField, kCodeBytes, sizeof(double), 'N') +
                       FieldLine(kLongitudeField, kCodeBytes + sizeof(double), sizeof(double), 'N');

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
  CLI::Option* code = command
                         .add_option("--code", o->codeColumn,
                                     "column of the airport code (3 to 5 characters); several, as ident,gps_code, "
                                     "are tried in order")
                         ->default_val("ident");
  CLI::Option* lat =
      command.add_option("--lat", o->latColumn, "column of the latitude in degrees")->default_val("latitude_deg");
  CLI::Option* lon =
      command.add_option("--lon", o->lonColumn, "column of the longitude in degrees")->default_val("longitude_deg");
  command.footer(
      "The database's dbt companion is written beside it. Both files are written whole or not at all.\n"
      "Rows with a missing field, a code not of 3 to 5 characters or a number out of range are skipped.\n"
      "A column named by --code, --lat or --lon that the table lacks is an error; codes on more than one\n"
      "row are reported and kept.");
  return [o, code, lat, lon] {
    o->codeGiven = code->count() > 0;
    o->latGiven = lat->count() > 0;
    o->lonGiven = lon->count() > 0;
    return MakeDb(*o);
  };
}

}  // namespace bgr::kit
