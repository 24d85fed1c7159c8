#include "tms/tms_job.h"

#include <algorithm>

#include "formats/network_content.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "platform/platform.h"
#include "tms/apron.h"
#include "tms/repair_passes.h"
#include "tms/taxi_polygons.h"
#include "tms/tile_output.h"

namespace bgr {

bool SegmentList::Add(std::uint32_t edge, const TEXPOINT& start, const TEXPOINT& end) {
  if (count_ >= capacity()) return false;
  Segment& s = segments_.emplace_back();
  ++count_;
  s.edge = edge;
  s.line.SetFromPoints(start, end);
  return true;
}

void ScalePointsUp(TEXPOINTS& points) {
  auto all = points.EditAll();
  for (std::int32_t i = 0; i < points.count(); ++i) {
    TEXPOINT& p = all[static_cast<std::size_t>(i)];
    p = {WrapMul(p.x, kUnitsPerFoot), WrapMul(p.y, kUnitsPerFoot), WrapMul(p.z, kUnitsPerFoot)};
  }
}

TmsJob::TmsJob(RunContext& ctx) : network(ctx), grid(&ctx), ctx_(ctx) {}

std::int32_t TmsJob::Run(std::string_view file) {
  std::int32_t result = Load(file);
  PrepareNetwork();
  SnapEndPointsToRunways(*this);
  MakeRunwayExitStubs(*this);
  MakeTaxiwayTaxiwayIntersections(*this);
  SnapEndPointsToTaxiways(*this);
  FillTaxiList();
  GenerateApron(*this, ApronPass::kMeasure);
  SizeTileGrid();
  ctx_.console().Write("GenerateTaxiPolygons()\n");
  TaxiPolygons(*this).Generate();
  ctx_.console().Write("GenerateIsYellow()\n");
  GenerateIsYellow();
  GenerateApron(*this, ApronPass::kGenerate);
  ctx_.console().Write("GeneratePlyLights()\n");
  GeneratePlyLights(*this);
  GenerateOutputFile(file);
  RestoreNetwork();
  // an empty network writes nothing; a failed write leaves the old file and says so
  (void)network.Save(file);
  return result;
}

void TmsJob::GenerateIsYellow() {
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    const TaxiwayEdge& e = Edge(i);
    if (e.type != kYellowLine) continue;
    TEXPOINT a = Point(e.start), b = Point(e.end);
    GenerateYellowLine(grid, a.x, a.z, b.x, b.z);
  }
}

void TmsJob::GenerateOutputFile(std::string_view file) {
  // the name is kept whole, however long; the system cuts nothing
  std::string name(file);
  SetExtension(name, "TMS");
  ctx_.console().Printf("GenerateOutputFile(%s)\n", name.c_str());
  if (platform::SameFile(file, name)) {
    // a source named .TMS would be overwritten by its own tiles before its write-back
    ctx_.Report("BgrTms source and destination are the same file '%s'", name);
    return;
  }
  TileOutput(*this).Write(name);
}

std::int32_t TmsJob::Load(std::string_view file) {
  std::int32_t result = 1;
  if (network.Load(file, 0) == 0) {
    result = 0;
    ctx_.Report("BgrTms source file '%s' not found", file);
    TellWhatStandsInstead(ctx_, file);
  }
  ctx_.console().Printf("Load(%.*s) points=%d edges=%d\n", static_cast<int>(file.size()), file.data(),
                        network.points.count(), network.edgeCount);
  return result;
}

TEXPOINT TmsJob::Point(std::int32_t number) const {
  return number >= 0 && number < network.points.count() ? network.points[number] : TEXPOINT{};
}

void TmsJob::MarkPoint(std::int32_t point, std::int32_t amount) {
  if (point >= 0 && point < kMarkedPoints) {
    auto& mark = pointMarks_[static_cast<std::size_t>(point)];
    mark = WrapAdd(mark, amount);
  }
}

std::int32_t TmsJob::Mark(std::int32_t point) const {
  return point >= 0 && point < kMarkedPoints ? pointMarks_[static_cast<std::size_t>(point)] : 0;
}

