#include "formats/bgr_file.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "formats/little_endian.h"
#include "frame/text.h"
#include "geometry/texpoints.h"

namespace bgr {

std::int32_t EncodeWidth(std::int32_t width) { return std::clamp(width, 25, 500) * 128 / 50 + 16840; }

std::int32_t DecodeWidth(std::int32_t code) { return WrapMul(WrapSub(code, 16840), 50) / 128; }

bool BgrFile::OpenRead(std::string_view name) {
  Close();
  stream_ = WrapFileOpen(name, "rb");
  window_.resize(65536);
  ResetWindow(0);
  if (!stream_) return false;
  return ReadTag("<bgno>");
}

bool BgrFile::OpenWrite(std::string_view name) {
  Close();
  writing_ = 1;
  stream_ = WrapFileOpen(name, "wb");
  WriteTag("<bgno>");
  return static_cast<bool>(stream_);
}

bool BgrFile::Close() {
  if (!stream_) {
    writing_ = 0;
    return true;
  }
  if (writing_) WriteTag("<endo>");
  WrapFileClose(stream_);
  writing_ = 0;
  return true;
}

void BgrFile::ResetWindow(long start) {
  windowStart_ = start;
  windowPos_ = 0;
  windowLen_ = 0;
}

bool BgrFile::Refill() {
  if (!stream_ || writing_) return false;
  windowStart_ += static_cast<long>(windowLen_);
  windowPos_ = 0;
  windowLen_ = std::fread(window_.data(), 1, window_.size(), stream_.get());
  return windowLen_ > 0;
}

int BgrFile::GetByte() {
  if (windowPos_ == windowLen_ && !Refill()) return EOF;
  return window_[windowPos_++];
}

bool BgrFile::ReadBytes(void* out, std::size_t n) {
  auto* bytes = static_cast<unsigned char*>(out);
  for (std::size_t i = 0; i < n; ++i) {
    int c = GetByte();
    if (c == EOF) return false;
    bytes[i] = static_cast<unsigned char>(c);
  }
  return true;
}

long BgrFile::Tell() const {
  if (!stream_) return 0;
  if (writing_) return std::ftell(stream_.get());
  return windowStart_ + static_cast<long>(windowPos_);
}

bool BgrFile::Seek(long position) {
  if (!stream_ || position < 0) return false;
  if (writing_) return std::fseek(stream_.get(), position, SEEK_SET) == 0;
  if (position >= windowStart_ && position <= windowStart_ + static_cast<long>(windowLen_)) {
    windowPos_ = static_cast<std::size_t>(position - windowStart_);
    return true;
  }
  std::clearerr(stream_.get());
  if (std::fseek(stream_.get(), position, SEEK_SET) != 0) return false;
  ResetWindow(position);
  return true;
}

long BgrFile::Length() {
  if (!stream_) return 0;
  std::FILE* f = stream_.get();
  long here = std::ftell(f);
  std::fseek(f, 0, SEEK_END);
  long length = std::ftell(f);
  std::fseek(f, here, SEEK_SET);
  return length;
}

bool BgrFile::WriteTag(std::string_view text) {
  if (!stream_) return false;
  std::size_t n = std::fwrite(text.data(), 1, text.size(), stream_.get());
  return n == text.size() && std::fputc(0, stream_.get()) != EOF;
}

bool BgrFile::ReadTag(std::string_view text) {
  if (!stream_ || writing_) return false;
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

bool BgrFile::WriteLong(std::int32_t value) { return WriteI32(stream_.get(), value); }

bool BgrFile::WriteRaw32(const void* word) {
  std::uint32_t u;
  std::memcpy(&u, word, 4);
  return WriteU32(stream_.get(), u);
}

bool BgrFile::WriteDouble(double value) { return WriteF64(stream_.get(), value); }
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

bool BgrFile::WriteOrigin(double latitude, double longitude, double third) {
  return WriteTag("<orgn>") && WriteDouble(latitude) && WriteDouble(longitude) && WriteDouble(third) && WriteLong(1);
}

bool BgrFile::ReadOrigin(double* latitude, double* longitude, double* third) {
  if (!ReadTag("<orgn>")) return false;
  std::int32_t one = 0;
  bool ok = ReadDouble(latitude) & ReadDouble(longitude) & ReadDouble(third);
  return ReadLong(&one) && ok;
}

bool BgrFile::WriteNode(double x, double y, double z, bool flowFirst, bool flowSecond) {
  bool ok = WriteTag("<node>") && WriteTag("<bgno>") && WriteTag("<vloc>") && WriteDouble(x) && WriteDouble(y) &&
            WriteDouble(z);
  if (flowFirst) ok = ok && WriteTag("<flow>") && WriteLong(1);
  if (flowSecond) ok = ok && WriteTag("<flow>") && WriteLong(2);
  return ok && WriteTag("<endo>");
}

bool BgrFile::WriteNodes(const TEXPOINTS& points, std::int32_t flowFirst, std::int32_t flowSecond) {
  bool ok = true;
  for (std::int32_t i = 0; i < points.count(); ++i) {
    const TEXPOINT& p = points[i];
    ok = WriteNode(p.x, p.y, p.z, i == flowFirst, i == flowSecond) && ok;
  }
  return ok;
}

bool BgrFile::ReadNode(double* x, double* y, double* z) {
  if (!ReadTag("<node>") || !ReadTag("<bgno>") || !ReadTag("<vloc>")) return false;
  ReadDouble(x);
  ReadDouble(y);
  ReadDouble(z);
  std::int32_t mark;
  for (int i = 0; i < 2; ++i) {
    if (ReadTag("<flow>")) ReadLong(&mark);
  }
  ReadTag("<endo>");
  return true;
}

bool BgrFile::WriteEdge(std::int32_t from, std::int32_t to, std::int32_t width, std::int32_t type,
                        std::int32_t packed, std::int32_t flags) {
  if (type != 0 && type != 1) return false;
  std::int32_t code = packed == 0 ? EncodeWidth(width) : packed;
  auto word = static_cast<std::int32_t>(static_cast<std::uint32_t>(code) << 16 |
                                        (static_cast<std::uint32_t>(flags) & 0xFFFFu));
  return WriteTag("<edge>") && WriteLong(from) && WriteLong(to) && WriteTag("<bgno>") && WriteTag("<thck>") &&
         WriteLong(word) && WriteTag("<type>") && WriteLong(type) && WriteTag("<endo>");
}

bool BgrFile::ReadEdge(std::int32_t* from, std::int32_t* to, std::int32_t* width, std::int32_t* type,
                       std::int32_t* packed, std::int32_t* flags) {
  if (!ReadTag("<edge>")) return false;
  ReadLong(from);
  ReadLong(to);
  ReadTag("<bgno>");
  ReadTag("<thck>");
  std::int32_t word = 0;
  if (ReadLong(&word)) {
    *packed = word / 65536;
    *flags = word & 0xFFFF;
    *width = DecodeWidth(*packed);
  }
  ReadTag("<type>");
  ReadLong(type);
  ReadTag("<nply>");
  ReadTag("<endo>");
  return true;
}

}  // namespace bgr
