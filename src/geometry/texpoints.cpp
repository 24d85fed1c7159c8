#include "geometry/texpoints.h"

#include <algorithm>
#include <new>

#include "frame/int32_math.h"
#include "frame/run_context.h"

namespace bgr {
namespace {

// Size of a 32-bit wrapped difference, as a true magnitude (2^31 for the lowest long).
std::int64_t WrappedDistance(std::int32_t a, std::int32_t b) {
  std::int64_t d = WrapSub(a, b);
  return d < 0 ? -d : d;
}

}  // namespace

void TEXPOINT::SetOnCurve(const TEXPOINT& p0, const TEXPOINT& p1, const TEXPOINT& p2, double t) {
  double a = (1 - t) * (1 - t);
  double b = t * t;
  auto axis = [&](std::int32_t c0, std::int32_t c1, std::int32_t c2) {
    return TruncToLong(c0 * a + WrapMul(2, c1) * (1 - t) * t + c2 * b);
  };
  x = axis(p0.x, p1.x, p2.x);
  y = axis(p0.y, p1.y, p2.y);
  z = axis(p0.z, p1.z, p2.z);
}

bool WithinTolerance(const TEXPOINT& p, std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance) {
  return WrappedDistance(p.x, x) <= tolerance && WrappedDistance(p.y, y) <= tolerance &&
         WrappedDistance(p.z, z) <= tolerance;
}

void TEXPOINTS::SetSize(std::int32_t capacity) {
  if (capacity < 0) capacity = 0;
  base = 0;
  count_ = 0;
  points_.clear();
  capacity_ = capacity;
  fullSaid_ = false;
  exactBuilt_ = cellsBuilt_ = false;
  exact_.clear();
  slots_.clear();
}

// The table's room grows with its points: most tile tables of a small airport
// stay empty or hold a few.
void TEXPOINTS::Reach(std::int32_t n) {
  if (static_cast<std::size_t>(n) <= points_.size()) return;
  if (points_.capacity() < static_cast<std::size_t>(n)) {
    std::size_t room = std::max<std::size_t>({static_cast<std::size_t>(n), points_.capacity() * 2, 64});
    try {
      points_.reserve(std::min(room, static_cast<std::size_t>(capacity_)));
    } catch (const std::bad_alloc&) {
      ReportFatal("TEXPOINTS::SetSize() alloc failed %s %d %ld\n", "", 0, capacity_);
    }
  }
  points_.resize(static_cast<std::size_t>(n));
}

void TEXPOINTS::Copy(const TEXPOINTS& other) {
  base = other.base;
  count_ = std::min(other.count_, capacity_);
  Reach(count_);
  std::copy_n(other.points().begin(), count_, points_.begin());
  exactBuilt_ = cellsBuilt_ = false;
}

void TEXPOINTS::SetCount(std::int32_t n) {
  count_ = std::clamp(n, 0, capacity_);
  Reach(count_);
  exactBuilt_ = cellsBuilt_ = false;
}

void TEXPOINTS::SetPoint(std::int32_t i, const TEXPOINT& p) {
  bool indexed = i < count_;
  if (indexed) Unindex(i);
  Reach(i + 1);
  points_[static_cast<std::size_t>(i)] = p;
  if (indexed) Index(i);
}

std::span<TEXPOINT> TEXPOINTS::EditAll() {
  exactBuilt_ = cellsBuilt_ = false;
  Reach(capacity_);
  return {points_.data(), points_.size()};
}

void TEXPOINTS::Index(std::int32_t i) {
  if (exactBuilt_) InsertExact(i);
  if (cellsBuilt_) InsertCell(i);
}

void TEXPOINTS::Unindex(std::int32_t i) {
  if (exactBuilt_) UnindexExact(i);
  if (!cellsBuilt_) return;
  std::size_t slot = FindSlot(CellOf(points_[static_cast<std::size_t>(i)]));
  if (slot == slots_.size()) return;
  auto n = [this](std::int32_t at) -> std::int32_t& { return next_[static_cast<std::size_t>(at)]; };
  std::int32_t head = slots_[slot].head;
  if (head == i) {
    slots_[slot].head = n(i) == -1 ? kGone : n(i);
    return;
  }
  for (std::int32_t at = head; n(at) != -1; at = n(at)) {
    if (n(at) == i) {
      n(at) = n(i);
      return;
    }
  }
}

TEXPOINTS::ExactKey TEXPOINTS::KeyOf(std::int32_t x, std::int32_t y, std::int32_t z) {
  std::uint64_t key = (static_cast<std::uint64_t>(static_cast<std::uint32_t>(x)) << 32 | static_cast<std::uint32_t>(z)) ^
                      static_cast<std::uint64_t>(static_cast<std::uint32_t>(y)) * 0xC2B2AE3D27D4EB4Full;
  // the high bits of a product mix every bit of the key; two products, two hashes
  return {key * 0x9E3779B97F4A7C15ull, static_cast<std::uint32_t>((key * 0xD6E8FEB86659FD93ull) >> 32)};
}

std::size_t TEXPOINTS::ExactSlotOf(const ExactKey& key, const TEXPOINT& p) const {
  std::size_t mask = exact_.size() - 1;
  for (std::size_t at = HomeOf(key);; at = (at + 1) & mask) {
    const ExactSlot& slot = exact_[at];
    if (slot.point == kFree) return exact_.size();
    if (slot.point >= 0 && slot.tag == key.tag && points_[static_cast<std::size_t>(slot.point)].Equals(p.x, p.y, p.z))
      return at;
  }
}

// The slots of an open-addressed table for at least 'least' entries, a power of
// two from 64 on; 'shift' turns a 64-bit hash into a slot number.
std::size_t TEXPOINTS::TableSize(std::size_t least, int& shift) {
  std::size_t size = 64;
  shift = 58;
  while (size < least) {
    size *= 2;
    --shift;
  }
  return size;
}

// Grown four times over each time it is half full, so that a table filled a
// point at a time is built few times.
void TEXPOINTS::BuildExact() {
  std::size_t size = TableSize(static_cast<std::size_t>(count_) * 4, exactShift_);
  exact_.assign(size, ExactSlot{});
  exactTaken_ = 0;
  exactTwins_ = 0;
  exactBuilt_ = true;
  recentValid_ = false;
  for (std::int32_t i = 0; i < count_; ++i) InsertExact(i);
}

void TEXPOINTS::InsertExact(std::int32_t i) {
  if ((exactTaken_ + 1) * 2 > exact_.size()) {
    BuildExact();  // holds every point up to the count, i among them
    return;
  }
  const TEXPOINT& p = points_[static_cast<std::size_t>(i)];
  ExactKey key = KeyOf(p.x, p.y, p.z);
  std::size_t mask = exact_.size() - 1;
  std::size_t gone = exact_.size();
  std::size_t at = HomeOf(key);
  for (;; at = (at + 1) & mask) {
    ExactSlot& slot = exact_[at];
    if (slot.point == kFree) break;
    if (slot.point == kGone) {
      if (gone == exact_.size()) gone = at;
    } else if (slot.tag == key.tag && points_[static_cast<std::size_t>(slot.point)].Equals(p.x, p.y, p.z)) {
      slot.point = std::min(slot.point, i);
      ++exactTwins_;
      return;
    }
  }
  if (gone != exact_.size()) {
    at = gone;
  } else {
    ++exactTaken_;
  }
  exact_[at] = {i, key.tag};
}

// Before the point changes: its slot is found by what it holds now.
void TEXPOINTS::UnindexExact(std::int32_t i) {
  recentValid_ = false;
  const TEXPOINT& p = points_[static_cast<std::size_t>(i)];
  std::size_t at = ExactSlotOf(KeyOf(p.x, p.y, p.z), p);
  if (at == exact_.size()) return;
  ExactSlot& slot = exact_[at];
  if (slot.point != i) {
    --exactTwins_;
    return;
  }
  slot.point = kGone;
  if (exactTwins_ == 0) return;
  // the next equal point, if any, takes the slot: a walk, in a table that has equal points
  for (std::int32_t j = i + 1; j < count_; ++j) {
    if (points_[static_cast<std::size_t>(j)].Equals(p.x, p.y, p.z)) {
      slot.point = j;
      --exactTwins_;
      return;
    }
  }
}

std::size_t TEXPOINTS::RecentOf(std::int32_t x, std::int32_t z) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1u ^ static_cast<std::uint32_t>(z) * 0x85EBCA77u;
  return (h ^ h >> 15) & (kRecent - 1);
}

