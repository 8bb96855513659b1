#include "store/engine/index_file.h"

#include <algorithm>
#include <cstring>

#include "core/text.h"
#include "store/engine/byte_order.h"
#include "store/engine/codebase.h"
#include "store/engine/index_tree.h"
#include "store/engine/tree_packer.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kCacheLimit = std::size_t{24} << 20;
// A writer holds the lock for milliseconds; after this long something is wrong.
constexpr int kLockTries = 2000;
constexpr int kLockWaitMs = 5;
// A unit waits with the writer's lock in hand, and all other banks wait for that: so it gives up after a
// second. Readers and writers of ours are done by then, but for the check of a very large table; another
// program may keep the index for minutes.
constexpr int kChangeLockTries = 200;
constexpr int kEagerTries = 50;
constexpr int kMaxTags = 255;
constexpr std::size_t kPool = 512;
// So many keys or more fill an empty tree page by page.
constexpr std::size_t kPackFrom = 1000;
constexpr std::size_t kRunBytes = std::size_t{1} << 20;

std::size_t NodeBytes(const IndexNode& node) {
  return sizeof(IndexNode) + node.keys.capacity() + 4 * (node.records.capacity() + node.children.capacity());
}

bool IsPageOffset(std::uint32_t offset) {
  return offset % kPageBytes == 0 && offset >= kTagHeaderBytes;
}

// A text of a tag header's pool; false when its place or its NUL is wrong.
bool PoolText(const std::uint8_t* header, int position_at, int length_at, std::string* text) {
  const std::size_t position = Load16(header + position_at);
  const std::size_t length = Load16(header + length_at);
  text->clear();
  if (length <= 1) return true;
  if (position + length > kPool) return false;
  const auto* start = reinterpret_cast<const char*>(header + kTagHeaderBytes - kPool + position);
  text->assign(start, strnlen(start, length));
  return true;
}

KeyShape ShapeOf(const Expression& key) {
  const bool binary = key.Type() == ValueType::kNumber || key.Type() == ValueType::kDate;
  return KeyShape{key.KeyLength(), static_cast<std::uint8_t>(binary ? 0 : ' ')};
}

bool ParseTagTexts(std::span<const FieldInfo> fields, IndexTag* tag) {
  tag->key = Expression::Parse(tag->key_text, fields);
  if (!tag->key || tag->key->KeyLength() < 1 || tag->key->KeyLength() > kMaxKeyLength) return false;
  tag->key_type = tag->key->Type();
  tag->shape = ShapeOf(*tag->key);
  if (tallwick::Trim(tag->filter_text).empty()) return true;
  tag->filter = Expression::Parse(tag->filter_text, fields);
  return tag->filter && tag->filter->Type() == ValueType::kLogical;
}

}  // namespace

std::array<std::uint8_t, kTagHeaderBytes> BuildTagHeader(const IndexTag& tag, std::uint8_t options) {
  std::array<std::uint8_t, kTagHeaderBytes> header{};
  Store32(&header[0], tag.root);
  Store16(&header[12], static_cast<std::uint32_t>(tag.shape.length));
  header[14] = options;
  header[15] = 1;
  Store16(&header[16], kTagHeaderBytes);
  Store16(&header[18], kPageBytes);
  Store16(&header[502], tag.descending ? 1 : 0);
  const auto key_bytes = static_cast<std::uint32_t>(tag.key_text.size() + 1);
  Store16(&header[504], key_bytes);
  Store16(&header[506], static_cast<std::uint32_t>(tag.filter_text.size() + 1));
  Store16(&header[510], key_bytes);
  std::memcpy(&header[512], tag.key_text.data(), tag.key_text.size());
  std::memcpy(&header[512 + key_bytes], tag.filter_text.data(), tag.filter_text.size());
  return header;
}

