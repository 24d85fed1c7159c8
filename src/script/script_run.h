// One run of an airport script: the network in work, the database, the
// exclusion list and the cell restriction, owned together so that scripts can
// run one after another in one process.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "formats/taxiway_list.h"
#include "geometry/ref_cell.h"
#include "script/airport_database.h"
#include "script/exclusion_list.h"
#include "script/script_network.h"
#include "script/text_file.h"

namespace bgr {

class RunContext;

class ScriptRun {
 public:
  ScriptRun(RunContext& ctx, const RefCell& cell);
  // 1 when the script could be opened, else 0; every airport it touched is saved.
  std::int32_t Run(std::string_view name);

  TaxiwayList& network() { return network_; }

 private:
  void Reference();
  void Runway();
  void Move(bool draw);
  void Point();
  void Polygon();
  void Light();
  // What became of the runways, for the summary.
  enum Refusal { kShort, kExcluded, kNoAirport, kOtherCell, kRefusals };
  void Refuse(Refusal why);
  void CheckRunwayEnds(double length, double lat1, double lon1, double lat2, double lon2);
  void ShowProgress();
  void TellSummary(std::string_view name) const;
  // A position field: skip one field (unless told not to) and the blanks, then parse.
  double NextAngle(std::int32_t (*parse)(std::string_view, double*), bool skipField = true);

  RunContext& ctx_;
  TaxiwayList network_;
  AirportDatabase database_;
  ExclusionList exclusions_;
  ScriptNetwork pen_;
  TextFile script_;
  std::int32_t area_ = ExclusionList::kNoArea;
  bool skipping_ = false;
  // A field that a line lacks keeps what the same command last read; all start at 0.
  std::array<double, 3> move_{}, line_{}, point_{};
  std::array<std::int32_t, 2> moveInts_{}, lineInts_{};
  std::array<double, 6> light_{};
  std::int32_t lightKind_ = 0;
  std::int32_t runwaysDrawn_ = 0;
  std::array<std::int32_t, kRefusals> refused_{}, firstRefused_{};
  std::int32_t oddRunways_ = 0, firstOdd_ = 0;  // ends that don't fit the stated length
  double oddApart_ = 0, oddLength_ = 0;
  std::int64_t lastProgress_ = 0;
  bool progressShown_ = false;
};

}  // namespace bgr