std::int32_t TEXPOINTS::FindExact(std::int32_t x, std::int32_t y, std::int32_t z) {
  if (!exactBuilt_) BuildExact();
  if (!recentValid_) {
    if (!recent_) recent_ = std::make_unique<std::array<RecentAnswer, kRecent>>();
    recent_->fill(RecentAnswer{});
    recentValid_ = true;
  }
  RecentAnswer& recent = (*recent_)[RecentOf(x, z)];
  if (recent.point != kFree && recent.p.Equals(x, y, z)) return std::max(recent.point, -1);
  TEXPOINT p{x, y, z};
  std::size_t at = ExactSlotOf(KeyOf(x, y, z), p);
  std::int32_t found = at == exact_.size() ? -1 : exact_[at].point;
  // a point not found is added next under the count, unless the table is full
  recent = {p, found >= 0 ? found : count_ < capacity_ ? count_ : kGone};
  return found;
}

std::uint64_t TEXPOINTS::CellKey(std::uint32_t cx, std::uint32_t cy, std::uint32_t cz) {
  // 28 significant bits per axis; mixing keeps the hash map's buckets even
  return (static_cast<std::uint64_t>(cx) << 36 | static_cast<std::uint64_t>(cz) << 8) ^
         static_cast<std::uint64_t>(cy) * 0x9E3779B97F4A7C15ull;
}

