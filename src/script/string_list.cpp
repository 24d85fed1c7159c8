#include "script/string_list.h"

#include "frame/run_context.h"
#include "frame/text.h"
#include "script/text_file.h"

namespace bgr {
namespace {

constexpr std::size_t kMaxPrefix = 19;
constexpr std::size_t kMaxEntryText = 4092;  // the entry's length lives in 12 bits

}  // namespace

std::string STRING_LIST::Folded(std::string_view text) {
  std::string folded(text.substr(0, text.find('\0')));
  UpperCaseInPlace(folded);
  return folded;
}

bool STRING_LIST::Create(std::int32_t bytes) {
  if (hasBlock_ && capacity_ == bytes) {
    Clear();
    return true;
  }
  Destroy();
  if (bytes <= 0) {
    ctx_.Report("%s%d STRING_LIST::Create(%ld) failed ", "", 0, bytes);
    return false;
  }
  hasBlock_ = true;
  capacity_ = bytes;
  return true;
}

std::int32_t STRING_LIST::Destroy() {
  hasBlock_ = false;
  capacity_ = 0;
  Clear();
  return 1;
}

std::int32_t STRING_LIST::Clear() {
  entries_.clear();
  byFolded_.clear();
  used_ = 0;
  warned_ = 0;
  return 1;
}

std::int32_t STRING_LIST::Add(std::string_view text) {
  if (!hasBlock_) return -1;
  text = text.substr(0, text.find('\0'));
  std::string folded = Folded(text);
  if (auto it = byFolded_.find(folded); it != byFolded_.end()) return it->second;
  if (text.size() > kMaxEntryText) return 0;
  auto length = static_cast<std::int32_t>(text.size());
  if (!(used_ + length + 3 < capacity_)) {
    if (warned_ == 0) {
      warned_ = 1;
      ctx_.Report("STRING_LIST::Add(%s) failed, %d %ld\n", text, 0, count());
    }
    return -1;
  }
  entries_.emplace_back(text);
  used_ += length + 3;
  auto index = static_cast<std::int32_t>(entries_.size() - 1);
  byFolded_.emplace(std::move(folded), index);
  return index;
}

std::string STRING_LIST::Get(std::int32_t index) const { return std::string(View(index)); }

std::string_view STRING_LIST::View(std::int32_t index) const {
  if (index < 0 || index >= count()) return {};
  return entries_[static_cast<std::size_t>(index)];
}

std::int32_t STRING_LIST::Find(std::string_view text, std::int32_t length, std::int32_t start) const {
  if (!hasBlock_) return -1;
  std::size_t n = length != 0 ? static_cast<std::size_t>(length) : std::string_view::npos;
  if (length == 0) {
    // the whole text: the folded map gives the one entry that can be equal
    auto it = byFolded_.find(Folded(text));
    return it != byFolded_.end() && it->second >= start ? it->second : -1;
  }
  for (std::int32_t i = start < 0 ? 0 : start; i < count(); ++i) {
    if (CompareNoCase(entries_[static_cast<std::size_t>(i)], text, n) == 0) return i;
  }
  return -1;
}

std::int32_t STRING_LIST::Load(std::string_view path) {
  TextFile file;
  if (!file.OpenRead(ctx_, path)) return -1;
  while (file.ReadLine()) {
    if (!file.line.empty()) Add(file.line);
  }
  file.Close();
  return count();
}

StringListWalk::StringListWalk(const STRING_LIST& list, std::string_view prefix)
    : list_(list), prefix_(prefix.substr(0, kMaxPrefix)) {}

std::optional<std::string> StringListWalk::Next(std::int32_t* index) {
  for (;;) {
    std::int32_t position = position_++;
    std::string_view text = list_.View(position);
    if (text.empty()) {  // the end of the list, or an empty entry that stops the walk as well
      if (index) *index = -1;
      return std::nullopt;
    }
    if (text.starts_with(prefix_)) {
      if (index) *index = position;
      return std::string(text.substr(prefix_.size()));
    }
  }
}

}  // namespace bgr
