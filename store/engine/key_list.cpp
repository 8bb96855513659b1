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
  FinishLast();
  if (count_ % kBlockKeys == 0) {
    blocks_.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(kBlockKeys * CellBytes()));
  }
  last_ = blocks_.back().get() + count_++ % kBlockKeys * CellBytes();
  Store32(last_, record);
  highest_record_ = std::max(highest_record_, record);
  return last_ + kCellHead;
}

void KeyList::FinishLast() {
  if (last_ == nullptr) return;
  const std::uint8_t* key = last_ + kCellHead;
  last_[kUsedAt] = static_cast<std::uint8_t>(KeyBytesInUse(shape_, key));
  const std::uint8_t* first = Added(0);
  if (std::memcmp(key, first, common_) == 0) return;
  common_ = static_cast<std::size_t>(std::mismatch(first, first + common_, key).first - first);
}

void KeyList::Clear() {
  *this = KeyList(shape_);
}

void KeyList::BringNear(std::size_t i, std::size_t count) const {
  for (const std::size_t end = std::min(i + count, order_.size()); i < end; ++i) {
    const std::uint8_t* used = Cell(order_[i].place) + kUsedAt;
    static_cast<void>(*static_cast<const volatile std::uint8_t*>(used + *used));  // the last byte in use
  }
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

int KeyList::CompareKeys(const Entry& a, const Entry& b, std::size_t at) const {
  if (a.prefix != b.prefix) return a.prefix < b.prefix ? -1 : 1;
  const std::size_t from = at + 8;
  const auto used = static_cast<std::size_t>(std::max(UsedOf(a.place), UsedOf(b.place)));
  return used > from ? std::memcmp(Added(a.place) + from, Added(b.place) + from, used - from) : 0;
}

bool KeyList::IsLess(const Entry& a, const Entry& b, std::size_t at) const {
  const int order = CompareKeys(a, b, at);
  return order != 0 ? order < 0 : RecordOf(a.place) < RecordOf(b.place);
}

bool KeyList::LookThrough(std::span<const Entry> entries, std::size_t at) {
  for (std::size_t i = 1; i < entries.size(); ++i) {
    const int order = CompareKeys(entries[i - 1], entries[i], at);
    if (order > 0) return false;
    if (order < 0) continue;
    has_same_keys_ = true;
    if (RecordOf(entries[i - 1].place) > RecordOf(entries[i].place)) return false;
  }
  return true;
}

// Eight bytes after the other: keys that share the first ones are sorted by the next, and at last by their
// records.
void KeyList::SortFrom(std::span<Entry> entries, std::size_t at) {
  constexpr std::size_t kFew = 64;
  for (Entry& entry : entries) entry.prefix = Prefix(Added(entry.place) + at, length_ - at);
  if (LookThrough(entries, at)) return;
  if (entries.size() <= kFew || at == length_) {
    std::sort(entries.begin(), entries.end(),
              [this, at](const Entry& a, const Entry& b) { return IsLess(a, b, at); });
    LookThrough(entries, at);
    return;
  }
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
  FinishLast();
  order_.resize(count_);
  for (std::size_t i = 0; i < count_; ++i) order_[i].place = static_cast<std::uint32_t>(i);
  SortFrom(order_, common_);
}

void KeyList::KeepFirstOfSame() {
  const auto same = [this](const Entry& a, const Entry& b) {
    return std::memcmp(Added(a.place), Added(b.place), length_) == 0;
  };
  order_.erase(std::unique(order_.begin(), order_.end(), same), order_.end());
  has_same_keys_ = false;
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