int MakeTag(const TagLayout& layout, std::span<const FieldInfo> fields, IndexTag* tag) {
  tag->name = ToUpper(Trim(layout.name));
  tag->unique = layout.unique;
  tag->descending = layout.descending;
  tag->key_text = layout.expression;
  tag->filter_text = layout.filter;
  if (tag->name.empty() || tag->name.size() > kTagNameLength) return kErrorParameter;
  if (tag->key_text.size() + tag->filter_text.size() + 2 > kPool) return kErrorParameter;
  return ParseTagTexts(fields, tag) ? kSuccess : kErrorTagExpression;
}

IndexTag* IndexFile::FindTag(std::string_view name) {
  for (const auto& tag : tags_) {
    if (EqualsIgnoreCase(tag->name, tallwick::Trim(name))) return tag.get();
  }
  return nullptr;
}

// --- Opening ---

int IndexFile::Open(std::span<const FieldInfo> fields) {
  int rc = LockShared();
  if (rc != kSuccess) return rc;
  rc = ReadDirectory(fields);
  UnlockShared();
  return rc;
}

int IndexFile::ReadDirectory(std::span<const FieldInfo> fields) {
  std::array<std::uint8_t, kTagHeaderBytes> header{};
  if (file_->ReadAt(0, header.data(), header.size()) != kTagHeaderBytes) return kErrorIndex;
  if ((header[14] & kOptionCompact) == 0 || Load16(&header[12]) != kTagNameLength) return kErrorIndex;
  IndexTag directory;
  directory.shape = KeyShape{kTagNameLength, ' '};

  // Down the leftmost edge, then along the leaves. Names come in order, so a loop of pages shows as a step
  // back.
  std::uint32_t at = Load32(&header[0]);
  std::vector<std::pair<std::string, std::uint32_t>> found;
  std::string last;
  for (int depth = 0; at != kNoPage && static_cast<int>(found.size()) <= kMaxTags; ++depth) {
    int rc = kSuccess;
    const IndexNode* node = Load(directory, at, &rc);
    if (node == nullptr) return rc;
    if (!node->leaf) {
      if (depth > 16) return kErrorIndex;
      at = node->children.front();
      continue;
    }
    for (int i = 0; i < node->Count(); ++i) {
      std::string name(reinterpret_cast<const char*>(node->Key(i)), kTagNameLength);
      if (!found.empty() && name <= last) return kErrorIndex;
      last = name;
      found.emplace_back(ToUpper(tallwick::Trim(name)), node->records[static_cast<std::size_t>(i)]);
    }
    if (node->Count() == 0) break;
    at = node->right;
  }
  if (static_cast<int>(found.size()) > kMaxTags) return kErrorIndex;

  // Tags are listed in the order in which they were made, which is that of their headers.
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  for (const auto& [name, offset] : found) {
    if (const int rc = ReadTag(name, offset, fields); rc != kSuccess) return rc;
  }
  DropCache();  // the directory's pages are not needed again
  return kSuccess;
}

int IndexFile::ReadTag(const std::string& name, std::uint32_t offset, std::span<const FieldInfo> fields) {
  std::array<std::uint8_t, kTagHeaderBytes> header{};
  if (offset % kPageBytes != 0 || file_->ReadAt(offset, header.data(), header.size()) != kTagHeaderBytes) {
    return kErrorTagHeader;
  }
  auto tag = std::make_unique<IndexTag>();
  tag->name = name;
  tag->header_offset = offset;
  tag->unique = (header[14] & kOptionUnique) != 0;
  tag->descending = Load16(&header[502]) != 0;
  if (!PoolText(header.data(), 508, 510, &tag->key_text) ||
      !PoolText(header.data(), 504, 506, &tag->filter_text)) {
    return kErrorTagHeader;
  }
  if ((header[14] & kOptionFilter) == 0) tag->filter_text.clear();
  if (!ParseTagTexts(fields, tag.get())) return kErrorTagExpression;
  if (tag->shape.length != Load16(&header[12])) return kErrorTagExpression;
  tags_.push_back(std::move(tag));
  return kSuccess;
}

