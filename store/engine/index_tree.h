// One tag's keys as a balanced tree of pages: search, steps in order, insertion and removal.
// Invariants: entries stand in the order (key, record number); an interior entry holds the highest entry of
// its child; leaves are linked left and right; every page but the root holds at least one entry.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "store/engine/index_file.h"

namespace tallwick::engine {

// A place in a leaf. `node` is null at the end.
struct IndexPlace {
  IndexNode* node = nullptr;
  int at = 0;
  bool AtEnd() const { return node == nullptr; }
  const std::uint8_t* Key() const { return node->Key(at); }
  std::uint32_t Record() const { return node->records[static_cast<std::size_t>(at)]; }
};

class IndexTree {
 public:
  IndexTree(IndexFile& file, IndexTag& tag) : file_(file), tag_(tag) {}

  // All return kSuccess, IndexFile::kNeedsLock or an error code, and set the place (at the end when there is
  // none).

  int First(IndexPlace* place);
  int Last(IndexPlace* place);
  // The first entry at or behind (key, record). With a partial key (shorter than the tag's) keys are compared
  // on its length, and `record` counts only for a full key.
  int LowerBound(const std::uint8_t* key, int length, std::uint32_t record, IndexPlace* place);
  // The last entry before (key, record), with partial keys as above.
  int Before(const std::uint8_t* key, int length, std::uint32_t record, IndexPlace* place);
  // One entry on or back in tree order.
  int Next(IndexPlace* place);
  int Previous(IndexPlace* place);

  // Under the exclusive lock. Insert: kUnique when the very entry is there already. Remove: kNoRecord when it
  // is not.
  int Insert(const std::uint8_t* key, std::uint32_t record);
  int Remove(const std::uint8_t* key, std::uint32_t record);
  // Inserts many entries in ascending order: page by page, with one search for each page. kErrorIndex when
  // one of them is there already.
  int InsertSorted(const KeyList& keys);

 private:
  struct Step {
    IndexNode* node;
    int at;  // of the child taken, or the place in the leaf
  };
  using Path = std::vector<Step>;

  // From the root to the leaf in which (key, record) stands or would stand.
  int Descend(const std::uint8_t* key, int length, std::uint32_t record, Path* path);
  int DescendEdge(bool last, IndexPlace* place);
  int Sibling(IndexNode* from, bool right, IndexNode** to);

  // After the entries of path[level] changed: splits what no longer fits and carries new highest entries
  // upwards.
  int SettleGrowth(Path& path, std::size_t level);
  int Split(IndexNode* node, IndexNode** right);
  int SplitPoint(const IndexNode& node) const;
  int GrowRoot(IndexNode* old_root, const std::vector<IndexNode*>& rights);
  void RaiseHighest(Path& path, std::size_t level);
  // After an entry left path[level]: removes empty pages, joins thin neighbours, lowers the root.
  int SettleShrink(Path& path, std::size_t level);
  int DropPage(Path& path, std::size_t level);
  int JoinNeighbours(Path& path, std::size_t level);
  int LowerRoot();
  int SetLink(std::uint32_t page, bool right, std::uint32_t value);

  IndexFile& file_;
  IndexTag& tag_;
};

}  // namespace tallwick::engine
