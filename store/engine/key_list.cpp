#include "store/engine/key_list.h"

#include <algorithm>
#include <cstring>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

std::uint64_t Prefix(const std::uint8_t* key, std::size_t length) {
  std::uint8_t bytes[8] = {};
  std::memcpy(bytes, key, std::min<std::size_t>(length, 8));
  return Load64Big(bytes);
}

}  // namespace

void KeyList::Reserve(std::size_t count) {
  keys_.reserve(count * length_);
  records_.reserve(count);
}

std::uint8_t* KeyList::Add(std::uint32_t record) {
  records_.push_back(record);
  keys_.resize(keys_.size() + length_);
  return keys_.data() + keys_.size() - length_;
}

void KeyList::Clear() {
  keys_.clear();
  records_.clear();
  order_.clear();
  sorted_ = false;
}

std::size_t KeyList::CommonPrefix() const {
  std::size_t common = records_.empty() ? 0 : length_;
  for (std::size_t i = 1; i < records_.size() && common > 0; ++i) {
    if (std::memcmp(Added(i), keys_.data(), common) == 0) continue;
    common =
        static_cast<std::size_t>(std::mismatch(Added(i), Added(i) + common, keys_.data()).first - Added(i));
  }
  return common;
}

// Numbers stand behind blanks and dates behind a century, so the bytes that decide come after those that all
// share.
void KeyList::Sort() {
  sorted_ = true;
  const std::size_t common = CommonPrefix();
  const std::size_t rest = std::min(common + 8, length_);
  order_.resize(records_.size());
  for (std::size_t i = 0; i < records_.size(); ++i) {
    order_[i] = Entry{Prefix(Added(i) + common, length_ - common), static_cast<std::uint32_t>(i)};
  }
  const auto less = [this, rest](const Entry& a, const Entry& b) {
    if (a.prefix != b.prefix) return a.prefix < b.prefix;
    const int order =
        rest < length_ ? std::memcmp(Added(a.place) + rest, Added(b.place) + rest, length_ - rest) : 0;
    return order != 0 ? order < 0 : records_[a.place] < records_[b.place];
  };
  if (!std::is_sorted(order_.begin(), order_.end(), less)) std::sort(order_.begin(), order_.end(), less);
}

bool KeyList::HasSameKeys() const {
  for (std::size_t i = 1; i < Count(); ++i) {
    if (std::memcmp(Key(i - 1), Key(i), length_) == 0) return true;
  }
  return false;
}

void KeyList::KeepFirstOfSame() {
  const auto same = [this](const Entry& a, const Entry& b) {
    return std::memcmp(keys_.data() + a.place * length_, keys_.data() + b.place * length_, length_) == 0;
  };
  order_.erase(std::unique(order_.begin(), order_.end(), same), order_.end());
}

// --- The queue ---

std::size_t KeyQueue::Slot(const std::uint8_t* key) const {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (std::size_t i = 0; i < keys_.KeyLength(); ++i) hash = (hash ^ key[i]) * 0x100000001B3U;
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = static_cast<std::size_t>(hash ^ (hash >> 32)) & mask;
  while (slots_[slot] != 0 && std::memcmp(keys_.Added(slots_[slot] - 1), key, keys_.KeyLength()) != 0) {
    slot = (slot + 1) & mask;
  }
  return slot;
}

void KeyQueue::Grow() {
  slots_.assign(std::max<std::size_t>(64, slots_.size() * 2), 0);
  for (std::size_t i = 0; i < keys_.Count(); ++i) {
    slots_[Slot(keys_.Added(i))] = static_cast<std::uint32_t>(i + 1);
  }
}

void KeyQueue::Add(const std::uint8_t* key, std::uint32_t record) {
  std::memcpy(keys_.Add(record), key, keys_.KeyLength());
  if (!searchable_) return;
  if (keys_.Count() * 2 > slots_.size()) Grow();
  slots_[Slot(key)] = static_cast<std::uint32_t>(keys_.Count());
}

bool KeyQueue::Contains(const std::uint8_t* key) const {
  return searchable_ && !IsEmpty() && slots_[Slot(key)] != 0;
}

KeyList& KeyQueue::Sorted() {
  keys_.Sort();
  return keys_;
}

void KeyQueue::Clear() {
  keys_.Clear();
  slots_.clear();
}

}  // namespace tallwick::engine
