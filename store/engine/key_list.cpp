#include "store/engine/key_list.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

std::uint64_t Prefix(const std::uint8_t* key, std::size_t length) {
  if (length >= 8) return Load64Big(key);
  std::uint8_t bytes[8] = {};
  std::memcpy(bytes, key, length);
  return Load64Big(bytes);
}

std::uint64_t Hash(const std::uint8_t* key, std::size_t length) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = length;
  std::size_t i = 0;
  for (; i + 8 <= length; i += 8) hash = std::rotl((hash ^ Load64(key + i)) * kFactor, 29);
  for (; i < length; ++i) hash = (hash ^ key[i]) * kFactor;
  return hash ^ (hash >> 32);
}

}  // namespace

std::uint8_t* KeyList::Add(std::uint32_t record) {
  const std::size_t place = records_.size();
  if (place / kBlockKeys == blocks_.size()) {
    blocks_.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(kBlockKeys * length_));
  }
  records_.push_back(record);
  highest_record_ = std::max(highest_record_, record);
  return blocks_.back().get() + place % kBlockKeys * length_;
}

void KeyList::Clear() {
  *this = KeyList(static_cast<int>(length_));
}

std::size_t KeyList::CommonPrefix() const {
  std::size_t common = records_.empty() ? 0 : length_;
  for (std::size_t i = 1; i < records_.size() && common > 0; ++i) {
    const std::uint8_t* first = Added(0);
    if (std::memcmp(Added(i), first, common) == 0) continue;
    common = static_cast<std::size_t>(std::mismatch(first, first + common, Added(i)).first - first);
  }
  return common;
}

// Digit by digit from the lowest, 8 bits each; digits that are the same in all entries are passed over.
// Entries with the same prefix keep their order.
void KeyList::SortByPrefix(std::vector<Entry>* order) {
  constexpr int kDigits = 8;
  constexpr std::size_t kValues = 256;
  std::vector<std::array<std::uint32_t, kValues>> counts(kDigits);
  for (const Entry& entry : *order) {
    for (int d = 0; d < kDigits; ++d) ++counts[static_cast<std::size_t>(d)][entry.prefix >> (8 * d) & 0xFF];
  }
  std::vector<Entry> sorted(order->size());
  for (int d = 0; d < kDigits; ++d) {
    auto& count = counts[static_cast<std::size_t>(d)];
    if (count[order->front().prefix >> (8 * d) & 0xFF] == order->size()) continue;
    std::uint32_t place = 0;
    for (std::uint32_t& of_value : count) place += std::exchange(of_value, place);
    for (const Entry& entry : *order) sorted[count[entry.prefix >> (8 * d) & 0xFF]++] = entry;
    order->swap(sorted);
  }
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
  const auto less_behind = [this, rest](const Entry& a, const Entry& b) {
    const int order =
        rest < length_ ? std::memcmp(Added(a.place) + rest, Added(b.place) + rest, length_ - rest) : 0;
    return order != 0 ? order < 0 : records_[a.place] < records_[b.place];
  };
  const auto less = [&less_behind](const Entry& a, const Entry& b) {
    return a.prefix != b.prefix ? a.prefix < b.prefix : less_behind(a, b);
  };
  if (std::is_sorted(order_.begin(), order_.end(), less)) return;
  SortByPrefix(&order_);
  for (auto from = order_.begin(); from != order_.end();) {
    const auto to =
        std::find_if(from, order_.end(), [&](const Entry& e) { return e.prefix != from->prefix; });
    if (to - from > 1 && !std::is_sorted(from, to, less_behind)) std::sort(from, to, less_behind);
    from = to;
  }
}

bool KeyList::HasSameKeys() const {
  for (std::size_t i = 1; i < Count(); ++i) {
    if (std::memcmp(Key(i - 1), Key(i), length_) == 0) return true;
  }
  return false;
}

void KeyList::KeepFirstOfSame() {
  const auto same = [this](const Entry& a, const Entry& b) {
    return std::memcmp(Added(a.place), Added(b.place), length_) == 0;
  };
  order_.erase(std::unique(order_.begin(), order_.end(), same), order_.end());
}

// --- The queue ---

std::size_t KeyQueue::Slot(const std::uint8_t* key) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = static_cast<std::size_t>(Hash(key, keys_.KeyLength())) & mask;
  while (slots_[slot] != 0 && std::memcmp(keys_.Added(slots_[slot] - 1), key, keys_.KeyLength()) != 0) {
    slot = (slot + 1) & mask;
  }
  return slot;
}

void KeyQueue::FillTable() {
  if (keys_.Count() * 2 > slots_.size()) {
    slots_.assign(std::bit_ceil(std::max<std::size_t>(64, keys_.Count() * 4)), 0);
    in_table_ = 0;
  }
  for (; in_table_ < keys_.Count(); ++in_table_) {
    slots_[Slot(keys_.Added(in_table_))] = static_cast<std::uint32_t>(in_table_ + 1);
  }
}

void KeyQueue::Add(const std::uint8_t* key, std::uint32_t record) {
  std::uint8_t* own = keys_.Add(record);
  std::memcpy(own, key, keys_.KeyLength());
  if (!searchable_) return;
  if (highest_ == nullptr || std::memcmp(own, highest_, keys_.KeyLength()) > 0) highest_ = own;
}

bool KeyQueue::Contains(const std::uint8_t* key) {
  if (highest_ == nullptr || std::memcmp(key, highest_, keys_.KeyLength()) > 0) return false;
  FillTable();
  return slots_[Slot(key)] != 0;
}

const KeyList& KeyQueue::Sorted() {
  keys_.Sort();
  return keys_;
}

void KeyQueue::Clear() {
  keys_.Clear();
  highest_ = nullptr;
  slots_.clear();
  in_table_ = 0;
}

}  // namespace tallwick::engine
