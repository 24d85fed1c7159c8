// bgrkit check: the findings about a network and its PLY companion, each made
// by one small check. The checks that foresee a repair of -tm run the same
// passes on a copy of the network, so that what they say is what -tm then does.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formats/network_content.h"

namespace bgr::kit {

enum class Severity : int { kError = 0, kWarning = 1, kNote = 2 };

struct Finding {
  Severity severity = Severity::kNote;
  std::string code;
  std::string object;       // file, network, point, edge, polygon, line
  std::int64_t number = -1;  // the object's number, -1 for none
  bool placed = false;       // x and z hold the place, in feet
  double x = 0, z = 0;
  std::string message;
};
using Findings = std::vector<Finding>;

struct CheckInput {
  std::string path;             // the BGR file
  NetworkContent network;       // as the file holds it
  std::string plyPath;          // empty when there is no PLY companion
  std::vector<std::string> plyLines;
};

// Reads the network and its PLY companion; false when the BGR can't be opened.
bool LoadCheckInput(const std::string& path, CheckInput& input, std::string& error);

void CheckFile(const CheckInput& in, Findings& out);            // damaged or cut files
void CheckSizes(const CheckInput& in, Findings& out);           // table and runway limits
void CheckDanglingEdges(const CheckInput& in, Findings& out);
void CheckZeroLengthEdges(const CheckInput& in, Findings& out);
void CheckClosePoints(const CheckInput& in, Findings& out);     // coincident or within 5 ft
void CheckDuplicateEdges(const CheckInput& in, Findings& out);
void CheckWidths(const CheckInput& in, Findings& out);
void CheckRange(const CheckInput& in, Findings& out);           // the 32-bit working range
void CheckYellowLines(const CheckInput& in, Findings& out);
void CheckCrossings(const CheckInput& in, Findings& out);       // taxiways crossing with no shared point
void CheckSnaps(const CheckInput& in, Findings& out);           // what the repair passes snap, and near misses
void CheckAprons(const CheckInput& in, Findings& out);
void CheckPlyLines(const CheckInput& in, Findings& out);        // lines that -tm passes over

// Every check, sorted by severity, then object, then place in the file.
Findings CheckAll(const CheckInput& in);
// "severity code object location: message"
std::string FormatFinding(const Finding& f);

}  // namespace bgr::kit
