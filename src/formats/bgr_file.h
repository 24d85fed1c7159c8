// Reader and writer of the tag-framed BGR format; also the framing layer of TMS files.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "frame/report.h"

namespace bgr {

class TEXPOINTS;

std::int32_t EncodeWidth(std::int32_t width);  // clamps to 25..500 ft
std::int32_t DecodeWidth(std::int32_t code);

class BgrFile {
 public:
  bool IsOpen() const { return static_cast<bool>(stream_); }
  bool OpenRead(std::string_view name);
  bool OpenWrite(std::string_view name);
  bool Close();

  bool WriteTag(std::string_view text);
  // True when the tag and its zero come next; otherwise the stream stays put.
  bool ReadTag(std::string_view text);
  bool WriteLong(std::int32_t value);
  bool WriteRaw32(const void* word);
  bool WriteDouble(double value);
  bool ReadLong(std::int32_t* value);
  bool ReadFloat(float* value);
  bool ReadDouble(double* value);

  bool WriteOrigin(double latitude, double longitude, double third);
  bool ReadOrigin(double* latitude, double* longitude, double* third);
  bool WriteNode(double x, double y, double z, bool flowFirst, bool flowSecond);
  bool WriteNodes(const TEXPOINTS& points, std::int32_t flowFirst, std::int32_t flowSecond);
  bool ReadNode(double* x, double* y, double* z);
  bool WriteEdge(std::int32_t from, std::int32_t to, std::int32_t width, std::int32_t type, std::int32_t packed,
                 std::int32_t flags);
  bool ReadEdge(std::int32_t* from, std::int32_t* to, std::int32_t* width, std::int32_t* type, std::int32_t* packed,
                std::int32_t* flags);

  long Tell() const;
  bool Seek(long position);
  long Length();

 private:
  // Reading goes through a window of the file of our own, so that the many
  // tries of a tag that isn't there (and the seeks back) cost no system call.
  bool ReadBytes(void* out, std::size_t n);
  int GetByte();
  bool Refill();
  void ResetWindow(long start);

  std::int32_t writing_ = 0;
  Stream stream_;
  std::vector<unsigned char> window_;
  long windowStart_ = 0;
  std::size_t windowPos_ = 0;
  std::size_t windowLen_ = 0;
};

}  // namespace bgr
