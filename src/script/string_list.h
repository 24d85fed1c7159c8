// A list of short texts of fixed byte capacity: kept in order of arrival, no two
// that differ only in case, searched ignoring case, walked by prefix.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bgr {

class RunContext;

class STRING_LIST {
 public:
  explicit STRING_LIST(RunContext& ctx) : ctx_(ctx) {}
  STRING_LIST(const STRING_LIST&) = delete;
  STRING_LIST& operator=(const STRING_LIST&) = delete;
  ~STRING_LIST() { Destroy(); }

  bool Create(std::int32_t bytes);
  std::int32_t Destroy();
  std::int32_t Clear();
  std::int32_t Add(std::string_view text);
  // The entry, or the empty text for an index out of range.
  std::string Get(std::int32_t index) const;
  // The entry without a copy, valid until the list changes; empty outside it.
  std::string_view View(std::int32_t index) const;
  std::int32_t Find(std::string_view text, std::int32_t length, std::int32_t start) const;
  std::int32_t FindPrefix(std::string_view text, std::int32_t length) const { return Find(text, length, 0); }
  std::int32_t Load(std::string_view path);

  std::int32_t count() const { return static_cast<std::int32_t>(entries_.size()); }
  std::int32_t used() const { return used_; }
  std::int32_t capacity() const { return capacity_; }
  bool HasBlock() const { return hasBlock_; }

 private:
  static std::string Folded(std::string_view text);

  RunContext& ctx_;
  std::int32_t warned_ = 0;
  bool hasBlock_ = false;
  std::int32_t capacity_ = 0;
  std::int32_t used_ = 0;
  std::vector<std::string> entries_;
  std::unordered_map<std::string, std::int32_t> byFolded_;
};

// A walk over the entries of a list that begin with a prefix (case counts);
// each gives the text behind the prefix. An empty entry ends it, as the end of
// the list does.
class StringListWalk {
 public:
  StringListWalk(const STRING_LIST& list, std::string_view prefix);
  // The next entry, its number into index (-1 at the end).
  std::optional<std::string> Next(std::int32_t* index = nullptr);

 private:
  const STRING_LIST& list_;
  std::string prefix_;
  std::int32_t position_ = 0;
};

}  // namespace bgr
