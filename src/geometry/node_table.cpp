#include "geometry/node_table.h"

#include <cmath>
#include <new>

#include "frame/run_context.h"

namespace bgr {

NodeTable::NodeTable(const char* allocFailure) {
  try {
    points_.reserve(static_cast<std::size_t>(kNodeTableSize));
  } catch (const std::bad_alloc&) {
    ReportFatal(allocFailure);
  }
}

bool insert_double_points(NodeTable& table, double x, double y, double z) {
  if (table.count() >= kNodeTableSize) ReportFatal("insert_double_points failed");
  table.points_.push_back({x, y, z});
  return true;
}

KeptNodes::KeptNodes(double tolerance)
    : tolerance_(tolerance), cellSize_(tolerance > 1 ? tolerance : 1), table_("BgrPurge cannot allocate points") {}

bool KeptNodes::Indexable(const DoublePoint& p) const {
  return std::fabs(p.x) < 1e15 && std::fabs(p.z) < 1e15;  // also false for NaN
}

std::int64_t KeptNodes::Cell(double v) const { return static_cast<std::int64_t>(std::floor(v / cellSize_)); }

KeptNodes::Key KeptNodes::CellKey(std::int64_t cx, std::int64_t cz) const {
  return static_cast<Key>(cx) * 0x9E3779B97F4A7C15ull ^ static_cast<Key>(cz);
}

void KeptNodes::Append(const DoublePoint& p) {
  insert_double_points(table_, p.x, p.y, p.z);
  std::int32_t number = table_.count() - 1;
  if (Indexable(p)) {
    cells_[CellKey(Cell(p.x), Cell(p.z))].push_back(number);
  } else {
    far_.push_back(number);
  }
}

std::int32_t KeptNodes::Find(const DoublePoint& p) const {
  auto near = [&](std::int32_t n) {
    const DoublePoint& k = table_[n];
    return std::fabs(k.x - p.x) <= tolerance_ && std::fabs(k.z - p.z) <= tolerance_;
  };
  std::int32_t best = -1;
  for (std::int32_t n : far_) {
    if (near(n)) {
      best = n;
      break;
    }
  }
  if (!Indexable(p)) {
    // nothing in a cell can be near a point this far out, but walk to be sure
    for (std::int32_t n = 0; n < table_.count() && (best == -1 || n < best); ++n)
      if (near(n)) return n;
    return best;
  }
  // a cell is at least the tolerance wide, so the neighbours hold all candidates
  for (std::int64_t cx = Cell(p.x - tolerance_); cx <= Cell(p.x + tolerance_); ++cx) {
    for (std::int64_t cz = Cell(p.z - tolerance_); cz <= Cell(p.z + tolerance_); ++cz) {
      auto it = cells_.find(CellKey(cx, cz));
      if (it == cells_.end()) continue;
      for (std::int32_t n : it->second) {
        if (best != -1 && n >= best) break;
        if (near(n)) {
          best = n;
          break;
        }
      }
    }
  }
  return best;
}

std::int32_t KeptNodes::RenumberNode(std::int32_t number, const NodeTable& whole) {
  if (!whole.Contains(number)) return 0;
  const DoublePoint& p = whole[number];
  std::int32_t found = Find(p);
  if (found >= 0) return found;
  Append(p);
  return table_.count() - 1;
}

}  // namespace bgr