// --- Locks and the state they guard ---

int IndexFile::TakeLock(LockKind kind, int max_tries) {
  for (int tries = 0;; ++tries) {
    const int rc = file_->Lock(kIndexLockAt, 1, kind);
    if (rc != kLocked || tries == max_tries) return rc;
    clock_.Sleep(kLockWaitMs);
  }
}

int IndexFile::CompareCounter(bool* current) {
  std::array<std::uint8_t, 4> bytes{};
  if (file_->ReadAt(8, bytes.data(), bytes.size()) != 4) return kErrorRead;
  *current = counter_known_ && Load32Big(bytes.data()) == counter_;
  return kSuccess;
}

int IndexFile::Refresh() {
  std::array<std::uint8_t, 12> head{};
  const std::int64_t size = file_->Size();
  if (size < 0 || file_->ReadAt(0, head.data(), head.size()) != static_cast<std::int64_t>(head.size())) {
    return kErrorIndex;
  }
  const std::uint32_t counter = Load32Big(&head[8]);
  if (!counter_known_ || counter != counter_) DropCache();
  counter_ = counter;
  counter_known_ = true;
  first_free_ = Load32(&head[4]);
  if (first_free_ == 0) first_free_ = kNoPage;
  end_ = static_cast<std::uint32_t>((size + kPageBytes - 1) / kPageBytes * kPageBytes);
  return kSuccess;
}

int IndexFile::LockShared() {
  for (int tries = 0;; ++tries) {
    if (recover_) {
      if (const int rc = recover_(); rc != kSuccess) return rc;
    }
    const bool others_wait = writing_ && writing_();
    const int rc = TakeLock(LockKind::kShared, others_wait ? kChangeLockTries : kLockTries);
    if (rc != kSuccess) return rc;
    // A writer that died between the two leaves work behind, for which somebody will want the lock.
    if (!pending_ || !pending_()) break;
    file_->Unlock(kIndexLockAt, 1);
    if (tries == kLockTries) return kErrorJournal;
    if (tries >= kEagerTries) clock_.Sleep(kLockWaitMs);
  }
  shared_ = true;
  const int rc = Refresh();
  if (rc != kSuccess) UnlockShared();
  return rc;
}

void IndexFile::UnlockShared() {
  shared_ = false;
  file_->Unlock(kIndexLockAt, 1);
}

int IndexFile::LockForChange() {
  if (written_) return kSuccess;
  if (const int rc = TakeLock(LockKind::kExclusive, kChangeLockTries); rc != kSuccess) return rc;
  if (const int rc = Refresh(); rc != kSuccess) {
    file_->Unlock(kIndexLockAt, 1);
    return rc;
  }
  written_ = true;
  locked_version_ = version_;
  return kSuccess;
}

void IndexFile::DropCache() {
  nodes_.clear();
  cached_bytes_ = 0;
  ++version_;
  ++epoch_;
}

void IndexFile::TrimCache() {
  if (!written_ && cached_bytes_ > kCacheLimit) DropCache();
}

// --- Pages ---

IndexNode* IndexFile::Keep(std::unique_ptr<IndexNode> node) {
  const std::size_t slot = node->offset / kPageBytes;
  if (slot >= nodes_.size()) nodes_.resize(slot + slot / 2 + 16);
  cached_bytes_ += NodeBytes(*node);
  nodes_[slot] = std::move(node);
  return nodes_[slot].get();
}

