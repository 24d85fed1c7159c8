// bgrkit osm on hostile small OSM XML: broken relations, ways of one node,
// missing nodes, absurd widths and coordinates, huge rings. The input is the
// file as a user downloads it; the scripts go to a folder of the run.
#include <sstream>

#include "fuzz_common.h"
#include "kit/osm.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string input = bgrfuzz::WriteInput("in.osm", data, size);
  bgr::kit::OsmOptions options;
  options.input = input;
  options.out = bgrfuzz::WorkDir() + "/osm";
  options.progress = false;
  std::ostringstream messages;
  (void)bgr::kit::ConvertOsm(options, messages);
  return 0;
}
