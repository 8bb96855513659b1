#include "store/engine/index_builder.h"

#include <algorithm>
#include <cstring>

#include "store/engine/byte_order.h"
#include "store/engine/codes.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kRunBytes = std::size_t{1} << 20;
constexpr std::uint32_t kFirstHeader =
    kTagHeaderBytes + kPageBytes;  // behind the directory's header and root page

}  // namespace

// --- Pages ---

int IndexBuilder::Put(std::int64_t offset, const std::uint8_t* bytes, std::size_t length) {
  return file_.WriteAt(offset, bytes, length);
}

int IndexBuilder::FlushPages() {
  const int rc = pages_.empty() ? static_cast<int>(kSuccess) : Put(pages_at_, pages_.data(), pages_.size());
  pages_.clear();
  pages_at_ = next_page_;
  return rc;
}

int IndexBuilder::PutPage(const IndexNode& node, bool is_root) {
  if (static_cast<std::int64_t>(next_page_) + kPageBytes > size_limit_) return kErrorTooLarge;
  pages_.resize(pages_.size() + kPageBytes);
  if (!EncodePage(node, is_root, pages_.data() + pages_.size() - kPageBytes)) return kErrorIndex;
  next_page_ += kPageBytes;
  return pages_.size() >= kRunBytes ? FlushPages() : static_cast<int>(kSuccess);
}

int IndexBuilder::Begin(std::vector<std::unique_ptr<IndexTag>>& tags) {
  std::vector<const IndexTag*> by_name;
  std::uint32_t offset = kFirstHeader;
  for (const auto& tag : tags) {
    tag->header_offset = offset;
    offset += kTagHeaderBytes;
    by_name.push_back(tag.get());
  }
  next_page_ = offset;
  pages_at_ = offset;
  std::sort(by_name.begin(), by_name.end(), [](const auto* a, const auto* b) { return a->name < b->name; });

  // More tag names than one page holds would need a tree; no table comes near.
  directory_root_ = kTagHeaderBytes;
  IndexNode directory(directory_root_, true, KeyShape{kTagNameLength, ' '});
  for (const IndexTag* tag : by_name) {
    std::uint8_t key[kTagNameLength];
    std::memset(key, ' ', sizeof key);
    std::copy(tag->name.begin(), tag->name.end(), key);
    directory.Insert(directory.Count(), key, tag->header_offset);
  }
  std::uint8_t page[kPageBytes];
  if (!EncodePage(directory, true, page)) return kErrorParameter;
  return Put(directory_root_, page, sizeof page);
}

int IndexBuilder::WriteLeaves(const IndexTag& tag, const KeyList& keys, std::vector<Child>* level) {
  IndexNode node(next_page_, true, tag.shape);
  const auto finish = [&](bool is_last) {
    node.right = is_last ? kNoPage : node.offset + kPageBytes;
    const int last = node.Count() - 1;
    if (last >= 0) {
      level->push_back(
          {{node.Key(last), node.Key(last) + tag.shape.length}, node.records.back(), node.offset});
    }
    const bool is_root = is_last && level->size() <= 1;
    return PutPage(node, is_root);
  };
  for (std::size_t i = 0; i < keys.Count(); ++i) {
    node.Insert(node.Count(), keys.Key(i), keys.Record(i));
    if (node.Fits()) continue;
    IndexNode next(next_page_ + kPageBytes, true, tag.shape);
    node.MoveTail(node.Count() - 1, next);
    next.left = node.offset;
    if (const int rc = finish(false); rc != kSuccess) return rc;
    node = std::move(next);
  }
  return finish(true);
}

int IndexBuilder::WriteLevel(const IndexTag& tag, const std::vector<Child>& below,
                             std::vector<Child>* level) {
  const auto fan_out = static_cast<std::size_t>(kInteriorRoom / (tag.shape.length + 8));
  for (std::size_t i = 0; i < below.size(); i += fan_out) {
    IndexNode node(next_page_, false, tag.shape);
    const std::size_t end = std::min(i + fan_out, below.size());
    for (std::size_t c = i; c < end; ++c) {
      node.Insert(node.Count(), below[c].key.data(), below[c].record, below[c].page);
    }
    if (i > 0) node.left = node.offset - kPageBytes;
    if (end < below.size()) node.right = node.offset + kPageBytes;
    level->push_back({below[end - 1].key, below[end - 1].record, node.offset});
    if (const int rc = PutPage(node, below.size() <= fan_out); rc != kSuccess) return rc;
  }
  return kSuccess;
}

int IndexBuilder::AddTag(IndexTag& tag, const KeyList& keys) {
  std::vector<Child> level;
  const std::uint32_t first = next_page_;
  int rc = WriteLeaves(tag, keys, &level);
  while (rc == kSuccess && level.size() > 1) {
    std::vector<Child> above;
    rc = WriteLevel(tag, level, &above);
    level = std::move(above);
  }
  if (rc != kSuccess) return rc;
  tag.root = level.empty() ? first : level.front().page;
  const int options =
      kOptionCompact | kOptionCompound | (tag.filter ? kOptionFilter : 0) | (tag.unique ? kOptionUnique : 0);
  const auto header = BuildTagHeader(tag, static_cast<std::uint8_t>(options));
  return Put(tag.header_offset, header.data(), header.size());
}

int IndexBuilder::Finish(std::uint32_t counter) {
  if (const int rc = FlushPages(); rc != kSuccess) return rc;
  IndexTag directory;
  directory.shape = KeyShape{kTagNameLength, ' '};
  directory.root = directory_root_;
  auto header = BuildTagHeader(directory, kOptionCompact | kOptionCompound | kOptionDirectory);
  Store32(&header[4], kNoPage);
  Store32Big(&header[8], counter);
  return Put(0, header.data(), header.size());
}

}  // namespace tallwick::engine
