// The settings that the command line selects, and the scanner that fills them.
#pragma once

#include <cstdint>
#include <string>

namespace bgr {

inline constexpr const char* kVersion = " v1.03";

enum class Mode : std::int32_t {
  List = 1,
  Move = 2,
  DeleteEdges = 3,
  Graph = 4,
  TxpExport = 5,
  TxdExport = 6,
  Merge = 7,
  Purge = 8,
  EditScript = 9,
  Script = 10,
  TmsGeneration = 11,
};

// The world cell that -ti restricts a script to; a column of -1 restricts nothing.
// Not a RefCell: that lives in geometry with the cell arithmetic, which the
// options may not include; the script command makes one of these numbers.
struct CellChoice {
  std::int32_t quarter = 0;
  std::int32_t column = -1;
  std::int32_t band = 0;
};

struct Settings {
  Mode mode = Mode::List;
  double north = 0.0;
  double east = 0.0;
  std::int32_t vmin = -1;
  std::int32_t vmax = -1;
  std::string textName;
  std::int32_t txpLevel = 0;
  std::int32_t printValues = 0;
  CellChoice refCell;
};

// The nodes that -ls and -mv work on: a vmin of -1 means all of them (0 to
// 9999), a vmax of -1 the one node vmin.
inline constexpr std::int32_t kLastListedNode = 9999;
struct NodeRange {
  std::int32_t first = 0, last = kLastListedNode;
  bool Holds(std::int32_t node) const { return first <= node && node <= last; }
};
NodeRange SelectedNodes(const Settings& s);

// Tries one argument against the option table, first match wins; true when it
// was taken as an option (also when its value didn't scan).
bool ScanOption(const char* arg, Settings& settings);

}  // namespace bgr
