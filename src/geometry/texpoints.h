// The point and polygon records: every point of the system lives in a TEXPOINTS,
// every polygon is a TEXTURE of point numbers into one.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace bgr {

class RunContext;

struct TEXPOINT {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t z = 0;

  bool Equals(std::int32_t px, std::int32_t py, std::int32_t pz) const { return x == px && y == py && z == pz; }
  // The point at t on the quadratic Bezier curve from p0 over p1 to p2.
  void SetOnCurve(const TEXPOINT& p0, const TEXPOINT& p1, const TEXPOINT& p2, double t);
};

// A point table of fixed capacity that merges points within a tolerance. The
// merge search is served by indexes that give the same point as a walk from
// point 0 (the lowest number among all matches).
class TEXPOINTS {
 public:
  static constexpr std::int32_t kDefaultCapacity = 2000;

  TEXPOINTS() { SetSize(kDefaultCapacity); }
  explicit TEXPOINTS(std::int32_t capacity) { SetSize(capacity); }
  TEXPOINTS(const TEXPOINTS&) = delete;
  TEXPOINTS& operator=(const TEXPOINTS&) = delete;

  void SetSize(std::int32_t capacity);
  void Copy(const TEXPOINTS& other);
  // Table-full reports go to the run's report; a table of no run stays silent.
  void Attach(RunContext* ctx) {
    context_ = ctx;
    fullSaid_ = false;
  }
  // Number of the point within tolerance of (x, y, z), or a new point; 0 and a
  // report (once a run) when the table is full.
  std::int32_t Add(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance,
                   std::int32_t* counts = nullptr);

  std::int32_t base = 0;
  // The plain walk from point 0 that the index must agree with; -1 for no match.
  std::int32_t FindByWalk(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance) const;

  std::int32_t count() const { return count_; }
  std::int32_t capacity() const { return capacity_; }
  // Owners fill or empty the table directly within its capacity.
  void SetCount(std::int32_t n);
  // Any number below the capacity; one that no point ever reached reads as the origin.
  const TEXPOINT& operator[](std::int32_t i) const {
    return static_cast<std::size_t>(i) < points_.size() ? points_[static_cast<std::size_t>(i)] : kUnset;
  }
  // A changed point: the index follows it at once.
  void SetPoint(std::int32_t i, const TEXPOINT& p);
  // Free access to all points; the indexes are rebuilt by the next search.
  std::span<TEXPOINT> EditAll();
  std::span<const TEXPOINT> points() const { return {points_.data(), static_cast<std::size_t>(count_)}; }

 private:
  static constexpr TEXPOINT kUnset{};
  // Points up to number n - 1 in the vector; above the highest number ever
  // reached the table holds zeros, which need no memory.
  void Reach(std::int32_t n);
  static constexpr std::int32_t kIndexedTolerance = 64;

  // Two indexes, each built by the first search that needs it and kept up to
  // date from then on: most tables are searched only for exact matches.
  std::int32_t FindExact(std::int32_t x, std::int32_t y, std::int32_t z);
  std::int32_t FindByIndex(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance);
  void Unindex(std::int32_t i);
  void Index(std::int32_t i);

  // The exact index: an open-addressed table of point numbers, each with a
  // tag of its coordinates' hash, the lowest number of equal points in each
  // slot; a slot is 8 bytes, so that a full tile's index stays small.
  struct ExactSlot {
    std::int32_t point = -1;  // kFree, kGone or a point number
    std::uint32_t tag = 0;
  };
  struct ExactKey {
    std::uint64_t hash;  // its high bits give the home slot
    std::uint32_t tag;
  };
  static ExactKey KeyOf(std::int32_t x, std::int32_t y, std::int32_t z);
  std::size_t HomeOf(const ExactKey& key) const { return static_cast<std::size_t>(key.hash >> exactShift_); }
  std::size_t ExactSlotOf(const ExactKey& key, const TEXPOINT& p) const;  // its slot or the size
  static std::size_t TableSize(std::size_t least, int& shift);
  void BuildExact();
  void InsertExact(std::int32_t i);
  void UnindexExact(std::int32_t i);
  // The last answers of exact searches, by a hash of the place: the corners of
  // the polygons that a clipper emits one after the other are mostly the same
  // points. An answer stays true while points are only added; an answer of
  // none only while the table is full.
  struct RecentAnswer {
    TEXPOINT p;
    std::int32_t point = -1;  // kFree: no answer; kGone: none
  };
  static constexpr std::size_t kRecent = 64;
  // made by the first exact search: most tables of a small airport are never searched
  std::unique_ptr<std::array<RecentAnswer, kRecent>> recent_;
  bool recentValid_ = false;
  static std::size_t RecentOf(std::int32_t x, std::int32_t z);

