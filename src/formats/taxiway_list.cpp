#include "formats/taxiway_list.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "formats/bgr_file.h"
#include "frame/int32_math.h"
#include "frame/line_reader.h"
#include "frame/run_context.h"
#include "frame/text.h"

namespace bgr {
namespace {


}  // namespace

TaxiwayList::TaxiwayList(RunContext& ctx) : bgrName(kNoneBgr), ctx_(ctx) {
  points.Attach(&ctx);
  Reset();
}

void TaxiwayList::Reset() {
  points.SetCount(0);
  edgeCount = 0;
  shiftX = 0;
  shiftZ = 0;
  state = NetState::kEmpty;
}

std::int32_t TaxiwayList::SetRefCell(const RefCell& cell) {
  refCell = cell;
  return 1;
}

std::int32_t TaxiwayList::Load(std::string_view path, std::int32_t updatePly) {
  std::int32_t result = 0;
  BgrFile file;
  // one open: a missing file is no failure to report, as with FileExists
  Stream stream = WrapFileOpen(ctx_, path, "exists");
  if (stream && file.AttachRead(ctx_, std::move(stream), path)) {
    OriginRecord origin{originLat, originLon, 0};
    file.ReadOrigin(origin);
    originLat = origin.latitude;
    originLon = origin.longitude;
    auto table = points.EditAll();
    std::int32_t n = 0;
    NodeRecord node;
    while (n < points.capacity() && file.ReadNode(node)) {
      table[static_cast<std::size_t>(n++)] = TEXPOINT{TruncToLong(node.x), TruncToLong(node.y), TruncToLong(node.z)};
    }
    points.SetCount(n);
    edgeCount = 0;
    EdgeRecord read;
    while (edgeCount < kMaxEdges && file.ReadEdge(read)) {
      edges[static_cast<std::size_t>(edgeCount++)] = TaxiwayEdge{read.from, read.to, read.width, read.type, read.flags};
    }
    // a damaged or overfull file loads in part without a word of the report; say where it stopped
    bool closed = file.ReadTag("<endo>");
    long at = file.Tell(), length = file.Length();
    if (at != length) {
      ctx_.diagnostics().Printf(
          "bgrtool: warning: '%.*s': the reading stopped at byte %ld of %ld; what follows is not read\n",
          static_cast<int>(path.size()), path.data(), at, length);
    } else if (!closed) {
      ctx_.diagnostics().Printf("bgrtool: warning: '%.*s': the file is cut short at byte %ld, inside a record\n",
                                static_cast<int>(path.size()), path.data(), at);
    }
    file.Abandon();
    result = 1;
    state = NetState::kOpen;
  }
  plyName = std::string(path);
  SetExtension(plyName, "PLY");
  // the companion is read by a PlyReader; a network opens it only to add to it
  if (updatePly != 0) OpenPly(FileExists(ctx_, plyName) ? "a" : "w");
  return result;
}

std::int32_t TaxiwayList::Save(std::string_view path) {
  ClosePly();
  if (points.count() < 1 || edgeCount < 1 || path == kNoneBgr) {
    Reset();
    return 0;
  }
  BgrFile file;
  bool opened = file.OpenReplace(ctx_, path);
  int reason = errno;
  // the report has the failed open; say on standard error, once, what it costs
  if (!opened && ctx_.FirstTime("TaxiwayList::Save network not saved")) {
    ctx_.diagnostics().Printf("bgrtool: the network '%.*s' is not saved: %s\n", static_cast<int>(path.size()),
                              path.data(), std::strerror(reason));
  }
  file.WriteOrigin({originLat, originLon, 0.0});
  file.WriteNodes(points, -1, -1);
  for (std::int32_t i = 0; i < edgeCount; ++i) {
    const TaxiwayEdge& e = edges[static_cast<std::size_t>(i)];
    if (e.start == -1) continue;
    // an edge may name points past the table; those have no place to compare
    if (e.start >= 0 && e.start < points.count() && e.end >= 0 && e.end < points.count()) {
      const TEXPOINT& a = points[e.start];
      if (a.Equals(points[e.end].x, points[e.end].y, points[e.end].z)) continue;
    }
    file.WriteEdge({e.start, e.end, e.width, e.type, 0, e.flags});
  }
  bool written = file.Close() && opened;
  Reset();
  return written ? 1 : 0;
}

bool TaxiwayList::OpenPly(std::string_view mode) {
  ClosePly();
  if (Stream old = mode[0] == 'a' ? WrapFileOpen(ctx_, plyName, "rb") : Stream(); mode[0] != 'a' || old) {
    // Lines are added to a copy beside the file, which takes the file's place
    // when it is closed: a write that fails leaves the old file whole.
    plyOut_.Open(ctx_, plyName, mode);
    if (plyOut_ && old) {
      char buffer[65536];
      std::size_t n;
      while ((n = std::fread(buffer, 1, sizeof buffer, old.get())) > 0) std::fwrite(buffer, 1, n, plyOut_.get());
    }
  }
  if (!PlyStream()) {
    ctx_.Report(">WARNING: TaxiwayList::OpenPly() polygon file '%s' not open", plyName);
  } else if (!mode.empty() && mode[0] == 'w') {
    std::fprintf(PlyStream(), "ORG %lf %lf\n", originLat, originLon);
  }
  return PlyStream() != nullptr;
}

std::int32_t TaxiwayList::ClosePly() {
  if (!plyOut_) return 1;
  std::string failure = plyOut_.Commit();
  if (failure.empty()) return 1;
  ctx_.Report("TaxiwayList cannot write '%s': %s", plyName, 0, 0, failure);
  return 0;
}

std::int32_t TaxiwayList::ToPlyCoordinates(double x, double z, std::int32_t* outX, std::int32_t* outZ) const {
  *outX = TruncToLong(x + shiftX);
  *outZ = TruncToLong(z + shiftZ);
  return 1;
}

std::int32_t TaxiwayList::WritePlyPoint(double x, double, double z) {
  if (PlyStream()) {
    std::int32_t px, pz;
    ToPlyCoordinates(x, z, &px, &pz);
    std::fprintf(PlyStream(), "POI %d %d\n", px, pz);
  }
  state = NetState::kPolygon;
  return 1;
}

std::int32_t TaxiwayList::EndPlyPolygon(std::string_view name) {
  if (state == NetState::kPolygon && PlyStream()) std::fprintf(PlyStream(), "PLY \"%s\"\n", std::string(name).c_str());
  state = NetState::kOpen;
  return 1;
}

std::int32_t TaxiwayList::WritePlyLight(std::int32_t kind, double x1, double, double z1, double x2, double,
                                        double z2, std::int32_t count) {
  if (count >= 1 && PlyStream()) {
    std::int32_t ax, az, bx, bz;
    ToPlyCoordinates(x1, z1, &ax, &az);
    ToPlyCoordinates(x2, z2, &bx, &bz);
    if (count == 1) {
      std::fprintf(PlyStream(), "LGT %d %d %d\n", kind, ax, az);
    } else {
      std::fprintf(PlyStream(), "LGT %d %d %d %d %d %d\n", kind, ax, az, bx, bz, count);
    }
  }
  state = NetState::kOpen;
  return 1;
}

}  // namespace bgr