IndexNode* IndexFile::Load(const IndexTag& tag, std::uint32_t offset, int* rc) {
  const std::size_t slot = offset / kPageBytes;
  if (slot < nodes_.size() && nodes_[slot]) {
    if (nodes_[slot]->key_length == tag.shape.length && nodes_[slot]->offset == offset)
      return nodes_[slot].get();
    *rc = kErrorIndex;  // two tags lead to one page
    return nullptr;
  }
  if (!written_ && !shared_) {
    *rc = kNeedsLock;
    return nullptr;
  }
  std::array<std::uint8_t, kPageBytes> page{};
  *rc = kErrorIndex;
  if (!IsPageOffset(offset) || offset >= end_) return nullptr;
  if (!ReadPage(offset, page.data())) return nullptr;
  auto node = std::make_unique<IndexNode>(offset, true, tag.shape);
  if (!DecodePage(page.data(), node.get())) return nullptr;
  *rc = kSuccess;
  return Keep(std::move(node));
}

bool IndexFile::ReadPage(std::uint32_t offset, std::uint8_t* page) {
  for (const PageRun& run : packed_) {
    if (offset < run.offset || offset >= run.End()) continue;
    std::memcpy(page, run.bytes.data() + (offset - run.offset), kPageBytes);
    return true;
  }
  return file_->ReadAt(offset, page, kPageBytes) == kPageBytes;
}

int IndexFile::Root(IndexTag& tag, std::uint32_t* root) {
  if (tag.root_epoch != epoch_) {
    if (!written_ && !shared_) return kNeedsLock;
    std::array<std::uint8_t, 4> bytes{};
    if (file_->ReadAt(tag.header_offset, bytes.data(), bytes.size()) != 4) return kErrorTagHeader;
    tag.root = Load32(bytes.data());
    tag.root_epoch = epoch_;
    tag.root_changed = false;
  }
  *root = tag.root;
  return kSuccess;
}

void IndexFile::SetRoot(IndexTag& tag, std::uint32_t root) {
  tag.root = root;
  tag.root_changed = true;
}

IndexNode* IndexFile::Allocate(const IndexTag& tag, bool leaf, int* rc) {
  std::uint32_t offset = first_free_;
  if (offset != kNoPage) {
    const auto link = free_links_.find(offset);
    std::array<std::uint8_t, 4> next{};
    if (link != free_links_.end()) {
      first_free_ = link->second;
      free_links_.erase(link);
    } else {
      *rc = kErrorIndex;
      if (!IsPageOffset(offset) || offset >= end_) return nullptr;
      if (file_->ReadAt(offset, next.data(), next.size()) != 4) return nullptr;
      first_free_ = Load32(next.data());
      if (first_free_ == 0) first_free_ = kNoPage;
    }
  } else {
    offset = end_;
    *rc = kErrorTooLarge;
    if (static_cast<std::int64_t>(offset) + kPageBytes > size_limit_) return nullptr;
    end_ += kPageBytes;
  }
  // A free page that is in use comes from a damaged list of free pages.
  *rc = kErrorIndex;
  const std::size_t slot = offset / kPageBytes;
  if (slot < nodes_.size() && nodes_[slot]) return nullptr;
  *rc = kSuccess;
  IndexNode* node = Keep(std::make_unique<IndexNode>(offset, leaf, tag.shape));
  Change(node);
  return node;
}

void IndexFile::Change(IndexNode* node) {
  ++version_;
  if (node->dirty) return;
  node->dirty = true;
  changed_.push_back(node->offset);
}

void IndexFile::Free(IndexNode* node) {
  ++version_;
  const std::uint32_t offset = node->offset;
  cached_bytes_ -= std::min(cached_bytes_, NodeBytes(*node));
  nodes_[offset / kPageBytes].reset();
  free_links_[offset] = first_free_;
  first_free_ = offset;
}

// --- Queued keys ---

void IndexFile::Queue(IndexTag& tag, const std::uint8_t* key, std::uint32_t record) {
  if (!tag.queue) tag.queue = std::make_unique<KeyQueue>(tag.shape, tag.unique);
  tag.queue->Add(key, record);
  queued_ = true;
}

