// Keys of one tag on their way into an index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
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
    std::uint64_t prefix;  // the first 8 key bytes that are not common to all, big-endian
    std::uint32_t place;
  };
  std::size_t CommonPrefix() const;
  static void SortByPrefix(std::vector<Entry>* order);

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
  bool IsEmpty() const { return keys_.Count() == 0; }
  // Sorts and hands out the keys; Clear ends it.
  const KeyList& Sorted();
  void Clear();

 private:
  std::size_t Slot(const std::uint8_t* key) const;
  void FillTable();

  bool searchable_;
  KeyList keys_;
  const std::uint8_t* highest_ = nullptr;  // of the keys
  // Hash table of places in keys_, plus one; 0 = free. Numbers mostly ascend, and a key behind the highest
  // needs no search, so the table is filled when first needed.
  std::vector<std::uint32_t> slots_;
  std::size_t in_table_ = 0;
};

}  // namespace tallwick::engine
