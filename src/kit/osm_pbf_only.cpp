// The Windows build of bgrkit osm: no expat or bzip2 there, so PBF only.
#include "kit/osm.h"

namespace bgr::kit {

bool OsmReadsXml() { return false; }

}  // namespace bgr::kit
