// Writes one tag's tree from sorted keys: full pages, one behind the other, leaves first and the root last.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "store/engine/index_page.h"
#include "store/engine/key_list.h"

namespace tallwick::engine {

class TreePacker {
 public:
  // Takes the next page of kPageBytes; a code other than kSuccess ends the packing.
  using Sink = std::function<int(const std::uint8_t* page)>;

  // The first page goes to the offset `first_page` of the file, each further one behind it.
  TreePacker(KeyShape shape, std::uint32_t first_page, Sink sink)
      : shape_(shape), next_page_(first_page), sink_(std::move(sink)) {}

  // kSuccess, or what the sink returned. A tree without keys is one empty leaf.
  int Pack(const KeyList& keys);
  std::uint32_t Root() const { return root_; }

 private:
  int WriteLeaves(const KeyList& keys, std::vector<InteriorEntry>* level);
  int WriteLevel(std::span<const InteriorEntry> below, std::vector<InteriorEntry>* level);
  int Put(const std::uint8_t* page);

  KeyShape shape_;
  std::uint32_t next_page_;
  std::uint32_t root_ = kNoPage;
  Sink sink_;
};

}  // namespace tallwick::engine
