// bgrkit runways: RWY lines straight from a table of runways with both ends
// (the OurAirports runways.csv), columns found by name.
#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>

#include "frame/file_access.h"
#include "frame/text.h"
#include "geometry/planar.h"
#include "kit/csv_table.h"
#include "kit/kit.h"
#include "script/geo_parse.h"
#include "script/script_network.h"

namespace bgr::kit {
namespace {

// Ends farther apart than any runway on earth (the longest are about 18000 ft)
// are a placeholder row, not a runway.
constexpr double kFarthestEnds = 50000;

struct Options {
  std::string csv, output, airportsCsv, country;
  std::vector<std::string> airports;
  double runwayWidth = 150;
};


// A script field holds no blank; an empty one would shift the fields behind it.
std::string Field(std::string text) {
  for (char& c : text)
    if (c == ' ' || c == '\t' || c == '"') c = '_';
  return text.empty() ? "-" : text.substr(0, 40);
}

// The airports of a country, from the airports table's iso_country.
bool CountryAirports(const Options& o, std::set<std::string>& idents, std::string& error) {
  std::string path = o.airportsCsv;
  if (path.empty()) path = (std::filesystem::path(o.csv).parent_path() / "airports.csv").string();
  Table table;
  if (!ReadCsv(path, table, error)) return false;
  if (table.rows.empty()) {
    error = "'" + path + "' has no header row";
    return false;
  }
  int ident = Column(table.rows[0], {"ident"}), country = Column(table.rows[0], {"iso_country"});
  if (ident < 0 || country < 0) {
    error = "'" + path + "' lacks the column ident or iso_country";
    return false;
  }
  for (const auto& row : table.rows) {
    auto need = static_cast<std::size_t>(std::max(ident, country));
    if (row.size() > need && CompareNoCase(row[static_cast<std::size_t>(country)], o.country) == 0)
      idents.insert(row[static_cast<std::size_t>(ident)]);
  }
  return true;
}

int Runways(const Options& o) {
  Table table;
  if (!ReadCsvWithHeader(o.csv, "bgrkit runways", table)) return kFailed;
  std::string error;
  const auto& header = table.rows.front();
  const char* names[] = {"airport_ident", "length_ft",        "width_ft", "closed",           "le_ident",
                         "le_latitude_deg", "le_longitude_deg", "he_ident", "he_latitude_deg", "he_longitude_deg",
                         "surface"};
  enum { kIdent, kLength, kWidth, kClosed, kLeIdent, kLeLat, kLeLon, kHeIdent, kHeLat, kHeLon, kSurface, kColumns };
  int column[kColumns];
  for (int i = 0; i < kColumns; ++i) {
    column[i] = Column(header, {names[i]});
    if (column[i] < 0 && i != kSurface && i != kClosed && i != kWidth && i != kLength) {
      std::cerr << "bgrkit runways: '" << o.csv << "' lacks the column " << names[i] << "\n";
      return kFailed;
    }
  }
  std::set<std::string> country;
  if (!o.country.empty() && !CountryAirports(o, country, error)) {
    std::cerr << "bgrkit runways: --country needs the airports table: " << error << "\n";
    return kFailed;
  }
  std::set<std::string> wanted(o.airports.begin(), o.airports.end()), seen;
  std::string script = "; RWY lines made by bgrkit runways from " + o.csv + "\nSRC \"" + o.csv + "\"\n";
  std::size_t lines = 0, closed = 0, noEnds = 0, placeholders = 0;
  for (std::size_t r = 1; r < table.rows.size(); ++r) {
    const auto& row = table.rows[r];
    auto get = [&](int c) { return c >= 0 && static_cast<std::size_t>(c) < row.size() ? row[static_cast<std::size_t>(c)] : std::string(); };
    std::string ident = get(column[kIdent]);
    if (!wanted.empty() && !wanted.count(ident)) continue;
    if (!o.country.empty() && !country.count(ident)) continue;
    seen.insert(ident);
    if (get(column[kClosed]) == "1") {
      ++closed;
      continue;
    }
    double lat1, lon1, lat2, lon2;
    if (!Number(get(column[kLeLat]), &lat1) || !Number(get(column[kLeLon]), &lon1) ||
        !Number(get(column[kHeLat]), &lat2) || !Number(get(column[kHeLon]), &lon2) || std::fabs(lat1) > 90 ||
        std::fabs(lat2) > 90 || std::fabs(lon1) > 180 || std::fabs(lon2) > 180) {
      ++noEnds;
      continue;
    }
    // measured as -te measures a RWY line, from its first end
    double z = NorthFeet(lat1 * 3600, lon1 * 3600, lat2 * 3600, lon2 * 3600, kEquatorFeet, kMeridianFeet);
    double x = EastFeet(lat1 * 3600, lon1 * 3600, lat2 * 3600, lon2 * 3600, kEquatorFeet, kMeridianFeet);
    double ends = std::hypot(x, z);
    if (ends > kFarthestEnds) {
      std::cerr << "bgrkit runways: line " << r + 1 << ": " << ident << " " << get(column[kLeIdent]) << "/"
                << get(column[kHeIdent]) << " has its ends " << static_cast<long long>(ends)
                << " ft apart: a placeholder, not a runway; refused\n";
      ++placeholders;
      continue;
    }
    double length = 0, width = 0;
    if (!Number(get(column[kLength]), &length) || length <= 0) length = ends;
    if (!Number(get(column[kWidth]), &width) || width <= 0) width = o.runwayWidth;
    char text[320];
    std::snprintf(text, sizeof text, "RWY %s %s %s %s %d %d %s %s %s %s\n", Field(get(column[kLeIdent])).c_str(),
                  Field(get(column[kHeIdent])).c_str(), Field(get(column[kSurface])).c_str(), Field(ident).c_str(),
                  static_cast<int>(std::min(length, 1e6)), static_cast<int>(std::min(width, 1e6)),
                  FormatLatitude(lat1).c_str(), FormatLongitude(lon1).c_str(), FormatLatitude(lat2).c_str(),
                  FormatLongitude(lon2).c_str());
    script += text;
    ++lines;
  }
  script += "EXI\n";
  for (const std::string& want : wanted)
    if (!seen.count(want)) std::cerr << "bgrkit runways: no runway of " << want << " in '" << o.csv << "'\n";
  std::cerr << "bgrkit runways: " << lines << " RWY line" << (lines == 1 ? "" : "s") << " in " << o.output
            << "; left out: " << closed << " closed, " << noEnds << " without both ends, " << placeholders
            << " placeholder" << (placeholders == 1 ? "" : "s") << "\n";
  if (lines == 0) {
    std::cerr << "bgrkit runways: no runway to write\n";
    return kFailed;
  }
  KitRun run;
  OutputFile out;
  if (!out.Open(run.ctx, o.output)) return kFailed;
  bool ok = std::fwrite(script.data(), 1, script.size(), out.get()) == script.size();
  return out.Finish(run.ctx, ok, "bgrkit runways") ? kDone : kFailed;
}

}  // namespace

std::function<int()> SetupRunways(CLI::App& command) {
  auto o = std::make_shared<Options>();
  command.add_option("csv", o->csv, "table of runways with both ends (OurAirports runways.csv)")->required();
  command.add_option("-o,--output", o->output, "the airport script to write")->required();
  command.add_option("--airport", o->airports, "only this airport's runways (airport_ident); may repeat");
  command.add_option("--country", o->country, "only the runways of this country's airports (iso_country)");
  command.add_option("--airports", o->airportsCsv, "the airports table for --country (default: airports.csv beside)");
  command.add_option("--runway-width", o->runwayWidth, "feet, for rows with no width")->default_val(150);
  command.footer(
      "Closed runways and rows without both ends are left out and counted; rows whose ends lie more than\n"
      "50000 ft apart are placeholders and are refused. Then: bgrtool -teSCRIPT with the airport database.");
  return [o] { return Runways(*o); };
}

}  // namespace bgr::kit