std::uint64_t TEXPOINTS::CellOf(const TEXPOINT& p) {
  return CellKey(static_cast<std::uint32_t>(p.x) >> kCellShift, static_cast<std::uint32_t>(p.y) >> kCellShift,
                 static_cast<std::uint32_t>(p.z) >> kCellShift);
}

// The high bits of the product mix every bit of the key; two more of them
// pick the cell's bit in the filter.
std::size_t TEXPOINTS::FilterBit(std::uint64_t key) const {
  return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> (slotShift_ - kFilterBitsPerSlotLog2));
}

std::size_t TEXPOINTS::Home(std::uint64_t key) const { return FilterBit(key) >> kFilterBitsPerSlotLog2; }

std::size_t TEXPOINTS::FindSlot(std::uint64_t key) const {
  std::size_t bit = FilterBit(key);
  if (!(filter_[bit / 64] >> (bit % 64) & 1)) return slots_.size();
  std::size_t mask = slots_.size() - 1;
  for (std::size_t at = bit >> kFilterBitsPerSlotLog2;; at = (at + 1) & mask) {
    const CellSlot& slot = slots_[at];
    if (slot.head == kFree) return slots_.size();
    if (slot.head != kGone && CellOf(points_[static_cast<std::size_t>(slot.head)]) == key) return at;
  }
}

void TEXPOINTS::BuildCells() {
  std::size_t size = TableSize(static_cast<std::size_t>(count_) * 2, slotShift_);
  slots_.assign(size, CellSlot{});
  filter_.assign((size << kFilterBitsPerSlotLog2) / 64, 0);
  slotsTaken_ = 0;
  cellsBuilt_ = true;
  for (std::int32_t i = 0; i < count_; ++i) InsertCell(i);
}

