#include "tms/tms_steps.h"

#include "frame/output.h"
#include "frame/run_context.h"
#include "tms/apron.h"
#include "tms/generate_is_yellow.h"
#include "tms/generate_ply_lights.h"
#include "tms/repair_passes.h"
#include "tms/taxi_polygons.h"
#include "tms/tms_job.h"

namespace bgr {
namespace {

// The results of the two writes are not the job's: it gives 1 when the BGR file
// was read, and a failed write has left the old file and said so in the report.
constexpr TmsStep kSteps[] = {
    {"Load",
     [](const TmsJob& j, OutputSink& out) {
       out.Printf("Load(%.*s) points=%d edges=%d\n", static_cast<int>(j.file().size()), j.file().data(),
                  j.network.points.count(), j.network.edgeCount);
     },
     true, [](TmsJob& j) { j.Load(j.file()); }},
    {"PrepareNetwork", nullptr, false, [](TmsJob& j) { j.PrepareNetwork(); }},
    {"SnapEndPointsToRunways", [](const TmsJob&, OutputSink& out) { out.Write("SnapEndPointsToRunways()\n"); }, false,
     [](TmsJob& j) { SnapEndPointsToRunways(j.network, j.marks, j.runwayList); }},
    {"MakeRunwayExitStubs", nullptr, false, [](TmsJob& j) { MakeRunwayExitStubs(j.network, j.marks, j.runwayList); }},
    {"MakeTaxiwayTaxiwayIntersections",
     [](const TmsJob& j, OutputSink& out) {
       out.Printf("MakeTaxiwayTaxiwayIntersections() edges=%d\n", TaxiwayCount(j.network));
     },
     false, [](TmsJob& j) { MakeTaxiwayTaxiwayIntersections(j.network, j.marks); }},
    {"SnapEndPointsToTaxiways", [](const TmsJob&, OutputSink& out) { out.Write("SnapEndPointsToTaxiways()\n"); }, false,
     [](TmsJob& j) { SnapEndPointsToTaxiways(j.network, j.marks); }},
    {"FillTaxiList", nullptr, false, [](TmsJob& j) { j.FillTaxiList(); }},
    {"MeasureAprons", [](const TmsJob&, OutputSink& out) { out.Write("GenerateApron(0)\n"); }, false,
     [](TmsJob& j) { MeasureAprons(j.ctx(), j.ply, j.bounds); }},
    {"SizeTileGrid", nullptr, false, [](TmsJob& j) { j.SizeTileGrid(); }},
    {"GenerateTaxiPolygons", [](const TmsJob&, OutputSink& out) { out.Write("GenerateTaxiPolygons()\n"); }, false,
     [](TmsJob& j) { GenerateTaxiPolygons(j.network, j.marks, j.taxiList, j.grid); }},
    {"GenerateIsYellow", [](const TmsJob&, OutputSink& out) { out.Write("GenerateIsYellow()\n"); }, false,
     [](TmsJob& j) { GenerateIsYellow(j.network, j.grid); }},
    {"GenerateApron", [](const TmsJob&, OutputSink& out) { out.Write("GenerateApron(1)\n"); }, false,
     [](TmsJob& j) { GenerateApron(j.ctx(), j.ply, j.grid); }},
    {"GeneratePlyLights", [](const TmsJob&, OutputSink& out) { out.Write("GeneratePlyLights()\n"); }, false,
     [](TmsJob& j) { GeneratePlyLights(j.ply, j.grid); }},
    {"GenerateOutputFile",
     [](const TmsJob& j, OutputSink& out) { out.Printf("GenerateOutputFile(%s)\n", j.OutputName().c_str()); }, false,
     [](TmsJob& j) { (void)j.GenerateOutputFile(); }},
    {"RestoreNetwork", nullptr, false, [](TmsJob& j) { j.RestoreNetwork(); }},
    // an empty network writes nothing
    {"SaveNetwork", nullptr, false, [](TmsJob& j) { (void)j.network.Save(j.file()); }},
};

}  // namespace

std::span<const TmsStep> TmsSteps() { return kSteps; }

void RunStep(TmsJob& job, const TmsStep& step) {
  if (step.progress && !step.progressAfter) step.progress(job, job.ctx().console());
  step.run(job);
  if (step.progress && step.progressAfter) step.progress(job, job.ctx().console());
}

}  // namespace bgr