int IndexFile::SettleQueues() {
  if (queue_failure_ != 0) return queue_failure_;
  if (!queued_) return kSuccess;
  for (const auto& tag : tags_) {
    if (!tag->queue || tag->queue->IsEmpty()) continue;
    const int rc = PutKeys(*tag, tag->queue->Sorted());
    tag->queue->Clear();
    if (rc != kSuccess) return queue_failure_ = rc;
  }
  queued_ = false;
  return kSuccess;
}

int IndexFile::PutKeys(IndexTag& tag, const KeyList& keys) {
  std::uint32_t at = 0;
  int rc = Root(tag, &at);
  IndexNode* root = rc == kSuccess ? Load(tag, at, &rc) : nullptr;
  if (root == nullptr) return rc;
  const bool is_empty = root->leaf && root->Count() == 0;
  if (!is_empty || keys.Count() < kPackFrom) return IndexTree(*this, tag).InsertSorted(keys);
  // A tree that is yet to be made is packed as a whole.
  TreePacker packer(tag.shape, end_, [this](const std::uint8_t* page) { return PackPage(page); });
  rc = packer.Pack(keys);
  if (rc != kSuccess) return rc;
  Free(root);
  SetRoot(tag, packer.Root());
  return kSuccess;
}

int IndexFile::PackPage(const std::uint8_t* page) {
  if (static_cast<std::int64_t>(end_) + kPageBytes > size_limit_) return kErrorTooLarge;
  if (packed_.empty() || packed_.back().End() != end_ || packed_.back().bytes.size() >= kRunBytes) {
    packed_.push_back({end_, {}});
    packed_.back().bytes.reserve(kRunBytes);
  }
  packed_.back().bytes.insert(packed_.back().bytes.end(), page, page + kPageBytes);
  end_ += kPageBytes;
  return kSuccess;
}

// --- The end of a unit ---

int IndexFile::Collect(const Sink& sink) {
  ++counter_;
  std::array<std::uint8_t, 8> head{};
  Store32(&head[0], first_free_);
  Store32Big(&head[4], counter_);
  sink(4, head.data(), head.size());
  for (const auto& tag : tags_) {
    if (!tag->root_changed || tag->root_epoch != epoch_) continue;
    std::array<std::uint8_t, 4> root{};
    Store32(root.data(), tag->root);
    sink(tag->header_offset, root.data(), root.size());
  }
  std::array<std::uint8_t, kPageBytes> page{};
  for (const auto& [offset, next] : free_links_) {
    page.fill(0);
    Store32(page.data(), next);
    sink(offset, page.data(), page.size());
  }
  std::sort(changed_.begin(), changed_.end());
  changed_.erase(std::unique(changed_.begin(), changed_.end()), changed_.end());
  for (const std::uint32_t offset : changed_) {
    const IndexNode* node = nodes_[offset / kPageBytes].get();
    if (node == nullptr || !node->dirty) continue;
    const bool is_root = std::any_of(tags_.begin(), tags_.end(), [&](const auto& tag) {
      return tag->root_epoch == epoch_ && tag->root == node->offset;
    });
    if (!EncodePage(*node, is_root, page.data())) return kErrorIndex;
    sink(node->offset, page.data(), page.size());
  }
  return kSuccess;
}

void IndexFile::Publish() {
  for (const std::uint32_t offset : changed_) {
    if (IndexNode* node = nodes_[offset / kPageBytes].get()) node->dirty = false;
  }
  changed_.clear();
  for (const auto& tag : tags_) tag->root_changed = false;
  free_links_.clear();
  packed_.clear();
  written_ = false;
  file_->Unlock(kIndexLockAt, 1);
  TrimCache();
}

void IndexFile::Discard() {
  if (!written_) return;
  for (const auto& tag : tags_) {
    if (tag->queue) tag->queue->Clear();
  }
  queued_ = false;
  queue_failure_ = 0;
  free_links_.clear();
  packed_.clear();
  changed_.clear();
  counter_known_ = false;
  DropCache();
  written_ = false;
  file_->Unlock(kIndexLockAt, 1);
}

}  // namespace tallwick::engine
