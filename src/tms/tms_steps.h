// The steps of the TMS job in the order they run. The order's rules live here
// and nowhere else: the marks before the repairs, taxiList filled after them,
// the bounds (network, then aprons) before the grid, the grid before the first
// polygon. TmsJob::Run walks the table; bgrkit check walks it for its forecast.
#pragma once

#include <span>
#include <string_view>

namespace bgr {

class OutputSink;
class TmsJob;

struct TmsStep {
  std::string_view name;
  // The step's line on standard output, or null for a silent step: printed
  // before the step, or after it for the load, which tells what it read.
  void (*progress)(const TmsJob& job, OutputSink& out);
  bool progressAfter;
  void (*run)(TmsJob& job);
};

std::span<const TmsStep> TmsSteps();
// One step with its progress line.
void RunStep(TmsJob& job, const TmsStep& step);

}  // namespace bgr
