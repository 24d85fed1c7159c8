// The node tables of the purge and the edit scripts: up to 12000 points of three
// doubles, and the renumbering that joins nodes within a tolerance.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace bgr {

struct DoublePoint {
  double x = 0, y = 0, z = 0;
};

inline constexpr std::int32_t kNodeTableSize = 12000;

// A table of kNodeTableSize records; allocation failure stops the process
// through ReportFatal with the caller's message.
class NodeTable {
 public:
  explicit NodeTable(const char* allocFailure);
  std::int32_t count() const { return static_cast<std::int32_t>(points_.size()); }
  const DoublePoint& operator[](std::int32_t i) const { return points_[static_cast<std::size_t>(i)]; }
  DoublePoint& operator[](std::int32_t i) { return points_[static_cast<std::size_t>(i)]; }
  bool Contains(std::int32_t i) const { return i >= 0 && i < count(); }

 private:
  friend bool insert_double_points(NodeTable& table, double x, double y, double z);
  std::vector<DoublePoint> points_;
};

// Appends a point; one more than the table holds ends the process.
bool insert_double_points(NodeTable& table, double x, double y, double z);

// The kept table of the purge with an index over x and z that finds the same
// point as a walk from its start: the lowest number within tolerance.
class KeptNodes {
 public:
  explicit KeptNodes(double tolerance);
  NodeTable& table() { return table_; }
  // The number in the kept table of node 'number' of 'whole'; 0 for a number
  // that the whole table doesn't have.
  std::int32_t RenumberNode(std::int32_t number, const NodeTable& whole);
  void Append(const DoublePoint& p);

 private:
  using Key = std::uint64_t;
  bool Indexable(const DoublePoint& p) const;
  Key CellKey(std::int64_t cx, std::int64_t cz) const;
  std::int64_t Cell(double v) const;
  std::int32_t Find(const DoublePoint& p) const;

  double tolerance_;
  double cellSize_;
  NodeTable table_;
  std::unordered_map<Key, std::vector<std::int32_t>> cells_;
  std::vector<std::int32_t> far_;  // points too far out for a cell number, always walked
};

}  // namespace bgr
