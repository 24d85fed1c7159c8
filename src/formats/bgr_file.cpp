#include "formats/bgr_file.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "formats/little_endian.h"
#include "frame/int32_math.h"
#include "frame/run_context.h"
#include "geometry/texpoints.h"
#include "platform/platform.h"

namespace bgr {

namespace {
constexpr std::size_t kWindowBytes = 65536;
// A written file is built in memory and goes to the disk in one write at its
// close; only one larger than this goes in pieces of this size, which keeps
// the memory of the largest tile files down.
constexpr std::size_t kWriteBufferBytes = std::size_t{1} << 20;
constexpr std::size_t kFirstWriteBuffer = 65536;
}

std::int32_t EncodeWidth(std::int32_t width) {
  return std::clamp(width, kMinWidth, kMaxWidth) * kWidthCodeSteps / kWidthCodeFeet + kWidthCodeBase;
}

std::int32_t DecodeWidth(std::int32_t code) {
  return WrapMul(WrapSub(code, kWidthCodeBase), kWidthCodeFeet) / kWidthCodeSteps;
}

bool BgrFile::OpenRead(RunContext& ctx, std::string_view name) {
  Abandon();
  context_ = &ctx;
  name_ = name;
  stream_ = WrapFileOpen(ctx, name, "rb");
  window_.resize(kWindowBytes);
  ResetWindow(0);
  if (!stream_) return false;
  return ReadTag("<bgno>");
}

bool BgrFile::AttachRead(RunContext& ctx, Stream stream, std::string_view name) {
  Abandon();
  context_ = &ctx;
  name_ = name;
  stream_ = std::move(stream);
  window_.resize(kWindowBytes);
  ResetWindow(0);
  if (!stream_ || std::fseek(stream_.get(), 0, SEEK_SET) != 0) return false;
  return ReadTag("<bgno>");
}

bool BgrFile::OpenReplace(RunContext& ctx, std::string_view name) { return OpenOutput(ctx, name, false); }

bool BgrFile::OpenTemporary(RunContext& ctx, std::string_view name) { return OpenOutput(ctx, name, true); }

bool BgrFile::OpenOutput(RunContext& ctx, std::string_view name, bool temporary) {
  Abandon();
  context_ = &ctx;
  name_ = name;
  writing_ = 1;
  if (temporary) {
    output_.OpenTemporary(ctx, name);
  } else {
    output_.Open(ctx, name);
  }
  Unbuffer();
  WriteTag("<bgno>");
  return static_cast<bool>(output_);
}

// The writer keeps its own buffer: the stream's would only split its writes.
void BgrFile::Unbuffer() {
  if (file()) std::setvbuf(file(), nullptr, _IONBF, 0);
}

bool BgrFile::Close() {
  if (!IsOpen()) {
    bool openFailed = writing_ != 0;
    writing_ = 0;
    return !openFailed;
  }
  bool wasWriting = writing_ != 0;
  if (wasWriting) WriteTag("<endo>");
  bool flushed = !wasWriting || FlushPending();
  int flushError = writeError_;
  writing_ = 0;
  writeFailed_ = false;
  writeError_ = 0;
  std::string failure;
  if (!flushed) {
    Drop();
    failure = std::strerror(flushError != 0 ? flushError : EIO);
  } else if (output_) {
    failure = output_.Commit();
  } else if (!stream_.Close()) {
    failure = stream_.error();
  }
  if (failure.empty() || !wasWriting) return true;
  context_->Report("BgrFile cannot write '%s': %s", name_, 0, 0, failure);
  return false;
}

void BgrFile::Abandon() {
  pendingSize_ = 0;
  pendingStart_ = 0;
  cursor_ = 0;
  writeFailed_ = false;
  Drop();
  writing_ = 0;
}

void BgrFile::Drop() {
  if (stream_) std::fclose(stream_.release());
  output_.Drop();
}

void BgrFile::ResetWindow(long start) {
  windowStart_ = start;
  windowPos_ = 0;
  windowLen_ = 0;
}

bool BgrFile::Refill() {
  if (!IsOpen() || writing_) return false;
  windowStart_ += static_cast<long>(windowLen_);
  windowPos_ = 0;
  windowLen_ = std::fread(window_.data(), 1, window_.size(), file());
  return windowLen_ > 0;
}

int BgrFile::GetByte() {
  if (windowPos_ == windowLen_ && !Refill()) return EOF;
  return window_[windowPos_++];
}

bool BgrFile::ReadBytes(void* out, std::size_t n) {
  // a value inside the window is copied at once: byte by byte, each byte went
  // through memory twice, which made the load of a network a fifth slower
  if (n <= windowLen_ - windowPos_) {
    std::memcpy(out, window_.data() + windowPos_, n);
    windowPos_ += n;
    return true;
  }
  auto* bytes = static_cast<unsigned char*>(out);
  for (std::size_t i = 0; i < n; ++i) {
    int c = GetByte();
    if (c == EOF) return false;
    bytes[i] = static_cast<unsigned char>(c);
  }
  return true;
}

long BgrFile::Tell() const {
  if (!IsOpen()) return 0;
  if (writing_) return pendingStart_ + static_cast<long>(cursor_);
  return windowStart_ + static_cast<long>(windowPos_);
}

bool BgrFile::Seek(long position) {
  if (!IsOpen() || position < 0) return false;
  if (writing_) {
    // a place still in memory is written there; one already on the disk is sought
    if (position >= pendingStart_ && position <= pendingStart_ + static_cast<long>(pendingSize_)) {
      cursor_ = static_cast<std::size_t>(position - pendingStart_);
      return true;
    }
    if (!FlushPending() || std::fseek(file(), position, SEEK_SET) != 0) return false;
    pendingStart_ = position;
    return true;
  }
  if (position >= windowStart_ && position <= windowStart_ + static_cast<long>(windowLen_)) {
    windowPos_ = static_cast<std::size_t>(position - windowStart_);
    return true;
  }
  std::clearerr(file());
  if (std::fseek(file(), position, SEEK_SET) != 0) return false;
  ResetWindow(position);
  return true;
}

long BgrFile::Length() {
  if (!IsOpen()) return 0;
  if (writing_) FlushPending();
  std::FILE* f = file();
  long here = writing_ ? pendingStart_ : std::ftell(f);
  std::fseek(f, 0, SEEK_END);
  long length = std::ftell(f);
  std::fseek(f, here, SEEK_SET);
  return length;
}

bool BgrFile::WriteBytes(const void* data, std::size_t n) {
  if (!IsOpen() || writeFailed_) return false;
  if (cursor_ + n > pendingRoom_ && !MakeRoom(n)) return false;
  std::memcpy(pending_.get() + cursor_, data, n);
  cursor_ += n;
  pendingSize_ = std::max(pendingSize_, cursor_);
  return true;
}

// Room for n more bytes at the cursor: the buffer goes to the disk when it has
// reached its full size and is written at its end, else it grows.
bool BgrFile::MakeRoom(std::size_t n) {
  if (pendingRoom_ >= kWriteBufferBytes && cursor_ == pendingSize_) {
    if (!FlushPending()) return false;
    platform::StartWriteback(file());  // the disk starts on a large file while the rest is made
    if (n <= pendingRoom_) return true;
  }
  // realloc: a large buffer's pages move to their new place rather than being copied
  std::size_t room = std::max({pendingRoom_ * 2, kFirstWriteBuffer, cursor_ + n});
  void* grown = std::realloc(pending_.get(), room);
  if (!grown) {
    writeFailed_ = true;
    writeError_ = ENOMEM;
    return false;
  }
  (void)pending_.release();
  pending_.reset(static_cast<unsigned char*>(grown));
  pendingRoom_ = room;
  return true;
}

bool BgrFile::FlushPending() {
  if (pendingSize_ != 0 && IsOpen() && !writeFailed_) {
    errno = 0;
    writeFailed_ = std::fwrite(pending_.get(), 1, pendingSize_, file()) != pendingSize_;
    if (writeFailed_) writeError_ = errno;
  }
  pendingStart_ += static_cast<long>(pendingSize_);
  pendingSize_ = 0;
  cursor_ = 0;
  return !writeFailed_;
}

bool BgrFile::WriteTag(std::string_view text) {
  static constexpr char kZero = 0;
  return WriteBytes(text.data(), text.size()) && WriteBytes(&kZero, 1);
}

bool BgrFile::ReadTag(std::string_view text) {
  if (!IsOpen() || writing_) return false;
  long start = Tell();
  bool match = true;
  for (char want : text) {
    int c = GetByte();
    if (c == EOF || static_cast<char>(c) != want) {
      match = false;
      break;
    }
  }
  if (match && GetByte() == 0) return true;
  Seek(start);
  return false;
}

bool BgrFile::WriteLong(std::int32_t value) {
  unsigned char b[4];
  EncodeU32(static_cast<std::uint32_t>(value), b);
  return WriteBytes(b, 4);
}

bool BgrFile::WriteLongs(const std::int32_t* values, std::size_t n) {
  if (!IsOpen() || writeFailed_) return false;
  if (cursor_ + 4 * n > pendingRoom_ && !MakeRoom(4 * n)) return false;
  unsigned char* at = pending_.get() + cursor_;
  for (std::size_t i = 0; i < n; ++i, at += 4) EncodeU32(static_cast<std::uint32_t>(values[i]), at);
  cursor_ += 4 * n;
  pendingSize_ = std::max(pendingSize_, cursor_);
  return true;
}

bool BgrFile::WriteRaw32(const void* word) {
  std::uint32_t u;
  std::memcpy(&u, word, 4);
  unsigned char b[4];
  EncodeU32(u, b);
  return WriteBytes(b, 4);
}

bool BgrFile::WriteDouble(double value) {
  auto u = std::bit_cast<std::uint64_t>(value);
  unsigned char b[8];
  EncodeU32(static_cast<std::uint32_t>(u), b);
  EncodeU32(static_cast<std::uint32_t>(u >> 32), b + 4);
  return WriteBytes(b, 8);
}
bool BgrFile::ReadLong(std::int32_t* value) {
  unsigned char b[4];
  if (writing_ || !ReadBytes(b, 4)) return false;
  *value = static_cast<std::int32_t>(DecodeU32(b));
  return true;
}

bool BgrFile::ReadFloat(float* value) {
  unsigned char b[4];
  if (writing_ || !ReadBytes(b, 4)) return false;
  *value = std::bit_cast<float>(DecodeU32(b));
  return true;
}

bool BgrFile::ReadDouble(double* value) {
  unsigned char b[8];
  if (writing_ || !ReadBytes(b, 8)) return false;
  *value = std::bit_cast<double>(DecodeU64(b));
  return true;
}

bool BgrFile::WriteOrigin(const OriginRecord& o) {
  return WriteTag("<orgn>") && WriteDouble(o.latitude) && WriteDouble(o.longitude) && WriteDouble(o.third) &&
         WriteLong(1);
}

bool BgrFile::ReadOrigin(OriginRecord& o) {
  if (!ReadTag("<orgn>")) return false;
  std::int32_t one = 0;
  ReadDouble(&o.latitude) && ReadDouble(&o.longitude) && ReadDouble(&o.third) && ReadLong(&one);
  return true;
}

bool BgrFile::WriteNode(const NodeRecord& n, bool flowFirst, bool flowSecond) {
  bool ok = WriteTag("<node>") && WriteTag("<bgno>") && WriteTag("<vloc>") && WriteDouble(n.x) && WriteDouble(n.y) &&
            WriteDouble(n.z);
  if (flowFirst) ok = ok && WriteTag("<flow>") && WriteLong(1);
  if (flowSecond) ok = ok && WriteTag("<flow>") && WriteLong(2);
  return ok && WriteTag("<endo>");
}

bool BgrFile::WriteNodes(const TEXPOINTS& points, std::int32_t flowFirst, std::int32_t flowSecond) {
  bool ok = true;
  for (std::int32_t i = 0; i < points.count(); ++i) {
    const TEXPOINT& p = points[i];
    ok = WriteNode({double(p.x), double(p.y), double(p.z)}, i == flowFirst, i == flowSecond) && ok;
  }
  return ok;
}

bool BgrFile::ReadNode(NodeRecord& n) {
  if (!ReadTag("<node>") || !ReadTag("<bgno>") || !ReadTag("<vloc>")) return false;
  ReadDouble(&n.x) && ReadDouble(&n.y) && ReadDouble(&n.z);
  std::int32_t mark;
  for (int i = 0; i < 2; ++i) {
    if (ReadTag("<flow>")) ReadLong(&mark);
  }
  ReadTag("<endo>");
  return true;
}

bool BgrFile::WriteEdge(const EdgeRecord& e) {
  if (e.type != 0 && e.type != 1) return false;
  std::int32_t code = e.packed == 0 ? EncodeWidth(e.width) : e.packed;
  auto word = static_cast<std::int32_t>(static_cast<std::uint32_t>(code) << 16 |
                                        (static_cast<std::uint32_t>(e.flags) & 0xFFFFu));
  return WriteTag("<edge>") && WriteLong(e.from) && WriteLong(e.to) && WriteTag("<bgno>") && WriteTag("<thck>") &&
         WriteLong(word) && WriteTag("<type>") && WriteLong(e.type) && WriteTag("<endo>");
}

bool BgrFile::ReadEdge(EdgeRecord& e) {
  if (!ReadTag("<edge>")) return false;
  ReadLong(&e.from) && ReadLong(&e.to);
  ReadTag("<bgno>");
  ReadTag("<thck>");
  std::int32_t word = 0;
  if (ReadLong(&word)) {
    e.packed = word / 65536;  // the signed division keeps a negative code
    e.flags = word & 0xFFFF;
    e.width = DecodeWidth(e.packed);
  }
  ReadTag("<type>");
  ReadLong(&e.type);
  ReadTag("<nply>");
  ReadTag("<endo>");
  return true;
}

}  // namespace bgr
