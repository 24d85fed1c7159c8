#include "tms/tms_job.h"

#include <algorithm>

#include "formats/network_content.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "platform/platform.h"
#include "tms/tile_output.h"
#include "tms/tms_steps.h"

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

TmsJob::TmsJob(RunContext& ctx) : network(ctx), ply(ctx), grid(&ctx), ctx_(ctx) {}

std::int32_t TmsJob::Run(std::string_view file) {
  file_ = file;
  for (const TmsStep& step : TmsSteps()) RunStep(*this, step);
  return result_;
}

std::string TmsJob::OutputName() const {
  // the name is kept whole, however long; the system cuts nothing
  std::string name(file_);
  SetExtension(name, "TMS");
  return name;
}

bool TmsJob::GenerateOutputFile() {
  std::string name = OutputName();
  if (platform::SameFile(file_, name)) {
    // a source named .TMS would be overwritten by its own tiles before its write-back
    ctx_.Report("BgrTms source and destination are the same file '%s'", name);
    return false;
  }
  return TileOutput(ctx_, grid, tms).Write(name, network.originLat, network.originLon);
}

std::int32_t TmsJob::Load(std::string_view file) {
  file_ = file;
  result_ = 1;
  bool read = network.Load(file, 0) != 0;
  if (!ply.Open(network.plyName))
    ctx_.Report(">WARNING: TaxiwayList::OpenPly() polygon file '%s' not open", network.plyName);
  if (!read) {
    result_ = 0;
    ctx_.Report("BgrTms source file '%s' not found", file);
    TellWhatStandsInstead(ctx_, file);
  }
  return result_;
}

void PointMarks::Add(std::int32_t point, std::int32_t amount) {
  if (point >= 0 && point < kMarkedPoints) {
    auto& mark = marks_[static_cast<std::size_t>(point)];
    mark = WrapAdd(mark, amount);
  }
}

void Bounds::Grow(std::int32_t x, std::int32_t z) {
  minX = std::min<double>(minX, x);
  maxX = std::max<double>(maxX, x);
  minZ = std::min<double>(minZ, z);
  maxZ = std::max<double>(maxZ, z);
}

void TmsJob::AddSegment(SegmentList& list, std::uint32_t edge, const TEXPOINT& start, const TEXPOINT& end) {
  // one message for both lists
  if (!list.Add(edge, start, end)) ctx_.ReportOnce("SegmentList::Add - too many edges");
  // an edge that didn't fit still widens the box
  bounds.Grow(start.x, start.z);
  bounds.Grow(end.x, end.z);
}

void TmsJob::PrepareNetwork() {
  yellowCount = 0;
  ScalePointsUp(network.points);
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    TaxiwayEdge& e = Edge(i);
    if (IsYellowLine(e.type, e.flags)) {
      yellowCount = WrapAdd(yellowCount, 1);
      e.type = kYellowLine;
    }
    e.flags = EdgeFlags(e.flags);
    e.width = WrapMul(e.width, kUnitsPerFoot);
  }
  marks.Clear();
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    const TaxiwayEdge& e = Edge(i);
    if (e.type == kRunway) AddSegment(runwayList, static_cast<std::uint32_t>(i), Point(e.start), Point(e.end));
    if (e.flags & kPaved) {
      marks.Add(e.start, 1);
      marks.Add(e.end, 1);
    }
  }
  for (std::int32_t i = 0; i < EdgeCount(); ++i) {
    TaxiwayEdge& e = Edge(i);
    if (e.type != kTaxiway || marks.Of(e.start) != 1 || marks.Of(e.end) != 1) continue;
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
  bounds.minX -= kBoundsMargin;
  bounds.minZ -= kBoundsMargin;
  bounds.maxX += kBoundsMargin;
  bounds.maxZ += kBoundsMargin;
  std::int32_t spanX = TruncToLong(bounds.maxX - bounds.minX);
  std::int32_t spanZ = TruncToLong(bounds.maxZ - bounds.minZ);
  std::int32_t span = std::max(spanX, spanZ);
  grid.TileOriginX = TruncToLong(bounds.minX);
  grid.TileOriginZ = TruncToLong(bounds.minZ);
  grid.TileSize = std::max(span / kTilesPerSide, kLeastTileSize);
  tms.tileFeet = static_cast<float>(grid.TileSize / kUnitsPerFoot);
  tms.lowl[0] = bounds.minX / kUnitsPerFoot;
  tms.lowl[2] = bounds.minZ / kUnitsPerFoot;
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