// Into its cell's chain, in order of number.
void TEXPOINTS::InsertCell(std::int32_t i) {
  if (static_cast<std::size_t>(i) >= next_.size()) next_.resize(std::max<std::size_t>(i + 1, next_.size() * 2), -1);
  if ((slotsTaken_ + 1) * 2 > slots_.size()) {
    BuildCells();  // indexes every point up to the count, i among them
    return;
  }
  std::uint64_t key = CellOf(points_[static_cast<std::size_t>(i)]);
  auto n = [this](std::int32_t at) -> std::int32_t& { return next_[static_cast<std::size_t>(at)]; };
  std::size_t slot = FindSlot(key);
  if (slot == slots_.size()) {
    std::size_t mask = slots_.size() - 1;
    for (slot = Home(key); slots_[slot].head >= 0; slot = (slot + 1) & mask) {
    }
    if (slots_[slot].head == kFree) ++slotsTaken_;
    slots_[slot] = {i};
    std::size_t bit = FilterBit(key);
    filter_[bit / 64] |= std::uint64_t{1} << (bit % 64);
    n(i) = -1;
    return;
  }
  std::int32_t head = slots_[slot].head;
  if (i < head) {
    n(i) = head;
    slots_[slot].head = i;
    return;
  }
  std::int32_t at = head;
  while (n(at) != -1 && n(at) < i) at = n(at);
  n(i) = n(at);
  n(at) = i;
}

std::int32_t TEXPOINTS::FindByWalk(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance) const {
  for (std::int32_t i = 0; i < count_; ++i) {
    if (WithinTolerance(points_[static_cast<std::size_t>(i)], x, y, z, tolerance)) return i;
  }
  return -1;
}

std::int32_t TEXPOINTS::FindByIndex(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance) {
  if (!cellsBuilt_) BuildCells();
  // The cells that hold [v - tolerance, v + tolerance] on each axis; the range
  // wraps around as the 32-bit differences do.
  auto first = [&](std::int32_t v) { return static_cast<std::uint32_t>(WrapSub(v, tolerance)) >> kCellShift; };
  auto span = [&](std::int32_t v) {
    return ((static_cast<std::uint32_t>(WrapAdd(v, tolerance)) >> kCellShift) - first(v)) & 0x0FFFFFFFu;
  };
  std::uint32_t x0 = first(x), y0 = first(y), z0 = first(z);
  std::uint32_t nx = span(x), ny = span(y), nz = span(z);
  std::int32_t best = -1;
  for (std::uint32_t i = 0; i <= nx; ++i) {
    for (std::uint32_t j = 0; j <= ny; ++j) {
      for (std::uint32_t k = 0; k <= nz; ++k) {
        std::size_t slot = FindSlot(CellKey((x0 + i) & 0x0FFFFFFFu, (y0 + j) & 0x0FFFFFFFu, (z0 + k) & 0x0FFFFFFFu));
        if (slot == slots_.size()) continue;
        for (std::int32_t n = slots_[slot].head; n != -1; n = next_[static_cast<std::size_t>(n)]) {
          if (best != -1 && n >= best) break;
          if (WithinTolerance(points_[static_cast<std::size_t>(n)], x, y, z, tolerance)) {
            best = n;
            break;
          }
        }
      }
    }
  }
  return best;
}

std::int32_t TEXPOINTS::Add(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t tolerance,
                            std::int32_t* counts) {
  if (tolerance >= 0) {
    // a tolerance of 0 asks for the very point, which the exact index holds
    std::int32_t found = tolerance == 0                   ? FindExact(x, y, z)
                         : tolerance <= kIndexedTolerance ? FindByIndex(x, y, z, tolerance)
                                                          : FindByWalk(x, y, z, tolerance);
    if (found >= 0) {
      if (counts) counts[found] = WrapAdd(counts[found], 1);
      return found;
    }
  }
  if (count_ >= capacity_) {
    // a full tile table is asked hundreds of thousands of times: the run's
    // once-only set is asked once per table
    if (context_ && !fullSaid_) context_->ReportOnce("TEXPOINTS::Add() table full %s%d %ld", "", 0, count_);
    fullSaid_ = true;
    return 0;
  }
  std::int32_t number = count_++;
  Reach(number + 1);
  points_[static_cast<std::size_t>(number)] = TEXPOINT{x, y, z};
  Index(number);
  if (counts) counts[number] = 1;
  return number;
}

