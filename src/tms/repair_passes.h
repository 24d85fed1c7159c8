// The passes that tidy a network before any polygon is made: taxiway ends
// snapped on to runways, exit stubs along the runway, crossing taxiways split,
// taxiway ends snapped on to other taxiways. They run in this order.
#pragma once

#include <cstdint>

namespace bgr {

class TmsJob;

void SnapEndPointsToRunways(TmsJob& job);
void MakeRunwayExitStubs(TmsJob& job);
void MakeTaxiwayTaxiwayIntersections(TmsJob& job);
void SnapEndPointsToTaxiways(TmsJob& job);
// One pair of the pass above: a free end of taxiway a snapped on to taxiway b.
// True when it changed the network.
bool SnapEndPointsToTaxiway(TmsJob& job, std::int32_t a, std::int32_t b);

void AddExitStub(TmsJob& job, std::int32_t from, double x, double z, std::int32_t width, std::int32_t type);
void SplitEdgeAtEndPoint(TmsJob& job, std::int32_t point, double x, double z, std::int32_t edge);

}  // namespace bgr
