#include "frame/options.h"

#include <cstdio>
#include <cstring>

namespace bgr {
namespace {

bool Prefix(const char* arg, const char* option) { return std::strncmp(arg, option, 3) == 0; }
bool Exact(const char* arg, const char* option) { return std::strcmp(arg, option) == 0; }

// "%d:%d" into vmin, vmax; fields that don't scan leave the setting as it was.
void ScanRange(const char* rest, Settings& s) {
  int vmin = s.vmin;
  int vmax = s.vmax;
  std::sscanf(rest, "%d:%d", &vmin, &vmax);
  s.vmin = vmin;
  s.vmax = vmax;
}

}  // namespace

bool ScanOption(const char* arg, Settings& s) {
  if (Prefix(arg, "-ls")) {
    ScanRange(arg + 3, s);
    s.printValues = 1;
    s.mode = Mode::List;
    return true;
  }
  if (Prefix(arg, "-de")) {
    ScanRange(arg + 3, s);
    s.mode = Mode::DeleteEdges;
    return true;
  }
  if (Prefix(arg, "-gr")) {
    unsigned ignored = 0;
    std::sscanf(arg + 3, "%x", &ignored);
    s.mode = Mode::Graph;
    return true;
  }
  if (Prefix(arg, "-mg")) {
    s.mode = Mode::Merge;
    return true;
  }
  if (Prefix(arg, "-mv")) {
    double north = s.north;
    double east = s.east;
    int vmin = s.vmin;
    int vmax = s.vmax;
    std::sscanf(arg + 3, "%lf:%lf:%d:%d", &north, &east, &vmin, &vmax);
    s.north = north;
    s.east = east;
    s.vmin = vmin;
    s.vmax = vmax;
    s.mode = Mode::Move;
    return true;
  }
  if (Prefix(arg, "-pg")) {
    s.mode = Mode::Purge;
    return true;
  }
  {
    unsigned value = static_cast<unsigned>(s.printValues);
    if (std::sscanf(arg, "-pr%x", &value) != 0) {
      s.printValues = static_cast<std::int32_t>(value);
      return true;
    }
  }
  if (Prefix(arg, "-rs")) {
    s.textName = arg + 3;
    s.mode = Mode::EditScript;
    return true;
  }
  if (Prefix(arg, "-te")) {
    s.textName = arg + 3;
    s.mode = Mode::Script;
    return true;
  }
  {
    int column = s.refCell.column;
    int band = s.refCell.band;
    if (std::sscanf(arg, "-ti%03d%03d", &column, &band) != 0) {
      s.refCell.column = column;
      s.refCell.band = band;
      return true;
    }
  }
  if (Exact(arg, "-tm")) {
    s.mode = Mode::TmsGeneration;
    return true;
  }
  if (Exact(arg, "-txp")) {
    s.mode = Mode::TxpExport;
    s.txpLevel = 0;
    return true;
  }
  if (Exact(arg, "-txp0")) {
    s.mode = Mode::TxpExport;
    s.txpLevel = 1;
    return true;
  }
  if (Exact(arg, "-txd")) {
    s.mode = Mode::TxdExport;
    return true;
  }
  return false;
}

}  // namespace bgr
