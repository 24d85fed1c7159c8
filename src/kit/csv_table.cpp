#include "kit/csv_table.h"

#include <csv.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "frame/text.h"

namespace bgr::kit {

void Table::Field(void* text, std::size_t length, void* self) {
  static_cast<Table*>(self)->row.emplace_back(static_cast<const char*>(text), length);
}

void Table::End(int, void* self) {
  auto* t = static_cast<Table*>(self);
  t->rows.push_back(std::move(t->row));
  t->row.clear();
}

bool ReadCsv(const std::string& path, Table& table, std::string& error) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) {
    error = "cannot read '" + path + "': " + std::strerror(errno);
    return false;
  }
  csv_parser parser;
  csv_init(&parser, CSV_APPEND_NULL);
  char buffer[65536];
  std::size_t n;
  bool ok = true;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) {
    if (csv_parse(&parser, buffer, n, Table::Field, Table::End, &table) != n) {
      error = "'" + path + "' is no CSV: " + csv_strerror(csv_error(&parser));
      ok = false;
      break;
    }
  }
  if (ok && std::ferror(f)) {
    error = "cannot read '" + path + "'";
    ok = false;
  }
  if (ok) csv_fini(&parser, Table::Field, Table::End, &table);
  csv_free(&parser);
  std::fclose(f);
  return ok;
}

bool ReadCsvWithHeader(const std::string& path, const char* command, Table& table) {
  std::string error;
  if (!ReadCsv(path, table, error)) {
    std::cerr << command << ": " << error << "\n";
    return false;
  }
  if (table.rows.empty()) {
    std::cerr << command << ": '" << path << "' has no header row\n";
    return false;
  }
  return true;
}

// The first of the names that the header has, or -1.
int Column(const std::vector<std::string>& header, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    for (std::size_t i = 0; i < header.size(); ++i) {
      if (CompareNoCase(header[i], name) == 0) return static_cast<int>(i);
    }
  }
  return -1;
}

// A whole field that is a finite number.
bool Number(const std::string& text, double* out) {
  if (text.empty()) return false;
  char* end = nullptr;
  *out = std::strtod(text.c_str(), &end);
  return end == text.c_str() + text.size() && std::isfinite(*out);
}

}  // namespace bgr::kit
