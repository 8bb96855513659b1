// Keys of one tag on their way into an index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tallwick::engine {

// The keys of one tag with their record numbers, in any order until Sort. Keys stay where they are when more
// come.
class KeyList {
 public:
  explicit KeyList(int key_length) : length_(static_cast<std::size_t>(key_length)) {}
  // Room for the next key, to be filled by the caller before the next call.
  std::uint8_t* Add(std::uint32_t record);
  void Sort();  // by key, then by record number
  void Clear();
  std::size_t Count() const { return sorted_ ? order_.size() : records_.size(); }
  // In sorted order once sorted.
  const std::uint8_t* Key(std::size_t i) const { return Added(order_[i].place); }
  std::uint32_t Record(std::size_t i) const { return records_[order_[i].place]; }
  // Sorted keys lie scattered: asks the processor for the i-th, if there is one, before it is needed.
  void Prefetch(std::size_t i) const {
    if (i >= order_.size()) return;
    __builtin_prefetch(Key(i));
    __builtin_prefetch(Key(i) + length_ - 1);
  }
  // The key added as i-th, from 0, whatever the order.
  const std::uint8_t* Added(std::size_t i) const {
    return blocks_[i / kBlockKeys].get() + i % kBlockKeys * length_;
  }
  std::size_t KeyLength() const { return length_; }
  std::uint32_t HighestRecord() const { return highest_record_; }
  // True when two neighbours have the same key.
  bool HasSameKeys() const;
  // Removes all but the first of neighbours with the same key.
  void KeepFirstOfSame();

 private:
  static constexpr std::size_t kBlockKeys = 64;
  struct Entry {
    std::uint64_t prefix = 0;  // the 8 key bytes that are looked at now, big-endian
    std::uint32_t place = 0;
  };
  std::size_t CommonPrefix() const;
  // Sorts entries whose keys are the same before `at`.
  void SortFrom(std::span<Entry> entries, std::size_t at);
  bool IsLess(const Entry& a, const Entry& b, std::size_t at) const;
  static void SortByPrefix(std::span<Entry> entries);

  std::size_t length_;
  bool sorted_ = false;
  std::uint32_t highest_record_ = 0;
  std::vector<std::unique_ptr<std::uint8_t[]>> blocks_;  // of kBlockKeys keys
  std::vector<std::uint32_t> records_;
  std::vector<Entry> order_;
};

// Keys that a unit of work adds to a tag, held back until the tag is read or the unit ends: sorted, they go
// into the tree page by page instead of by a search each. Whether a key is among them is known at once.
class KeyQueue {
 public:
  // Only a searchable queue can tell whether it holds a key.
  KeyQueue(int key_length, bool searchable) : searchable_(searchable), keys_(key_length) {}
  void Add(const std::uint8_t* key, std::uint32_t record);
  bool Contains(const std::uint8_t* key);
  // Asks the processor for the place of a key that will be asked about.
  void Prefetch(const std::uint8_t* key) const;
  bool IsEmpty() const { return keys_.Count() == 0; }
  // Sorts and hands out the keys; Clear ends it.
  const KeyList& Sorted();
  void Clear();

 private:
  struct Slot {
    std::uint32_t place = 0;  // in keys_, plus one; 0 = free
    std::uint32_t hash = 0;   // of the key: keys with another one need not be looked at
  };
  // A key that was not found, and the free slot where it belongs.
  struct Asked {
    std::uint32_t hash = 0;
    std::size_t slot = 0;
  };
  // The slot that holds the key, or the free one where it belongs.
  std::size_t SlotOf(const std::uint8_t* key, std::uint32_t hash) const;
  std::uint32_t HashOf(const std::uint8_t* key) const;
  void Grow();
  void FillTable();

  bool searchable_;
  KeyList keys_;
  const std::uint8_t* highest_ = nullptr;  // of the keys
  // A hash table. Numbers mostly ascend, and a key behind the highest needs no search, so the table is filled
  // when first needed.
  std::vector<Slot> slots_;
  std::size_t in_table_ = 0;
  std::optional<Asked> asked_;
};

}  // namespace tallwick::engine
