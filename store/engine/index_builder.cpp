#include "store/engine/index_builder.h"

#include <algorithm>
#include <cstring>

#include "store/engine/byte_order.h"
#include "store/engine/codes.h"
#include "store/engine/tree_packer.h"

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

int IndexBuilder::PutPage(const std::uint8_t* page) {
  if (static_cast<std::int64_t>(next_page_) + kPageBytes > size_limit_) return kErrorTooLarge;
  pages_.insert(pages_.end(), page, page + kPageBytes);
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

int IndexBuilder::AddTag(IndexTag& tag, const KeyList& keys) {
  TreePacker packer(tag.shape, next_page_, [this](const std::uint8_t* page) { return PutPage(page); });
  if (const int rc = packer.Pack(keys); rc != kSuccess) return rc;
  tag.root = packer.Root();
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
