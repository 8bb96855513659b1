// Builds a whole compound index file from sorted keys, pages filled one after the other.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "store/engine/index_file.h"
#include "store/engine/key_list.h"

namespace tallwick::engine {

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
  int PutPage(const std::uint8_t* page);
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
