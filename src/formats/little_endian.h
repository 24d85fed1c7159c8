// Words on file are little-endian whatever the host.
#pragma once

#include <bit>
#include <cstdint>
#include <cstdio>

namespace bgr {

inline std::uint32_t DecodeU32(const unsigned char* b) {
  return static_cast<std::uint32_t>(b[0]) | static_cast<std::uint32_t>(b[1]) << 8 |
         static_cast<std::uint32_t>(b[2]) << 16 | static_cast<std::uint32_t>(b[3]) << 24;
}

inline void EncodeU32(std::uint32_t v, unsigned char* b) {
  for (int i = 0; i < 4; ++i) b[i] = static_cast<unsigned char>(v >> (8 * i));
}

inline void EncodeU64(std::uint64_t v, unsigned char* b) {
  for (int i = 0; i < 8; ++i) b[i] = static_cast<unsigned char>(v >> (8 * i));
}

inline std::uint64_t DecodeU64(const unsigned char* b) {
  std::uint64_t out = 0;
  for (int i = 7; i >= 0; --i) out = out << 8 | b[i];
  return out;
}

inline bool ReadU32(std::FILE* f, std::uint32_t& out) {
  unsigned char b[4];
  if (!f || std::fread(b, 1, 4, f) != 4) return false;
  out = DecodeU32(b);
  return true;
}

inline bool ReadU64(std::FILE* f, std::uint64_t& out) {
  unsigned char b[8];
  if (!f || std::fread(b, 1, 8, f) != 8) return false;
  out = DecodeU64(b);
  return true;
}

inline bool WriteU32(std::FILE* f, std::uint32_t v) {
  unsigned char b[4];
  EncodeU32(v, b);
  return f && std::fwrite(b, 1, 4, f) == 4;
}

inline bool WriteU64(std::FILE* f, std::uint64_t v) {
  unsigned char b[8];
  EncodeU64(v, b);
  return f && std::fwrite(b, 1, 8, f) == 8;
}

inline bool ReadI32(std::FILE* f, std::int32_t& out) {
  std::uint32_t u;
  if (!ReadU32(f, u)) return false;
  out = static_cast<std::int32_t>(u);
  return true;
}
inline bool WriteI32(std::FILE* f, std::int32_t v) { return WriteU32(f, static_cast<std::uint32_t>(v)); }
inline bool ReadF64(std::FILE* f, double& out) {
  std::uint64_t u;
  if (!ReadU64(f, u)) return false;
  out = std::bit_cast<double>(u);
  return true;
}
inline bool WriteF64(std::FILE* f, double v) { return WriteU64(f, std::bit_cast<std::uint64_t>(v)); }
inline bool ReadF32(std::FILE* f, float& out) {
  std::uint32_t u;
  if (!ReadU32(f, u)) return false;
  out = std::bit_cast<float>(u);
  return true;
}
inline bool WriteF32(std::FILE* f, float v) { return WriteU32(f, std::bit_cast<std::uint32_t>(v)); }

}  // namespace bgr
