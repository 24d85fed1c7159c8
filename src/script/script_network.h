// What a script does to a network: reference points that open, keep or switch
// airports, a pen that moves and draws edges (merging points within 5 ft and
// edges drawn twice), and runways that replace the runways they lie on.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/taxiway_list.h"
#include "geometry/ref_cell.h"

namespace bgr {

class AirportDatabase;
class RunContext;

// What a script run did to its networks, for the summary on standard error.
struct ScriptTally {
  enum class NoNetwork { kNone, kNoAirport, kOtherCell };
  std::int32_t line = 0;  // the script line under way
  std::int32_t noAirport = 0, otherCell = 0;  // reference points that opened no network
  std::int32_t firstNoAirport = 0, firstOtherCell = 0;  // their first lines
  NoNetwork why = NoNetwork::kNone;  // why the open network is none
  std::map<std::string, bool> existed;  // every network opened: was its file there before
  std::set<std::string> written;
  std::int32_t notSaved = 0;
  bool toldDatabase = false, toldDataFolder = false;
};

inline constexpr double kEquatorFeet = 131479658.79265094;
inline constexpr double kMeridianFeet = 131256561.67979005;
inline constexpr double kSameNetworkFeet = 15000.0;
inline constexpr std::int32_t kShortestRunway = 750;
inline constexpr std::int32_t kRunwayReplaceFeet = 1000;
inline constexpr std::int32_t kMergeFeet = 5;

class ScriptNetwork {
 public:
  ScriptNetwork(RunContext& ctx, TaxiwayList& network, AirportDatabase& database)
      : ctx_(ctx), net_(network), database_(database) {}

  std::int32_t SetReference(double lat, double lon);
  void ToLocalFeet(double lat, double lon, double* z, double* x) const;
  // The points differ by at most distance feet in x and in z.
  bool WithinDistance(std::int32_t a, std::int32_t b, std::int32_t distance) const;
  std::int32_t MoveTo(double x, double y, double z, std::int32_t width, std::int32_t flags);
  std::int32_t LineTo(double x, double y, double z, std::int32_t width, std::int32_t flags, std::int32_t type);
  std::int32_t AddRunway(double lat1, double lon1, double lat2, double lon2, std::int32_t length, std::int32_t width);

  // Saves the open network under its name and counts what became of it.
  void SaveNetwork();
  // The edges of the network changed behind the pen's back (a load, a save).
  void ForgetEdges() { indexed_ = 0; byEnds_.clear(); }
  // The plain search that the edge index must agree with: the first edge in
  // use with these ends and type, or -1.
  std::int32_t FindEdgeByWalk(std::int32_t start, std::int32_t end, std::int32_t type) const;
  std::int32_t FindEdge(std::int32_t start, std::int32_t end, std::int32_t type);

  TaxiwayList& network() { return net_; }
  ScriptTally tally;

 private:
  void TellDatabaseOnce();
  static std::uint64_t Key(std::int32_t start, std::int32_t end, std::int32_t type);
  std::int32_t PenPoint(double x, double y, double z);
  void IndexUpTo(std::int32_t count);
  void Unindex(std::int32_t edge);
  void Reindex(std::int32_t edge);

  RunContext& ctx_;
  TaxiwayList& net_;
  AirportDatabase& database_;
  // Edges in use by (start, end, type), each list by rising number.
  std::unordered_map<std::uint64_t, std::vector<std::int32_t>> byEnds_;
  std::int32_t indexed_ = 0;
};

}  // namespace bgr
