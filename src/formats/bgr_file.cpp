#include "formats/bgr_file.h"

#include <algorithm>
#include <cstring>

#include "formats/little_endian.h"
#include "frame/text.h"
#include "geometry/texpoints.h"
#include "platform/platform.h"

namespace bgr {

std::int32_t EncodeWidth(std::int32_t width) { return std::clamp(width, 25, 500) * 128 / 50 + 16840; }

std::int32_t DecodeWidth(std::int32_t code) { return WrapMul(WrapSub(code, 16840), 50) / 128; }

bool BgrFile::OpenRead(std::string_view name) {
  Close();
  stream_ = WrapFileOpen(name, "rb");
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

long BgrFile::Tell() const { return stream_ ? std::ftell(stream_.get()) : 0; }

bool BgrFile::Seek(long position) { return stream_ && std::fseek(stream_.get(), position, SEEK_SET) == 0; }

bool BgrFile::WriteTag(std::string_view text) {
  if (!stream_) return false;
  std::size_t n = std::fwrite(text.data(), 1, text.size(), stream_.get());
  return n == text.size() && std::fputc(0, stream_.get()) != EOF;
}

bool BgrFile::ReadTag(std::string_view text) {
  std::FILE* f = stream_.get();
  if (!f) return false;
  long start = std::ftell(f);
  bool match = true;
  for (char want : text) {
    int c = platform::GetByte(f);
    if (c == EOF || static_cast<char>(c) != want) {
      match = false;
      break;
    }
  }
  if (match && platform::GetByte(f) == 0) return true;
  std::clearerr(f);
  std::fseek(f, start, SEEK_SET);
  return false;
}

bool BgrFile::WriteLong(std::int32_t value) { return WriteI32(stream_.get(), value); }

bool BgrFile::WriteRaw32(const void* word) {
  std::uint32_t u;
  std::memcpy(&u, word, 4);
  return WriteU32(stream_.get(), u);
}

bool BgrFile::WriteDouble(double value) { return WriteF64(stream_.get(), value); }
bool BgrFile::ReadLong(std::int32_t* value) { return ReadI32(stream_.get(), *value); }
bool BgrFile::ReadFloat(float* value) { return ReadF32(stream_.get(), *value); }
bool BgrFile::ReadDouble(double* value) { return ReadF64(stream_.get(), *value); }

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
