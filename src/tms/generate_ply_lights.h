// The free-standing lights of the PLY companion, laid into the light layer.
#pragma once

namespace bgr {

class TaxiwayList;
class TileGrid;

void GeneratePlyLights(TaxiwayList& network, TileGrid& grid);

}  // namespace bgr
