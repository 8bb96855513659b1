#include "store/engine/verify_tree.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kMaxProblems = 1000;
constexpr std::size_t kMaxDepth = 32;

std::string PageAt(std::uint32_t offset) {
  return "the page at " + std::to_string(offset);
}

}  // namespace

// --- Findings ---

void Findings::Add(std::uint32_t record, ProblemKind kind, std::string text) {
  if (++added_ <= kMaxProblems) problems_->push_back({record, std::move(text), kind});
}

void Findings::Close() {
  if (added_ <= kMaxProblems) return;
  problems_->push_back(
      {0, std::to_string(added_ - kMaxProblems) + " more problems are not listed", problems_->back().kind});
}

// --- Pages and their owners ---

std::uint16_t PageOwners::Add(std::string name) {
  names_.push_back(std::move(name));
  return static_cast<std::uint16_t>(names_.size());
}

std::string PageOwners::Claim(std::uint32_t offset, std::uint16_t owner, std::uint32_t pages) {
  const std::size_t first = offset / kPageBytes;
  if (offset % kPageBytes != 0 || first + pages > owners_.size()) return "lies outside the file";
  std::string fault;
  for (std::size_t page = first; page < first + pages; ++page) {
    if (owners_[page] == owner) fault = "is reached twice";
    if (owners_[page] != 0 && owners_[page] != owner)
      fault = "belongs to " + names_[owners_[page] - std::size_t{1}] + " too";
    if (owners_[page] == 0) owners_[page] = owner;
  }
  return fault;
}

std::uint32_t PageOwners::Unclaimed(std::uint32_t* first) const {
  const auto found = std::find(owners_.begin(), owners_.end(), 0);
  *first = static_cast<std::uint32_t>(found - owners_.begin()) * kPageBytes;
  return static_cast<std::uint32_t>(std::count(found, owners_.end(), 0));
}

// --- A tree ---

bool TreeWalk::Run(std::uint32_t root, std::uint16_t owner, const Entry& entry) {
  root_ = root;
  owner_ = owner;
  entry_ = &entry;
  if (!Visit(root, 0)) return false;
  for (const Level& level : levels_) {
    if (level.right != kNoPage) Problem(PageAt(level.offset) + " is the last one and names one behind it");
  }
  return true;
}

bool TreeWalk::Visit(std::uint32_t offset, int depth) {
  const std::string fault = pages_.Claim(offset, owner_);
  std::array<std::uint8_t, kPageBytes> page{};
  if (!fault.empty()) {
    Problem(PageAt(offset) + " " + fault);
    return false;
  }
  IndexNode node(offset, true, shape_);
  if (static_cast<std::size_t>(depth) > kMaxDepth ||
      file_.ReadAt(offset, page.data(), page.size()) != kPageBytes || !DecodePage(page.data(), &node)) {
    Problem(PageAt(offset) + " is damaged");
    return false;
  }
  if (((Load16(page.data()) & 1) != 0) != (offset == root_))
    Problem(PageAt(offset) + " has a wrong root mark");
  CheckSiblings(node, depth);
  if (node.leaf) {
    VisitLeaf(node, depth);
    return true;
  }
  for (int i = 0; i < node.Count(); ++i) {
    if (!Visit(node.children[static_cast<std::size_t>(i)], depth + 1)) return false;
    const bool highest = has_last_ && std::memcmp(last_key_.data(), node.Key(i), last_key_.size()) == 0 &&
                         last_record_ == node.records[static_cast<std::size_t>(i)];
    if (!highest) Problem("an entry of " + PageAt(offset) + " is not the highest key of the page below it");
  }
  return true;
}

void TreeWalk::CheckSiblings(const IndexNode& node, int depth) {
  const auto at = static_cast<std::size_t>(depth);
  if (at >= levels_.size()) levels_.resize(at + 1);
  Level& before = levels_[at];
  const bool first = before.offset == kNoPage;
  if (node.left != before.offset || (!first && before.right != node.offset))
    Problem(PageAt(node.offset) + " and the one before it do not name each other as neighbours");
  before = {node.offset, node.right};
}

void TreeWalk::VisitLeaf(const IndexNode& node, int depth) {
  if (leaf_depth_ < 0) leaf_depth_ = depth;
  if (depth != leaf_depth_) Problem(PageAt(node.offset) + " holds keys at another depth than the others");
  if (node.Count() == 0 && node.offset != root_) Problem(PageAt(node.offset) + " is empty");
  for (int i = 0; i < node.Count(); ++i) VisitEntry(node.Key(i), node.records[static_cast<std::size_t>(i)]);
}

void TreeWalk::VisitEntry(const std::uint8_t* key, std::uint32_t record) {
  const auto length = static_cast<std::size_t>(shape_.length);
  if (has_last_) {
    const int order = std::memcmp(last_key_.data(), key, length);
    if (order > 0 || (order == 0 && last_record_ >= record))
      findings_.Add(record, ProblemKind::kIndex, title_ + ": the key stands out of order");
    if (order == 0 && unique_)
      findings_.Add(record, ProblemKind::kRecord,
                    title_ + ": record " + std::to_string(last_record_) +
                        " has the same key, which may be there only once");
  }
  has_last_ = true;
  last_key_.assign(key, key + length);
  last_record_ = record;
  (*entry_)(key, record);
}

}  // namespace tallwick::engine
