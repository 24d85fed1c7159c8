// The passes that tidy a network before any polygon is made: taxiway ends
// snapped on to runways, exit stubs along the runway, crossing taxiways split,
// taxiway ends snapped on to other taxiways. They run in this order.
#pragma once

#include <cstdint>

namespace bgr {

class PointMarks;
class SegmentList;
class TaxiwayList;
struct PlaneLine;
struct TEXPOINT;

inline constexpr double kSnapReach = 38400.0;             // 150 ft: how far a pass moves a taxiway end
inline constexpr double kTaxiwaySnapClearance = 25600.0;  // 100 ft from the ends of the taxiway snapped on to
inline constexpr std::int32_t kMostIntersectedTaxiways = 100;  // above this many, no crossing is split

// Each pass changes the network and reads (the snaps) or raises (the rest) the
// marks of its points; the runway passes walk the runway segments.
void SnapEndPointsToRunways(TaxiwayList& network, const PointMarks& marks, const SegmentList& runways);
void MakeRunwayExitStubs(TaxiwayList& network, PointMarks& marks, const SegmentList& runways);
// The taxiways (type 1) of the network; above kMostIntersectedTaxiways the pass below does nothing.
std::int32_t TaxiwayCount(const TaxiwayList& network);
void MakeTaxiwayTaxiwayIntersections(TaxiwayList& network, PointMarks& marks);
void SnapEndPointsToTaxiways(TaxiwayList& network, PointMarks& marks);
// One pair of the pass above: a free end of taxiway a snapped on to taxiway b.
// True when it changed the network.
bool SnapEndPointsToTaxiway(TaxiwayList& network, PointMarks& marks, std::int32_t a, std::int32_t b);

// (x, z) lies on the edge from a to b, whose line is 'line', with 'spare' to each end.
bool WithinEdge(double x, double z, const PlaneLine& line, const TEXPOINT& a, const TEXPOINT& b, double spare);

void AddExitStub(TaxiwayList& network, PointMarks& marks, std::int32_t from, double x, double z, std::int32_t width,
                 std::int32_t type);
void SplitEdgeAtEndPoint(TaxiwayList& network, PointMarks& marks, std::int32_t point, double x, double z,
                         std::int32_t edge);

}  // namespace bgr
