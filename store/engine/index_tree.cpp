#include "store/engine/index_tree.h"

#include <algorithm>
#include <cstring>

#include "store/engine/codes.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kMaxDepth = 32;

// True when entry i stands before (key, record), keys compared on `length` bytes.
bool StandsBefore(const IndexNode& node, int i, const std::uint8_t* key, int length, std::uint32_t record) {
  const int order = length == 0 ? 0 : std::memcmp(node.Key(i), key, static_cast<std::size_t>(length));
  if (order != 0) return order < 0;
  return length == node.key_length && node.records[static_cast<std::size_t>(i)] < record;
}

// Whether one page would hold the entries of both. Keys share at least as much there, but entries of both are
// as wide as the highest record number asks for.
bool FitTogether(const IndexNode& left, const IndexNode& right) {
  if (!left.leaf) return left.UsedBytes() + right.UsedBytes() <= kInteriorRoom;
  const auto width = [](const IndexNode& node, std::uint32_t highest) {
    return LeafEntryBytes(node.key_length, highest, node.entry_bytes);
  };
  const std::uint32_t highest = std::max(left.highest_record, right.highest_record);
  const int keys = left.UsedBytes() - left.Count() * width(left, left.highest_record) + right.UsedBytes() -
                   right.Count() * width(right, right.highest_record);
  return keys + (left.Count() + right.Count()) * width(left, highest) <= kLeafRoom;
}

