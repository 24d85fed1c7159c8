// The airport network in memory: points, edges, origin, and the PLY companion
// that a script adds polygons and lights to (formats/ply_reader.h reads it).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "frame/file_access.h"
#include "geometry/ref_cell.h"
#include "geometry/texpoints.h"

namespace bgr {

struct TaxiwayEdge {
  std::int32_t start = 0;  // -1 marks a deleted edge
  std::int32_t end = 0;
  std::int32_t width = 0;
  std::int32_t type = 0;
  std::int32_t flags = 0;
};

inline constexpr const char* kNoneBgr = "DATA\\NONE.BGR";

class RunContext;

// What the network is doing; only kEmpty and kPolygon are ever tested.
enum class NetState : std::int32_t { kEmpty = 0, kOpen = 1, kPenPlaced = 2, kLineDrawn = 3, kPolygon = 4 };

class TaxiwayList {
 public:
  static constexpr std::int32_t kMaxEdges = 6000;
  static constexpr std::int32_t kMaxPoints = 12000;

  // Nothing is saved on destruction: an owner that built a network saves it.
  explicit TaxiwayList(RunContext& ctx);
  // A PLY copy still open is dropped: the file it was to replace stays as it was.
  ~TaxiwayList() = default;
  TaxiwayList(const TaxiwayList&) = delete;
  TaxiwayList& operator=(const TaxiwayList&) = delete;

  void Reset();
  std::int32_t SetRefCell(const RefCell& cell);
  std::int32_t Load(std::string_view path, std::int32_t updatePly);
  std::int32_t Save(std::string_view path);

  bool OpenPly(std::string_view mode);
  std::int32_t ClosePly();
  std::int32_t ToPlyCoordinates(double x, double z, std::int32_t* outX, std::int32_t* outZ) const;
  std::int32_t WritePlyPoint(double x, double y, double z);
  std::int32_t EndPlyPolygon(std::string_view name);
  std::int32_t WritePlyLight(std::int32_t kind, double x1, double y1, double z1, double x2, double y2, double z2,
                             std::int32_t count);

  std::string plyName;
  double shiftZ = 0;
  double shiftX = 0;
  std::string bgrName;
  NetState state = NetState::kEmpty;
  RefCell refCell;
  double originLat = 0;
  double originLon = 0;
  std::int32_t edgeCount = 0;
  // One record past the last edge holds the pen of a script that draws.
  std::array<TaxiwayEdge, kMaxEdges + 1> edges{};
  TEXPOINTS points{kMaxPoints};

 private:
  RunContext& ctx_;
  OutputFile plyOut_;  // the copy written to until ClosePly puts it in place
  std::FILE* PlyStream() const { return plyOut_.get(); }
};

}  // namespace bgr
