// Reader and writer of the tag-framed BGR format; also the framing layer of TMS files.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/file_access.h"

namespace bgr {

class RunContext;
class TEXPOINTS;

// The width code in the high half of an edge's thickness word: feet clamped to
// 25..500, 128 code steps to 50 ft, above a base of 16840.
inline constexpr std::int32_t kWidthCodeBase = 16840;
inline constexpr std::int32_t kWidthCodeSteps = 128;
inline constexpr std::int32_t kWidthCodeFeet = 50;
inline constexpr std::int32_t kMinWidth = 25;
inline constexpr std::int32_t kMaxWidth = 500;

std::int32_t EncodeWidth(std::int32_t width);
std::int32_t DecodeWidth(std::int32_t code);

// The values of one record. A record cut short by the end of the file leaves
// the fields it lacks as they were, so a reader keeps one record per list and
// every list starts from zeros: the same bytes always give the same values.
struct OriginRecord {
  double latitude = 0, longitude = 0, third = 0;
};
struct NodeRecord {
  double x = 0, y = 0, z = 0;
};
struct EdgeRecord {
  std::int32_t from = 0, to = 0, width = 0, type = 0, packed = 0, flags = 0;
};

class BgrFile {
 public:
  BgrFile() = default;
  BgrFile(const BgrFile&) = delete;
  BgrFile& operator=(const BgrFile&) = delete;
  // A file still being written under its part name is dropped.
  ~BgrFile() { Abandon(); }

  bool IsOpen() const { return stream_ || output_; }
  bool OpenRead(RunContext& ctx, std::string_view name);
  // Writes through an OutputFile; Close puts the file in place, so that until
  // then, and after any failure, the old file stays whole.
  bool OpenReplace(RunContext& ctx, std::string_view name);
  // Writes the fixed temporary file of an in-place edit (OutputFile::OpenTemporary):
  // Close checks it and leaves it where it is, for the edit to put in place.
  bool OpenTemporary(RunContext& ctx, std::string_view name);
  // Reads an open stream from its start, as OpenRead reads a file.
  bool AttachRead(RunContext& ctx, Stream stream, std::string_view name);
  // False, with an error line in the report, when a written file didn't reach
  // the disk whole; false without one when its open failed (that was reported).
  [[nodiscard]] bool Close();
  // Closes without a word: for a file that is given up anyway.
  void Abandon();

  bool WriteTag(std::string_view text);
  // True when the tag and its zero come next; otherwise the stream stays put.
  bool ReadTag(std::string_view text);
  bool WriteLong(std::int32_t value);
  // n values, as n WriteLong calls would write them.
  bool WriteLongs(const std::int32_t* values, std::size_t n);
  bool WriteRaw32(const void* word);
  bool WriteDouble(double value);
  bool ReadLong(std::int32_t* value);
  bool ReadFloat(float* value);
  bool ReadDouble(double* value);

  bool WriteOrigin(const OriginRecord& origin);
  // True when the origin record is there, also when the file cuts it short.
  bool ReadOrigin(OriginRecord& origin);
  bool WriteNode(const NodeRecord& node, bool flowFirst = false, bool flowSecond = false);
  bool WriteNodes(const TEXPOINTS& points, std::int32_t flowFirst, std::int32_t flowSecond);
  bool ReadNode(NodeRecord& node);
  bool WriteEdge(const EdgeRecord& edge);
  bool ReadEdge(EdgeRecord& edge);

  long Tell() const;
  bool Seek(long position);
  long Length();

 private:
  // Reading goes through a window of the file of our own, so that the many
  // tries of a tag that isn't there (and the seeks back) cost no system call.
  bool ReadBytes(void* out, std::size_t n);
  // Writing goes through a buffer of our own too, in which Seek and Tell work
  // without a system call: a file of millions of words would otherwise cost a
  // library call each, and a length patched in place two seeks.
  bool WriteBytes(const void* data, std::size_t n);
  void Unbuffer();
  bool MakeRoom(std::size_t n);
  bool FlushPending();
  int GetByte();
  bool Refill();
  // The stream read or written, whichever is open.
  std::FILE* file() const { return output_ ? output_.get() : stream_.get(); }
  bool OpenOutput(RunContext& ctx, std::string_view name, bool temporary);
  void ResetWindow(long start);
  void Drop();

  std::int32_t writing_ = 0;
  RunContext* context_ = nullptr;
  std::string name_;
  Stream stream_;
  OutputFile output_;
  std::vector<unsigned char> window_;
  struct Free {
    void operator()(unsigned char* p) const { std::free(p); }
  };
  std::unique_ptr<unsigned char, Free> pending_;  // grown by realloc
  std::size_t pendingSize_ = 0;
  std::size_t pendingRoom_ = 0;
  long pendingStart_ = 0;   // where pending_ begins in the file
  std::size_t cursor_ = 0;  // where the next write goes in pending_
  bool writeFailed_ = false;
  int writeError_ = 0;  // the system's reason of a failed write
  long windowStart_ = 0;
  std::size_t windowPos_ = 0;
  std::size_t windowLen_ = 0;
};

}  // namespace bgr
