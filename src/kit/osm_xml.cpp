// The Linux build of bgrkit osm: OSM XML and compressed files as well as PBF
// (libosmium registers each format with the reader in the file that includes it).
#include <osmium/io/any_compression.hpp>
#include <osmium/io/xml_input.hpp>

#include "kit/osm.h"

namespace bgr::kit {

bool OsmReadsXml() { return true; }

}  // namespace bgr::kit
