#include "frame/options.h"

#include <cstdio>
#include <cstring>

namespace bgr {
namespace {

// A prefix test compares the first three characters and hands on the rest; an
// exact test the whole argument; a scan test lets the row's own sscanf of the
// whole argument decide (EOF counts as taken).
enum class Test { kPrefix, kExact, kScan };

struct OptionRow {
  const char* text;
  Test test;
  bool (*apply)(const char* value, Settings& s);
};

// "%d:%d" into vmin, vmax; fields that don't scan leave the setting as it was.
void ScanRange(const char* rest, Settings& s) {
  int vmin = s.vmin;
  int vmax = s.vmax;
  std::sscanf(rest, "%d:%d", &vmin, &vmax);
  s.vmin = vmin;
  s.vmax = vmax;
}

bool SetMode(Settings& s, Mode mode) {
  s.mode = mode;
  return true;
}

constexpr OptionRow kOptions[] = {
    {"-ls", Test::kPrefix,
     [](const char* v, Settings& s) {
       ScanRange(v, s);
       s.printValues = 1;
       return SetMode(s, Mode::List);
     }},
    {"-de", Test::kPrefix,
     [](const char* v, Settings& s) {
       ScanRange(v, s);
       return SetMode(s, Mode::DeleteEdges);
     }},
    {"-gr", Test::kPrefix,
     [](const char* v, Settings& s) {
       unsigned ignored = 0;  // a number that nothing reads
       std::sscanf(v, "%x", &ignored);
       return SetMode(s, Mode::Graph);
     }},
    {"-mg", Test::kPrefix, [](const char*, Settings& s) { return SetMode(s, Mode::Merge); }},
    {"-mv", Test::kPrefix,
     [](const char* v, Settings& s) {
       int vmin = s.vmin;
       int vmax = s.vmax;
       std::sscanf(v, "%lf:%lf:%d:%d", &s.north, &s.east, &vmin, &vmax);
       s.vmin = vmin;
       s.vmax = vmax;
       return SetMode(s, Mode::Move);
     }},
    {"-pg", Test::kPrefix, [](const char*, Settings& s) { return SetMode(s, Mode::Purge); }},
    {"-pr", Test::kScan,
     [](const char* arg, Settings& s) {
       unsigned value = static_cast<unsigned>(s.printValues);
       if (std::sscanf(arg, "-pr%x", &value) == 0) return false;
       s.printValues = static_cast<std::int32_t>(value);
       return true;
     }},
    {"-rs", Test::kPrefix,
     [](const char* v, Settings& s) {
       s.textName = v;
       return SetMode(s, Mode::EditScript);
     }},
    {"-te", Test::kPrefix,
     [](const char* v, Settings& s) {
       s.textName = v;
       return SetMode(s, Mode::Script);
     }},
    {"-ti", Test::kScan,
     [](const char* arg, Settings& s) {
       int column = s.refCell.column;
       int band = s.refCell.band;
       if (std::sscanf(arg, "-ti%03d%03d", &column, &band) == 0) return false;
       s.refCell.column = column;
       s.refCell.band = band;
       return true;
     }},
    {"-tm", Test::kExact, [](const char*, Settings& s) { return SetMode(s, Mode::TmsGeneration); }},
    {"-txp", Test::kExact,
     [](const char*, Settings& s) {
       s.txpLevel = 0;
       return SetMode(s, Mode::TxpExport);
     }},
    {"-txp0", Test::kExact,
     [](const char*, Settings& s) {
       s.txpLevel = 1;
       return SetMode(s, Mode::TxpExport);
     }},
    {"-txd", Test::kExact, [](const char*, Settings& s) { return SetMode(s, Mode::TxdExport); }},
};

constexpr std::size_t kPrefixLength = 3;

}  // namespace

bool ScanOption(const char* arg, Settings& s) {
  for (const OptionRow& row : kOptions) {
    switch (row.test) {
      case Test::kPrefix:
        if (std::strncmp(arg, row.text, kPrefixLength) == 0) return row.apply(arg + kPrefixLength, s);
        break;
      case Test::kExact:
        if (std::strcmp(arg, row.text) == 0) return row.apply(arg, s);
        break;
      case Test::kScan:
        if (row.apply(arg, s)) return true;
        break;
    }
  }
  return false;
}

NodeRange SelectedNodes(const Settings& s) {
  if (s.vmin == -1) return {};
  return {s.vmin, s.vmax == -1 ? s.vmin : s.vmax};
}

}  // namespace bgr
