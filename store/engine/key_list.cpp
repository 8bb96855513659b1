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

std::uint32_t Hash(const std::uint8_t* key, std::size_t length) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = length;
  std::size_t i = 0;
  for (; i + 8 <= length; i += 8) hash = std::rotl((hash ^ Load64(key + i)) * kFactor, 29);
  for (; i < length; ++i) hash = (hash ^ key[i]) * kFactor;
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
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
void KeyList::SortByPrefix(std::span<Entry> entries) {
  constexpr std::size_t kDigits = 8;
  constexpr std::size_t kValues = 256;
  std::vector<std::array<std::uint32_t, kValues>> counts(kDigits);
  for (const Entry& entry : entries) {
    for (std::size_t d = 0; d < kDigits; ++d) ++counts[d][entry.prefix >> (8 * d) & 0xFF];
  }
  std::vector<Entry> other(entries.size());
  std::span<Entry> from = entries;
  std::span<Entry> to = other;
  for (std::size_t d = 0; d < kDigits; ++d) {
    auto& count = counts[d];
    if (count[from.front().prefix >> (8 * d) & 0xFF] == from.size()) continue;
    std::uint32_t place = 0;
    for (std::uint32_t& of_value : count) place += std::exchange(of_value, place);
    for (const Entry& entry : from) to[count[entry.prefix >> (8 * d) & 0xFF]++] = entry;
    std::swap(from, to);
  }
  if (from.data() != entries.data()) std::copy(from.begin(), from.end(), entries.begin());
}

bool KeyList::IsLess(const Entry& a, const Entry& b, std::size_t at) const {
  if (a.prefix != b.prefix) return a.prefix < b.prefix;
  const std::size_t rest = std::min(at + 8, length_);
  const int order = std::memcmp(Added(a.place) + rest, Added(b.place) + rest, length_ - rest);
  return order != 0 ? order < 0 : records_[a.place] < records_[b.place];
}

// Eight bytes after the other: keys that share the first ones are sorted by the next, and at last by their
// records.
void KeyList::SortFrom(std::span<Entry> entries, std::size_t at) {
  constexpr std::size_t kFew = 64;
  for (Entry& entry : entries) entry.prefix = Prefix(Added(entry.place) + at, length_ - at);
  const auto less = [this, at](const Entry& a, const Entry& b) { return IsLess(a, b, at); };
  if (std::is_sorted(entries.begin(), entries.end(), less)) return;
  if (entries.size() <= kFew || at == length_) return std::sort(entries.begin(), entries.end(), less);
  SortByPrefix(entries);
  for (std::size_t from = 0; from < entries.size();) {
    std::size_t to = from + 1;
    while (to < entries.size() && entries[to].prefix == entries[from].prefix) ++to;
    if (to - from > 1) SortFrom(entries.subspan(from, to - from), std::min(at + 8, length_));
    from = to;
  }
}

// Numbers stand behind blanks and dates behind a century, so the bytes that decide come after those that all
// share.
void KeyList::Sort() {
  sorted_ = true;
  order_.resize(records_.size());
  for (std::size_t i = 0; i < records_.size(); ++i) order_[i].place = static_cast<std::uint32_t>(i);
  SortFrom(order_, CommonPrefix());
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

std::uint32_t KeyQueue::HashOf(const std::uint8_t* key) const {
  return Hash(key, keys_.KeyLength());
}

void KeyQueue::Prefetch(const std::uint8_t* key) const {
  if (!slots_.empty()) __builtin_prefetch(&slots_[HashOf(key) & (slots_.size() - 1)]);
}

std::size_t KeyQueue::SlotOf(const std::uint8_t* key, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  const auto holds_key = [&](const Slot& slot) {
    return slot.hash == hash && std::memcmp(keys_.Added(slot.place - 1), key, keys_.KeyLength()) == 0;
  };
  std::size_t at = hash & mask;
  while (slots_[at].place != 0 && !holds_key(slots_[at])) at = (at + 1) & mask;
  return at;
}

// Small enough for the processor's cache: slots that follow each other are looked at together, so a full
// table costs less than a large one.
void KeyQueue::Grow() {
  std::vector<Slot> grown(std::bit_ceil(std::max<std::size_t>(64, keys_.Count() * 3 / 2)));
  const std::size_t mask = grown.size() - 1;
  for (const Slot& slot : slots_) {
    if (slot.place == 0) continue;
    std::size_t at = slot.hash & mask;
    while (grown[at].place != 0) at = (at + 1) & mask;
    grown[at] = slot;
  }
  slots_ = std::move(grown);
}

void KeyQueue::FillTable() {
  if (keys_.Count() * 4 >= slots_.size() * 3) Grow();
  for (; in_table_ < keys_.Count(); ++in_table_) {
    const std::uint8_t* key = keys_.Added(in_table_);
    const std::uint32_t hash = HashOf(key);
    slots_[SlotOf(key, hash)] = {static_cast<std::uint32_t>(in_table_ + 1), hash};
  }
}

void KeyQueue::Add(const std::uint8_t* key, std::uint32_t record) {
  std::uint8_t* own = keys_.Add(record);
  std::memcpy(own, key, keys_.KeyLength());
  if (!searchable_) return;
  if (highest_ == nullptr || std::memcmp(own, highest_, keys_.KeyLength()) > 0) highest_ = own;
  // The key that was just asked about goes where it was not found.
  if (asked_ && in_table_ + 1 == keys_.Count() && HashOf(key) == asked_->hash)
    slots_[asked_->slot] = {static_cast<std::uint32_t>(++in_table_), asked_->hash};
  asked_.reset();
}

bool KeyQueue::Contains(const std::uint8_t* key) {
  asked_.reset();
  if (highest_ == nullptr || std::memcmp(key, highest_, keys_.KeyLength()) > 0) return false;
  FillTable();
  const std::uint32_t hash = HashOf(key);
  const std::size_t slot = SlotOf(key, hash);
  if (slots_[slot].place != 0) return true;
  asked_ = Asked{hash, slot};
  return false;
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
  asked_.reset();
}

}  // namespace tallwick::engine
