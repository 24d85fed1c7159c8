// bgrkit check: the findings about a network and its PLY companion, each made
// by one small check. The checks that foresee a repair of -tm run the same
// passes on a copy of the network, so that what they say is what -tm then does.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formats/network_content.h"
#include "formats/ply_content.h"

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

// A place in feet.
struct Place {
  double x = 0, z = 0;
};

// What -tm's repair passes, run in their order on a copy, do to the network.
struct Foreseen {
  struct Move {
    std::int32_t point;
    Place from, to;
    std::int32_t onto = -1;  // the taxiway split there, for a snap on to a taxiway
  };
  struct NearMiss {
    std::int32_t point;
    Place at;
    double feet;  // how far the snap would have to move it
    std::uint32_t edge;
  };
  bool ran = false;
  std::int32_t taxiways = 0;  // taxiways that the crossing pass counted
  std::vector<Place> splits;  // points that the crossing pass made
  std::vector<Move> toRunway, toTaxiway;
  std::vector<NearMiss> nearRunway, nearTaxiway;  // ends 150 to 300 ft off, which no pass moves
};

struct CheckInput {
  std::string path;        // the BGR file
  NetworkContent network;  // as the file holds it
  std::string plyPath;     // empty when there is no PLY companion
  PlyContent ply;
  Foreseen foreseen;
};

// Runs -tm's repair passes on the network of 'path' in memory.
Foreseen ForeseeRepairs(const std::string& path);

// Reads the network and its PLY companion and foresees the repairs; false
// when the BGR can't be opened.
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