void TmsJob::GrowBounds(std::int32_t x, std::int32_t z) {
  boundsMinX = std::min<double>(boundsMinX, x);
  boundsMaxX = std::max<double>(boundsMaxX, x);
  boundsMinZ = std::min<double>(boundsMinZ, z);
  boundsMaxZ = std::max<double>(boundsMaxZ, z);
}

void TmsJob::AddSegment(SegmentList& list, std::uint32_t edge, const TEXPOINT& start, const TEXPOINT& end) {
  if (!list.Add(edge, start, end) && !ctx_.once.segmentListFull) {
    ctx_.once.segmentListFull = true;
    ctx_.Report("SegmentList::Add - too many edges");
  }
  // an edge that didn't fit still widens the box
  GrowBounds(start.x, start.z);
  GrowBounds(end.x, end.z);
}

void TmsJob::PrepareNetwork() {
  yellowCount = 0;
  ScalePointsUp(network.points);
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    TaxiwayEdge& e = Edge(i);
    e.flags = EdgeFlags(e.flags);
    if (e.type == kTaxiway && (e.flags & kAllFlags) == kPaintedOnly) {
      yellowCount = WrapAdd(yellowCount, 1);
      e.type = kYellowLine;
    }
    e.width = WrapMul(e.width, kUnitsPerFoot);
  }
  std::fill(pointMarks_.begin(), pointMarks_.end(), 0);
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    const TaxiwayEdge& e = Edge(i);
    if (e.type == kRunway) AddSegment(runwayList, static_cast<std::uint32_t>(i), Point(e.start), Point(e.end));
    if (e.flags & kPaved) {
      MarkPoint(e.start, 1);
      MarkPoint(e.end, 1);
    }
  }
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    TaxiwayEdge& e = Edge(i);
    if (e.type != kTaxiway || Mark(e.start) != 1 || Mark(e.end) != 1) continue;
    TEXPOINT a = Point(e.start), b = Point(e.end);
    if (PointDistance(a.x, a.z, b.x, b.z) <= kShortLinkUnits) e.type = kShortLink;
  }
}

void TmsJob::FillTaxiList() {
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    const TaxiwayEdge& e = Edge(i);
    if (e.type == kTaxiway || e.type == kExitStub)
      AddSegment(taxiList, static_cast<std::uint32_t>(i), Point(e.start), Point(e.end));
  }
}

void TmsJob::SizeTileGrid() {
  boundsMinX -= kBoundsMargin;
  boundsMinZ -= kBoundsMargin;
  boundsMaxX += kBoundsMargin;
  boundsMaxZ += kBoundsMargin;
  std::int32_t spanX = TruncToLong(boundsMaxX - boundsMinX);
  std::int32_t spanZ = TruncToLong(boundsMaxZ - boundsMinZ);
  std::int32_t span = std::max(spanX, spanZ);
  grid.TileOriginX = TruncToLong(boundsMinX);
  grid.TileOriginZ = TruncToLong(boundsMinZ);
  grid.TileSize = std::max(span / kTilesPerSide, kLeastTileSize);
  tms.tileFeet = static_cast<float>(grid.TileSize / kUnitsPerFoot);
  tms.lowl[0] = boundsMinX / kUnitsPerFoot;
  tms.lowl[2] = boundsMinZ / kUnitsPerFoot;
}

void TmsJob::RestoreNetwork() {
  auto all = network.points.EditAll();
  for (std::int32_t i = 0; i < network.points.count(); ++i) {
    TEXPOINT& p = all[static_cast<std::size_t>(i)];
    p = {p.x / kUnitsPerFoot, p.y / kUnitsPerFoot, p.z / kUnitsPerFoot};
  }
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    TaxiwayEdge& e = Edge(i);
    e.flags = 0;
    e.width /= kUnitsPerFoot;
    if (yellowCount < kYellowLinesKept && e.type == kYellowLine) {
      e.width = 100;  // a network with few yellow lines keeps them as taxiways 100 ft wide
      e.type = kTaxiway;
    }
  }
}

}  // namespace bgr
