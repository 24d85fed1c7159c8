// The painted strip of every yellow line (a taxiway with a painted line and
// nothing else), laid into the centre-line layer.
#pragma once

#include <cstdint>

namespace bgr {

class TaxiwayList;
class TileGrid;

void GenerateIsYellow(const TaxiwayList& network, TileGrid& grid);
// One strip, 1 ft wide, along the line from (x1, z1) to (x2, z2).
void GenerateYellowLine(TileGrid& grid, std::int32_t x1, std::int32_t z1, std::int32_t x2, std::int32_t z2);

}  // namespace bgr
