// CSV tables as libcsv reads them (quotes and all), with columns found by name.
#pragma once

#include <string>
#include <vector>

namespace bgr::kit {

// Rows of a CSV file as libcsv hands them over.
struct Table {
  std::vector<std::string> row;
  std::vector<std::vector<std::string>> rows;
  static void Field(void* text, std::size_t length, void* self);
  static void End(int, void* self);
};

bool ReadCsv(const std::string& path, Table& table, std::string& error);
// ReadCsv, and a header row at least; what fails is said on standard error in the command's words.
bool ReadCsvWithHeader(const std::string& path, const char* command, Table& table);

// The first of the names that the header has, or -1.
int Column(const std::vector<std::string>& header, const std::vector<std::string>& names);

// A whole field that is a finite number.
bool Number(const std::string& text, double* out);

}  // namespace bgr::kit
