#include "formats/ply_reader.h"

#include <cstdio>

#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/line_reader.h"
#include "frame/run_context.h"

namespace bgr {
namespace {

constexpr std::int32_t kManyPlyCorners = 128;  // from here on a polygon is reported
constexpr int kShiftTries = 10;

bool StartsWith(const std::string& line, std::string_view head) { return line.compare(0, head.size(), head) == 0; }

}  // namespace

bool PlyReader::Open(std::string_view path, std::string_view mode) {
  lines_.clear();
  next_ = 0;
  Stream file = WrapFileOpen(ctx_, path, mode);
  open_ = static_cast<bool>(file);
  for (std::string line; ReadLimitedLine(file.get(), line);) lines_.push_back(line);
  return open_;
}

bool PlyReader::NextLine(std::string& line) {
  if (next_ >= lines_.size()) return false;
  line = lines_[next_++];
  return true;
}

// The messages keep the words of the network that read the companion once.
bool PlyReader::ReadPly(TEXPOINTS& pts, TEXTURE& tex, std::int32_t shift) {
  tex.count = 0;
  std::string line;
  if (open_) {
    while (tex.count < kMaxPlyCorners) {
      if (!NextLine(line)) return false;
      int x = 0, z = 0;
      if (std::sscanf(line.c_str(), "POI %d %d", &x, &z) == 2) {
        std::int32_t before = pts.count();
        bool warned = false;
        for (int attempt = 0; attempt < kShiftTries; ++attempt) {
          std::int32_t index = pts.Add(x, 0, z, 0, nullptr);
          tex.verts[static_cast<std::size_t>(tex.count)].point = index;
          if (shift >= 0 || pts.count() > before) break;
          if (!warned) {
            warned = true;
            ctx_.Report(">WARNING:TaxiwayList::ReadPly() shifting points");
          }
          if (attempt % 2 == 0) {
            x = WrapAdd(x, 1);
          } else {
            z = WrapAdd(z, 1);
          }
        }
        ++tex.count;
      } else if (StartsWith(line, "PLY ")) {
        break;
      } else if (StartsWith(line, "EXI")) {
        return false;
      }
    }
  }
  if (tex.count >= kManyPlyCorners) ctx_.ReportOnce("TaxiwayList::ReadPly - too many points %d %ld");
  return tex.count > 0;
}

std::int32_t PlyReader::ReadLgt(std::int32_t* kind, std::int32_t* x1, std::int32_t* z1, std::int32_t* x2,
                                  std::int32_t* z2, std::int32_t* count) {
  std::string line;
  while (NextLine(line)) {
    int v[6] = {*kind, *x1, *z1, *x2, *z2, *count};
    int fields = std::sscanf(line.c_str(), "LGT %d %d %d %d %d %d", &v[0], &v[1], &v[2], &v[3], &v[4], &v[5]);
    if (fields == 6 || fields == 3) {
      *kind = v[0];
      *x1 = v[1];
      *z1 = v[2];
      *x2 = fields == 6 ? v[3] : v[1];
      *z2 = fields == 6 ? v[4] : v[2];
      *count = fields == 6 ? v[5] : 1;
      return 1;
    }
    if (StartsWith(line, "EXI")) return 0;
  }
  return 0;
}

}  // namespace bgr
