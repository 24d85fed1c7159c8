// The state that the passes of the TMS job share: the network in working units,
// the marks of its points, the runway and taxiway segments, the bounding box and
// the tile grid. One job object per run of -tm; a test can make several.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/edge_kinds.h"
#include "formats/ply_reader.h"
#include "formats/taxiway_list.h"
#include "formats/tms_file.h"
#include "formats/working_units.h"
#include "geometry/planar.h"
#include "tms/tile_grid.h"

namespace bgr {

class RunContext;

inline constexpr double kShortLinkUnits = 128000.0;  // 500 ft: a lone link up to this long is dropped
inline constexpr double kBoundsMargin = 128000.0;    // 500 ft around everything
inline constexpr std::int32_t kLeastTileSize = 128000;
inline constexpr std::int32_t kMarkedPoints = 12000;
inline constexpr std::int32_t kRunwaySegments = 32;

// With this many yellow lines or more they are left out of the written network.
inline constexpr std::int32_t kYellowLinesKept = 100;

struct Segment {
  std::uint32_t edge = 0;
  PlaneLine line{};
  std::array<TEXPOINT, 4> corners{};  // ribbon: left start, right start, right end, left end
};

class SegmentList {
 public:
  // The room is taken at once and its pages touched only as segments arrive.
  explicit SegmentList(std::int32_t capacity) : capacity_(capacity) {
    segments_.reserve(static_cast<std::size_t>(capacity));
  }
  std::int32_t count() const { return count_; }
  std::int32_t capacity() const { return capacity_; }
  // The segment, or null for an index outside the list.
  Segment* At(std::int32_t index) {
    return index >= 0 && index < count_ ? &segments_[static_cast<std::size_t>(index)] : nullptr;
  }
  const Segment* At(std::int32_t index) const { return const_cast<SegmentList*>(this)->At(index); }
  // False when the list is full.
  bool Add(std::uint32_t edge, const TEXPOINT& start, const TEXPOINT& end);

 private:
  std::vector<Segment> segments_;
  std::int32_t capacity_ = 0;
  std::int32_t count_ = 0;
};

void ScalePointsUp(TEXPOINTS& points);

// A point of the network; a number outside the table reads as the origin, as
// the unused places of the table hold.
inline TEXPOINT NetworkPoint(const TaxiwayList& network, std::int32_t number) {
  return number >= 0 && number < network.points.count() ? network.points[number] : TEXPOINT{};
}
inline TaxiwayEdge& NetworkEdge(TaxiwayList& network, std::int32_t i) {
  return network.edges[static_cast<std::size_t>(i)];
}
inline const TaxiwayEdge& NetworkEdge(const TaxiwayList& network, std::int32_t i) {
  return network.edges[static_cast<std::size_t>(i)];
}

// How many paved edges meet at each point, raised by the repairs where they
// join edges. A point number outside 0..11999 (negative ones too) has no mark:
// 0, and marking it does nothing.
class PointMarks {
 public:
  void Clear() { std::fill(marks_.begin(), marks_.end(), 0); }
  void Add(std::int32_t point, std::int32_t amount);
  std::int32_t Of(std::int32_t point) const {
    return point >= 0 && point < kMarkedPoints ? marks_[static_cast<std::size_t>(point)] : 0;
  }

 private:
  std::vector<std::int32_t> marks_ = std::vector<std::int32_t>(kMarkedPoints, 0);
};

// The bounding box of network and aprons in working units; a value equal to a
// bound changes nothing.
struct Bounds {
  double minX = 9999999.0, minZ = 9999999.0;
  double maxX = -9999999.0, maxZ = -9999999.0;
  void Grow(std::int32_t x, std::int32_t z);
};

class TmsJob {
 public:
  explicit TmsJob(RunContext& ctx);

  // The whole job on one BGR file, the steps of tms_steps.h in their order:
  // 1 when the file was read, else 0.
  std::int32_t Run(std::string_view file);

  // The network and its PLY companion; 0 when the BGR can't be read.
  std::int32_t Load(std::string_view file);
  // Feet to working units, then flags, yellow lines, marks, runways, short links.
  void PrepareNetwork();
  // Every taxiway and exit stub as it stands after the repairs.
  void FillTaxiList();
  // The margin, then the grid's origin and tile size.
  void SizeTileGrid();
  // The tile file beside the BGR file; false when it wasn't written.
  bool GenerateOutputFile();
  // Its name: the BGR file's with the extension TMS.
  std::string OutputName() const;
  // Working units back to feet; few yellow lines become taxiways again.
  void RestoreNetwork();

  void AddSegment(SegmentList& list, std::uint32_t edge, const TEXPOINT& start, const TEXPOINT& end);
  TEXPOINT Point(std::int32_t number) const { return NetworkPoint(network, number); }
  std::int32_t EdgeCount() const { return network.edgeCount; }
  TaxiwayEdge& Edge(std::int32_t i) { return NetworkEdge(network, i); }

  RunContext& ctx() { return ctx_; }
  // The BGR file of the job, and whether it was read.
  const std::string& file() const { return file_; }
  std::int32_t result() const { return result_; }

  TaxiwayList network;
  PlyReader ply;  // the companion, read once at the load
  SegmentList runwayList{kRunwaySegments};
  SegmentList taxiList{TaxiwayList::kMaxEdges};
  PointMarks marks;
  TileGrid grid;
  TmsFile tms;
  Bounds bounds;
  std::int32_t yellowCount = 0;

 private:
  RunContext& ctx_;
  std::string file_;
  std::int32_t result_ = 1;
};

}  // namespace bgr