void TEXTURE::Copy(const TEXTURE& other) {
  count = other.count;
  normalX = other.normalX;
  normalY = other.normalY;
  normalZ = other.normalZ;
  attr = other.attr;
  std::int32_t n = std::clamp(count, 0, kMaxVerts);
  std::copy_n(other.verts.begin(), n, verts.begin());
}

void TEXTURE::Reverse() {
  std::int32_t n = std::clamp(count, 0, kMaxVerts);
  for (std::int32_t i = 0; i < n / 2; ++i) std::swap(verts[i], verts[n - 1 - i]);
}

void TEXTURE::SetFlat(std::int32_t vertexCount, std::int32_t attribute) {
  normalX = 0;
  normalY = kFlatNormal;
  normalZ = 0;
  count = vertexCount;
  attr = attribute;
}

void TEXTURE::FreeTriangles() { triangles.reset(); }

std::int32_t TextureList::Add(const TEXTURE& texture) {
  std::int32_t n = std::clamp(texture.count, 0, TEXTURE::kMaxVerts);
  // a flat polygon of no attribute, as the clipper makes them, needs no more than its length
  bool plain = texture.count == n && texture.normalX == 0 && texture.normalY == TEXTURE::kFlatNormal &&
               texture.normalZ == 0 && texture.attr == 0;
  std::size_t need = static_cast<std::size_t>(n) + (plain ? 1 : kTrailer);
  if (blocks_.empty() || blocks_.back().size - blocks_.back().used < need) {
    std::size_t size = blocks_.empty() ? kFirstBlock : std::min(blocks_.back().size * 2, kLargestBlock);
    size = std::max(size, need);
    try {
      blocks_.push_back({std::make_unique_for_overwrite<std::int32_t[]>(size), size, 0});
    } catch (const std::bad_alloc&) {
      if (context_)
        context_->ReportOnce("BitAndTex::Add(TEXTURE) alloc failed %d %ld", "", 0,
                             static_cast<std::int32_t>(n * sizeof(TexVertex)));
      return 0;
    }
  }
  Block& block = blocks_.back();
  std::int32_t* at = block.data.get() + block.used;
  for (std::int32_t v = 0; v < n; ++v) *at++ = texture.verts[static_cast<std::size_t>(v)].point;
  if (plain) {
    *at++ = n | kPlainRecord;
  } else {
    *at++ = texture.count;
    *at++ = texture.normalX;
    *at++ = texture.normalY;
    *at++ = texture.normalZ;
    *at++ = texture.attr;
    *at++ = n;
  }
  block.used += need;
  ++stored_;
  return 1;
}

const TEXTURE* TextureList::First() {
  cursorBlock_ = blocks_.size();
  cursorEnd_ = 0;
  return Next();
}

const TEXTURE* TextureList::Next() {
  while (cursorEnd_ == 0) {
    if (cursorBlock_ == 0) return nullptr;
    cursorEnd_ = blocks_[--cursorBlock_].used;
  }
  if (!scratch_) scratch_ = std::make_unique<TEXTURE>();
  TEXTURE& scratch = *scratch_;
  const std::int32_t* end = blocks_[cursorBlock_].data.get() + cursorEnd_;
  bool plain = (end[-1] & kPlainRecord) != 0;
  std::int32_t n = end[-1] & ~kPlainRecord;
  std::size_t trailer = plain ? 1 : kTrailer;
  const std::int32_t* record = end - trailer - static_cast<std::size_t>(n);
  for (std::int32_t v = 0; v < n; ++v) scratch.verts[static_cast<std::size_t>(v)].point = record[v];
  if (plain) {
    scratch.count = n;
    scratch.normalX = 0;
    scratch.normalY = TEXTURE::kFlatNormal;
    scratch.normalZ = 0;
    scratch.attr = 0;
  } else {
    scratch.count = end[-6];
    scratch.normalX = end[-5];
    scratch.normalY = end[-4];
    scratch.normalZ = end[-3];
    scratch.attr = end[-2];
  }
  cursorEnd_ -= trailer + static_cast<std::size_t>(n);
  return &scratch;
}

}  // namespace bgr