  // The cell index (searches within a tolerance): an open-addressed table
  // whose slots hold the first point of a cell of 16 units on each axis (its
  // key is that point's cell); the cell's other points follow it through
  // next_ by rising number.
  static constexpr int kCellShift = 4;
  static std::uint64_t CellKey(std::uint32_t cx, std::uint32_t cy, std::uint32_t cz);
  static std::uint64_t CellOf(const TEXPOINT& p);
  static constexpr std::int32_t kFree = -1;
  static constexpr std::int32_t kGone = -2;  // a slot emptied: the probe goes on past it
  struct CellSlot {
    std::int32_t head = kFree;
  };
  // A bit per hash of the cells that were ever indexed since the last growth:
  // most searches for a new point end there, in a table an eighth of the
  // slots' size.
  static constexpr int kFilterBitsPerSlotLog2 = 2;
  std::size_t FilterBit(std::uint64_t key) const;
  std::size_t Home(std::uint64_t key) const;
  std::size_t FindSlot(std::uint64_t key) const;  // the slot of the cell, or the size for none
  void BuildCells();
  void InsertCell(std::int32_t i);

  RunContext* context_ = nullptr;
  bool fullSaid_ = false;  // this table's refusal went to the run's once-only report
  std::int32_t count_ = 0;
  std::int32_t capacity_ = 0;
  std::vector<TEXPOINT> points_;

  bool exactBuilt_ = false;
  std::vector<ExactSlot> exact_;
  int exactShift_ = 64;          // 64 less the bits of a slot number
  std::size_t exactTaken_ = 0;   // points and gone slots
  std::int32_t exactTwins_ = 0;  // points equal to a lower-numbered one

  bool cellsBuilt_ = false;
  std::vector<CellSlot> slots_;
  std::vector<std::uint64_t> filter_;
  int slotShift_ = 64;
  std::size_t slotsTaken_ = 0;  // cells and gone cells
  std::vector<std::int32_t> next_;
};

// True when each coordinate differs by at most tolerance, the differences taken
// in 32-bit arithmetic as on the source system (so they wrap).
bool WithinTolerance(const TEXPOINT& p, std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance);

struct TexVertex {
  std::int32_t point = 0;
};

using Triple = std::array<std::int32_t, 3>;

// One polygon (3 to 256 vertices) or one line (2), as point numbers into a TEXPOINTS.
class TEXTURE {
 public:
  static constexpr std::int32_t kMaxVerts = 256;
  static constexpr std::int32_t kFlatNormal = 32767;  // the normal's y of a flat polygon: 1

  TEXTURE() = default;
  TEXTURE(const TEXTURE&) = delete;
  TEXTURE& operator=(const TEXTURE&) = delete;

  void Copy(const TEXTURE& other);
  void Reverse();
  void SetFlat(std::int32_t vertexCount, std::int32_t attribute);
  void FreeTriangles();

  // Triangulation (see triangulate.cpp).
  const Triple* Triangle(const TEXPOINTS& points, std::int32_t index, std::int32_t fan);
  bool EarClip(const TEXPOINTS& points, std::int32_t direction, std::int32_t fan);
  bool MakeFan();
  bool IsConvex(const TEXPOINTS& points) const;
  bool IsReversed(const TEXPOINTS& points) const;
  std::int32_t VertexTurn(const TEXPOINTS& points, std::int32_t i) const;

  std::unique_ptr<Triple[]> triangles;
  std::int32_t triangleCount = 0;
  std::int32_t count = 0;
  std::int32_t normalX = 0;
  std::int32_t normalY = 0;
  std::int32_t normalZ = 0;
  std::int32_t attr = 0;
  std::array<TexVertex, kMaxVerts> verts{};
};

// Whether a ring of n corners runs against the clock in plan, as
// TEXTURE::IsReversed says: xs and zs hold the n corners and then the first
// two again.
bool RingIsReversed(std::span<const std::int32_t> xs, std::span<const std::int32_t> zs);

// Polygons of one tile and layer; read back with the one added last first.
class TextureList {
 public:
  void Attach(RunContext* ctx) { context_ = ctx; }
  std::int32_t Add(const TEXTURE& texture);
  const TEXTURE* First();
  const TEXTURE* Next();
  std::size_t size() const { return stored_; }

 private:
  // Each polygon is a record of its vertices' points followed by count,
  // normalX, normalY, normalZ, attr and the number of vertices stored, so the
  // list reads from its end; a flat polygon of no attribute is followed by the
  // number alone, marked. Records fill blocks that double in size and are
  // never moved: a tile's polygons cost their bytes once, in pages touched
  // only as they fill.
  static constexpr std::size_t kTrailer = 6;
  static constexpr std::int32_t kPlainRecord = 1 << 30;
  static constexpr std::size_t kFirstBlock = 256;
  static constexpr std::size_t kLargestBlock = std::size_t{1} << 18;
  struct Block {
    std::unique_ptr<std::int32_t[]> data;
    std::size_t size = 0, used = 0;
  };
  std::vector<Block> blocks_;
  std::size_t stored_ = 0;
  std::size_t cursorBlock_ = 0;  // the record that Next gives ends at used_ of this block
  std::size_t cursorEnd_ = 0;
  RunContext* context_ = nullptr;
  std::unique_ptr<TEXTURE> scratch_;  // made by the first read: most lists of a small airport stay empty
};

}  // namespace bgr
