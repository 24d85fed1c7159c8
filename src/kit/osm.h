// bgrkit osm: airport scripts from OpenStreetMap data. Every aerodrome of the
// input (or those named) becomes CODE.txt, a script of RWY, MOV/LIN and
// POI/PLY lines that bgrtool -te builds into the airport's network and PLY
// companion, and airports.csv lists their reference points for makedb.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace bgr::kit {

struct OsmOptions {
  std::string input;
  std::vector<std::string> airports;  // codes, or node/ID, way/ID, relation/ID with an optional =CODE
  std::string out = ".";
  double runwayWidth = 150, taxiwayWidth = 75, taxilaneWidth = 50;  // feet, where the map gives none
  bool progress = true;  // on a terminal
};

// The 'width' tag in feet: metres by default, or with a unit ("45 m",
// "150 ft", "150'", "150 feet"); 0 when it doesn't read as a width.
double WidthFeet(std::string_view tag);

// The two designators of a runway's ref ("05/23", "23/05", "09L/27R") in the
// order of its ends: 'bearing' is the true bearing in degrees from the first
// end to the second, which a runway is named after from its first end. A ref
// of one designator gets the opposite one made; one that doesn't read gives
// numbers from the bearing.
struct RunwayEnds {
  std::string first, second;
};
RunwayEnds NameRunwayEnds(std::string_view ref, double bearing);

// True when this build reads OSM XML too, not only .osm.pbf.
bool OsmReadsXml();

// The whole conversion; its messages go to 'err'. 0 done, 1 failed.
int ConvertOsm(const OsmOptions& options, std::ostream& err);

}  // namespace bgr::kit
