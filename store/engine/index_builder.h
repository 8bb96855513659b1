// Builds a whole compound index file from sorted keys, pages filled one after the other.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "store/engine/index_file.h"

namespace tallwick::engine {

// The keys of one tag with their record numbers, in any order until Sort.
class KeyList {
 public:
  explicit KeyList(int key_length) : length_(static_cast<std::size_t>(key_length)) {}
  void Reserve(std::size_t count);
  // Room for the next key, to be filled by the caller.
  std::uint8_t* Add(std::uint32_t record);
  void DropLast();  // takes back the key added last
  void Sort();      // by key, then by record number
  std::size_t Count() const { return records_.size(); }
  // In sorted order once sorted.
  const std::uint8_t* Key(std::size_t i) const { return keys_.data() + order_[i].place * length_; }
  std::uint32_t Record(std::size_t i) const { return records_[order_[i].place]; }
  // True when two neighbours have the same key.
  bool HasSameKeys() const;
  // Removes all but the first of neighbours with the same key.
  void KeepFirstOfSame();

 private:
  struct Entry {
    std::uint64_t prefix;  // the first 8 key bytes, big-endian
    std::uint32_t place;
  };
  std::size_t length_;
  std::vector<std::uint8_t> keys_;
  std::vector<std::uint32_t> records_;
  std::vector<Entry> order_;
};

class IndexBuilder {
 public:
  IndexBuilder(File& file, std::int64_t size_limit) : file_(file), size_limit_(size_limit) {}

  // Lays out the headers and the directory of these tags, and sets each tag's header offset. Call it first.
  int Begin(std::vector<std::unique_ptr<IndexTag>>& tags);
  // Writes one tag's pages and header.
  int AddTag(IndexTag& tag, const KeyList& keys);
  // Writes the directory's header with the change counter.
  int Finish(std::uint32_t counter);

 private:
  struct Child {
    std::vector<std::uint8_t> key;
    std::uint32_t record;
    std::uint32_t page;
  };
  int WriteLeaves(const IndexTag& tag, const KeyList& keys, std::vector<Child>* level);
  int WriteLevel(const IndexTag& tag, const std::vector<Child>& below, std::vector<Child>* level);
  int PutPage(const IndexNode& node, bool is_root);
  int Put(std::int64_t offset, const std::uint8_t* bytes, std::size_t length);
  int FlushPages();

  File& file_;
  std::int64_t size_limit_;
  std::uint32_t next_page_ = 0;
  std::uint32_t directory_root_ = 0;
  std::vector<std::uint8_t> pages_;  // written in runs; they end at next_page_
  std::uint32_t pages_at_ = 0;
};

}  // namespace tallwick::engine
