// Keys of one tag on their way into an index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "store/engine/byte_order.h"
#include "store/engine/index_page.h"

namespace tallwick::engine {

// The keys of one tag with their record numbers, in any order until Sort. Keys stay where they are when more
// come.
class KeyList {
 public:
  explicit KeyList(KeyShape shape)
      : shape_(shape), length_(static_cast<std::size_t>(shape.length)), common_(length_) {}
  // Room for the next key, to be filled by the caller before the next call.
  std::uint8_t* Add(std::uint32_t record);
  void Sort();  // by key, then by record number
  void Clear();
  std::size_t Count() const { return sorted_ ? order_.size() : count_; }
  // In sorted order once sorted.
  const std::uint8_t* Key(std::size_t i) const { return Added(order_[i].place); }
  std::uint32_t Record(std::size_t i) const { return RecordOf(order_[i].place); }
  // Bytes of the key before the fill bytes that end it.
  int Used(std::size_t i) const { return UsedOf(order_[i].place); }
  // Sorted keys lie scattered. Reads those in use from the i-th on, as far as there are any: so many reads one
  // behind the other wait for memory together.
  void BringNear(std::size_t i, std::size_t count) const;
  // The key added as i-th, from 0, whatever the order.
  const std::uint8_t* Added(std::size_t i) const { return Cell(i) + kCellHead; }
  std::size_t KeyLength() const { return length_; }
  std::uint32_t HighestRecord() const { return highest_record_; }
  // True when two neighbours have the same key. Known once sorted.
  bool HasSameKeys() const { return has_same_keys_; }
  // Removes all but the first of neighbours with the same key.
  void KeepFirstOfSame();

 private:
  static constexpr std::size_t kBlockKeys = 64;
  // A key stands behind its record number and its bytes in use, so that memory is waited for once.
  static constexpr std::size_t kUsedAt = sizeof(std::uint32_t);
  static constexpr std::size_t kCellHead = kUsedAt + 1;
  static_assert(kMaxKeyLength <= 0xFF);
  struct Entry {
    std::uint64_t prefix = 0;  // the 8 key bytes that are looked at now, big-endian
    std::uint32_t place = 0;
  };
  std::size_t CellBytes() const { return kCellHead + length_; }
  const std::uint8_t* Cell(std::size_t place) const {
    return blocks_[place / kBlockKeys].get() + place % kBlockKeys * CellBytes();
  }
  std::uint32_t RecordOf(std::size_t place) const { return Load32(Cell(place)); }
  int UsedOf(std::size_t place) const { return Cell(place)[kUsedAt]; }
  // Notes what is to know of the key that was added last, while it is at hand.
  void FinishLast();
  // Sorts entries whose keys are the same before `at`.
  void SortFrom(std::span<Entry> entries, std::size_t at);
  // True when they are in order, from the byte `at` on. Notes the same keys that it meets until then.
  bool LookThrough(std::span<const Entry> entries, std::size_t at);
  int CompareKeys(const Entry& a, const Entry& b, std::size_t at) const;
  bool IsLess(const Entry& a, const Entry& b, std::size_t at) const;
  static void SortByPrefix(std::span<Entry> entries);

  KeyShape shape_;
  std::size_t length_;
  bool sorted_ = false;
  bool has_same_keys_ = false;
  std::size_t count_ = 0;
  std::uint8_t* last_ = nullptr;  // the cell of the key that was added last
  std::size_t common_;  // first bytes that all keys share, the last one left out until it is finished
  std::uint32_t highest_record_ = 0;
  std::vector<std::unique_ptr<std::uint8_t[]>> blocks_;  // of kBlockKeys cells
  std::vector<Entry> order_;
};

// Keys that a unit of work adds to a tag, held back until the tag is read or the unit ends: sorted, they go
// into the tree page by page instead of by a search each. Whether a key is among them is known at once.
class KeyQueue {
 public:
  // Only a searchable queue can tell whether it holds a key.
  KeyQueue(KeyShape shape, bool searchable) : searchable_(searchable), keys_(shape) {}
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
