// The free-standing lights of the PLY companion, laid into the light layer.
#pragma once

namespace bgr {

class PlyReader;
class TileGrid;

void GeneratePlyLights(PlyReader& ply, TileGrid& grid);

}  // namespace bgr