int LowerIndex(const IndexNode& node, const std::uint8_t* key, int length, std::uint32_t record) {
  int low = 0;
  int high = node.Count();
  while (low < high) {
    const int middle = (low + high) / 2;
    if (StandsBefore(node, middle, key, length, record)) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

}  // namespace

// --- Search ---

int IndexTree::Descend(const std::uint8_t* key, int length, std::uint32_t record, Path* path) {
  std::uint32_t at = 0;
  if (const int rc = file_.Root(tag_, &at); rc != kSuccess) return rc;
  path->clear();
  while (path->size() < kMaxDepth) {
    int rc = kSuccess;
    IndexNode* node = file_.Load(tag_, at, &rc);
    if (node == nullptr) return rc;
    // A page that leads back to one above it would be changed twice over.
    for (const Step& above : *path) {
      if (above.node == node) return kErrorIndex;
    }
    int i = LowerIndex(*node, key, length, record);
    if (node->leaf) {
      path->push_back({node, i});
      return kSuccess;
    }
    i = std::min(i, node->Count() - 1);
    path->push_back({node, i});
    at = node->children[static_cast<std::size_t>(i)];
  }
  return kErrorIndex;
}

int IndexTree::DescendEdge(bool last, IndexPlace* place) {
  *place = IndexPlace();
  std::uint32_t at = 0;
  if (const int rc = file_.Root(tag_, &at); rc != kSuccess) return rc;
  for (std::size_t depth = 0; depth < kMaxDepth; ++depth) {
    int rc = kSuccess;
    IndexNode* node = file_.Load(tag_, at, &rc);
    if (node == nullptr) return rc;
    if (!node->leaf) {
      at = last ? node->children.back() : node->children.front();
      continue;
    }
    if (node->Count() > 0) *place = IndexPlace{node, last ? node->Count() - 1 : 0};
    return kSuccess;
  }
  return kErrorIndex;
}

int IndexTree::First(IndexPlace* place) {
  return DescendEdge(false, place);
}
int IndexTree::Last(IndexPlace* place) {
  return DescendEdge(true, place);
}

int IndexTree::Sibling(IndexNode* from, bool right, IndexNode** to) {
  *to = nullptr;
  const std::uint32_t at = right ? from->right : from->left;
  if (at == kNoPage) return kSuccess;
  int rc = kSuccess;
  IndexNode* node = file_.Load(tag_, at, &rc);
  if (node == nullptr) return rc;
  // Order across pages is what keeps a damaged chain from leading in circles.
  if (!node->leaf || node->Count() == 0 || from->Count() == 0) return kErrorIndex;
  const IndexNode* low = right ? from : node;
  const IndexNode* high = right ? node : from;
  if (low->Compare(low->Count() - 1, high->Key(0), high->records.front()) >= 0) return kErrorIndex;
  *to = node;
  return kSuccess;
}

int IndexTree::Next(IndexPlace* place) {
  if (place->at + 1 < place->node->Count()) {
    ++place->at;
    return kSuccess;
  }
  IndexNode* node = nullptr;
  const int rc = Sibling(place->node, true, &node);
  if (rc == kSuccess) *place = IndexPlace{node, 0};
  return rc;
}

int IndexTree::Previous(IndexPlace* place) {
  if (place->at > 0) {
    --place->at;
    return kSuccess;
  }
  IndexNode* node = nullptr;
  const int rc = Sibling(place->node, false, &node);
  if (rc == kSuccess) *place = IndexPlace{node, node == nullptr ? 0 : node->Count() - 1};
  return rc;
}

int IndexTree::LowerBound(const std::uint8_t* key, int length, std::uint32_t record, IndexPlace* place) {
  *place = IndexPlace();
  Path path;
  if (const int rc = Descend(key, length, record, &path); rc != kSuccess) return rc;
  const Step& leaf = path.back();
  if (leaf.at < leaf.node->Count()) {
    *place = IndexPlace{leaf.node, leaf.at};
    return kSuccess;
  }
  if (leaf.node->Count() == 0) return kSuccess;
  *place = IndexPlace{leaf.node, leaf.node->Count() - 1};
  const int rc = Next(place);
  if (rc != kSuccess) *place = IndexPlace();
  return rc;
}

int IndexTree::Before(const std::uint8_t* key, int length, std::uint32_t record, IndexPlace* place) {
  if (const int rc = LowerBound(key, length, record, place); rc != kSuccess) return rc;
  if (place->AtEnd()) return Last(place);
  const int rc = Previous(place);
  if (rc != kSuccess) *place = IndexPlace();
  return rc;
}

// --- Insertion ---

int IndexTree::Insert(const std::uint8_t* key, std::uint32_t record) {
  Path path;
  if (const int rc = Descend(key, tag_.shape.length, record, &path); rc != kSuccess) return rc;
  const Step leaf = path.back();
  if (leaf.at < leaf.node->Count() && leaf.node->Compare(leaf.at, key, record) == 0) return kUnique;
  file_.Change(leaf.node);
  leaf.node->Insert(leaf.at, key, record);
  return SettleGrowth(path, path.size() - 1);
}

int IndexTree::InsertSorted(const KeyList& keys) {
  Path path;  // to the page at hand; empty when it must be sought
  for (std::size_t i = 0; i < keys.Count(); ++i) {
    const std::uint8_t* key = keys.Key(i);
    const std::uint32_t record = keys.Record(i);
    IndexNode* leaf = path.empty() ? nullptr : path.back().node;
    // The page is the right one while it holds an entry behind the new one, or is the last of all.
    const bool belongs =
        leaf != nullptr && (leaf->right == kNoPage || leaf->Compare(leaf->Count() - 1, key, record) > 0);
    if (!belongs) {
      if (leaf != nullptr) RaiseHighest(path, path.size() - 1);
      if (const int rc = Descend(key, tag_.shape.length, record, &path); rc != kSuccess) return rc;
      leaf = path.back().node;
      file_.Change(leaf);
    }
    const int last = leaf->Count() - 1;
    const bool behind = last < 0 || leaf->Compare(last, key, record) < 0;
    const int at = behind ? last + 1 : LowerIndex(*leaf, key, tag_.shape.length, record);
    if (!behind && leaf->Compare(at, key, record) == 0) return kErrorIndex;
    leaf->Insert(at, key, record);
    if (leaf->Fits()) continue;
    path.back().at = at;
    if (const int rc = SettleGrowth(path, path.size() - 1); rc != kSuccess) return rc;
    path.clear();
  }
  if (!path.empty()) RaiseHighest(path, path.size() - 1);
  return kSuccess;
}

int IndexTree::SettleGrowth(Path& path, std::size_t level) {
  for (;; --level) {
    IndexNode* node = path[level].node;
    std::vector<IndexNode*> rights;
    for (IndexNode* part = node; !part->Fits();) {
      IndexNode* right = nullptr;
      if (const int rc = Split(part, &right); rc != kSuccess) return rc;
      rights.push_back(right);
      part = right;
    }
    if (rights.empty()) {
      RaiseHighest(path, level);
      return kSuccess;
    }
    if (level == 0) return GrowRoot(node, rights);
    IndexNode* parent = path[level - 1].node;
    int at = path[level - 1].at;
    file_.Change(parent);
    parent->Assign(at, node->Key(node->Count() - 1), node->records.back());
    for (IndexNode* right : rights) {
      parent->Insert(++at, right->Key(right->Count() - 1), right->records.back(), right->offset);
    }
  }
}

// Where the right part begins: behind everything for keys that arrive in ascending order, so that pages fill
// up; else in the middle. The left part always fits: it is what fitted before, or half of it.
int IndexTree::SplitPoint(const IndexNode& node) const {
  const int count = node.Count();
  if (node.right == kNoPage && node.leaf) return count - 1;
  return std::max(1, count / 2);
}

int IndexTree::Split(IndexNode* node, IndexNode** right) {
  if (node->Count() < 2) return kErrorIndex;
  int rc = kSuccess;
  IndexNode* fresh = file_.Allocate(tag_, node->leaf, &rc);
  if (fresh == nullptr) return rc;
  int point = SplitPoint(*node);
  file_.Change(node);
  node->MoveTail(point, *fresh);
  // Dense keys of a damaged or foreign page may need an uneven cut.
  while (!node->Fits() && node->Count() > 1) {
    IndexNode rest(0, node->leaf, tag_.shape);
    node->MoveTail(--point, rest);
    fresh->MoveTail(0, rest);
    rest.MoveTail(0, *fresh);
  }
  fresh->left = node->offset;
  fresh->right = node->right;
  node->right = fresh->offset;
  *right = fresh;
  return fresh->right == kNoPage ? static_cast<int>(kSuccess) : SetLink(fresh->right, false, fresh->offset);
}

int IndexTree::SetLink(std::uint32_t page, bool right, std::uint32_t value) {
  int rc = kSuccess;
  IndexNode* node = file_.Load(tag_, page, &rc);
  if (node == nullptr) return rc;
  file_.Change(node);
  (right ? node->right : node->left) = value;
  return kSuccess;
}

int IndexTree::GrowRoot(IndexNode* old_root, const std::vector<IndexNode*>& rights) {
  int rc = kSuccess;
  IndexNode* root = file_.Allocate(tag_, false, &rc);
  if (root == nullptr) return rc;
  root->Insert(0, old_root->Key(old_root->Count() - 1), old_root->records.back(), old_root->offset);
  for (const IndexNode* right : rights) {
    root->Insert(root->Count(), right->Key(right->Count() - 1), right->records.back(), right->offset);
  }
  file_.SetRoot(tag_, root->offset);
  // With the longest keys a page holds two entries, and a leaf may have come apart into three.
  Path top{Step{root, 0}};
  return SettleGrowth(top, 0);
}

void IndexTree::RaiseHighest(Path& path, std::size_t level) {
  for (; level > 0; --level) {
    const IndexNode* child = path[level].node;
    IndexNode* parent = path[level - 1].node;
    const int at = path[level - 1].at;
    const int last = child->Count() - 1;
    if (parent->Compare(at, child->Key(last), child->records.back()) == 0) return;
    file_.Change(parent);
    parent->Assign(at, child->Key(last), child->records.back());
    if (at != parent->Count() - 1) return;
  }
}

// --- Removal ---

int IndexTree::Remove(const std::uint8_t* key, std::uint32_t record) {
  Path path;
  if (const int rc = Descend(key, tag_.shape.length, record, &path); rc != kSuccess) return rc;
  const Step leaf = path.back();
  if (leaf.at >= leaf.node->Count() || leaf.node->Compare(leaf.at, key, record) != 0) return kNoRecord;
  file_.Change(leaf.node);
  leaf.node->Erase(leaf.at);
  return SettleShrink(path, path.size() - 1);
}

int IndexTree::SettleShrink(Path& path, std::size_t level) {
  for (;; --level) {
    IndexNode* node = path[level].node;
    if (level == 0) return LowerRoot();
    if (node->Count() == 0) {
      if (const int rc = DropPage(path, level); rc != kSuccess) return rc;
      continue;
    }
    RaiseHighest(path, level);
    if (node->UsedBytes() > (node->leaf ? kLeafRoom : kInteriorRoom) / 3) return kSuccess;
    const int before = path[level - 1].node->Count();
    if (const int rc = JoinNeighbours(path, level); rc != kSuccess) return rc;
    if (path[level - 1].node->Count() == before) return kSuccess;
  }
}

// Takes an empty page out of the chain and out of its parent.
int IndexTree::DropPage(Path& path, std::size_t level) {
  IndexNode* node = path[level].node;
  if (node->left != kNoPage) {
    if (const int rc = SetLink(node->left, true, node->right); rc != kSuccess) return rc;
  }
  if (node->right != kNoPage) {
    if (const int rc = SetLink(node->right, false, node->left); rc != kSuccess) return rc;
  }
  IndexNode* parent = path[level - 1].node;
  file_.Change(parent);
  parent->Erase(path[level - 1].at);
  path[level - 1].at = std::min(path[level - 1].at, std::max(0, parent->Count() - 1));
  file_.Free(node);
  return kSuccess;
}

// Moves the entries of the right one of two neighbours under one parent into the left one, when they fit.
int IndexTree::JoinNeighbours(Path& path, std::size_t level) {
  IndexNode* parent = path[level - 1].node;
  const int at = path[level - 1].at;
  const int left_at = at + 1 < parent->Count() ? at : at - 1;
  if (left_at < 0) return kSuccess;
  int rc = kSuccess;
  IndexNode* left = file_.Load(tag_, parent->children[static_cast<std::size_t>(left_at)], &rc);
  if (left == nullptr) return rc;
  IndexNode* right = file_.Load(tag_, parent->children[static_cast<std::size_t>(left_at) + 1], &rc);
  if (right == nullptr) return rc;
  if (left == right || left == parent || right == parent) return kErrorIndex;
  if (left->leaf != right->leaf || left->right != right->offset) return kErrorIndex;
  if (!FitTogether(*left, *right)) return kSuccess;
  file_.Change(left);
  file_.Change(right);
  right->MoveTail(0, *left);
  path[level] = Step{right, 0};
  path[level - 1].at = left_at + 1;
  rc = DropPage(path, level);
  if (rc != kSuccess) return rc;
  path[level] = Step{left, 0};
  path[level - 1].at = left_at;
  RaiseHighest(path, level);
  return kSuccess;
}

// A root with one child gives way to it; an interior root without children becomes an empty leaf.
int IndexTree::LowerRoot() {
  for (;;) {
    std::uint32_t at = 0;
    if (const int rc = file_.Root(tag_, &at); rc != kSuccess) return rc;
    int rc = kSuccess;
    IndexNode* root = file_.Load(tag_, at, &rc);
    if (root == nullptr) return rc;
    if (root->leaf || root->Count() > 1) return kSuccess;
    if (root->Count() == 0) {
      file_.Change(root);
      root->leaf = true;
      root->packed_bytes = 0;
      return kSuccess;
    }
    IndexNode* child = file_.Load(tag_, root->children.front(), &rc);
    if (child == nullptr) return rc;
    file_.Change(child);  // its root mark changes
    file_.SetRoot(tag_, child->offset);
    file_.Free(root);
  }
}

}  // namespace tallwick::engine
