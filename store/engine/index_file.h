// A compound index file (CDX): the tag directory, the tags' headers, and a cache of pages.
//
// The first 1,024 bytes are the header of the directory, an index whose keys are the tag names (10
// characters) and whose record numbers are the offsets of the tags' headers, 1,024 bytes each:
//   0 root page, 4 first free page (directory; 0 or -1 none), 8 change counter (big-endian; directory), 12
//   key length, 14 options (0x01 unique, 0x08 filter, 0x20 compact, 0x40 compound, 0x80 directory), 15
//   signature, 16 header length, 18 page length, 502 descending, 504/506 filter text position and length,
//   508/510 key text position and length, 512 pool of the two texts
// A free page holds the offset of the next free page in its first four bytes.
//
// Pages are read under a shared lock on byte 0x7FFFFFFE and changed under an exclusive one. The change
// counter is raised with every change, so pages cached at the counter's present value are a consistent
// picture without a lock. Changed pages stay in memory until the unit of work hands them out.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/clock.h"
#include "store/engine/expression.h"
#include "store/engine/file.h"
#include "store/engine/index_page.h"
#include "store/engine/key_list.h"

namespace tallwick::engine {

inline constexpr int kTagHeaderBytes = 1024;
inline constexpr int kTagNameLength = 10;
inline constexpr std::int64_t kIndexLockAt = 0x7FFFFFFE;

enum TagOption : std::uint8_t {
  kOptionUnique = 0x01,
  kOptionFilter = 0x08,
  kOptionCompact = 0x20,
  kOptionCompound = 0x40,
  kOptionDirectory = 0x80,
};

struct IndexTag {
  std::string name;
  std::uint32_t header_offset = 0;
  KeyShape shape;
  bool unique = false;
  bool descending = false;
  std::string key_text;
  std::string filter_text;
  std::unique_ptr<const Expression> key;
  std::unique_ptr<const Expression> filter;  // null = every record
  ValueType key_type = ValueType::kText;

  // Keys that the unit of work has added and the tree does not hold yet.
  std::unique_ptr<KeyQueue> queue;

  std::uint32_t root = 0;
  std::uint64_t root_epoch = 0;  // of the cache at which `root` was read; 0 = never
  bool root_changed = false;
};

// The bytes of a tag's header.
std::array<std::uint8_t, kTagHeaderBytes> BuildTagHeader(const IndexTag& tag, std::uint8_t options);
// A tag from its layout: expressions parsed against the fields. kSuccess, kErrorTagExpression or
// kErrorParameter.
struct TagLayout;
int MakeTag(const TagLayout& layout, std::span<const FieldInfo> fields, IndexTag* tag);

class IndexFile {
 public:
  // Result of an operation that met a page which is not cached and may not be read without the lock.
  static constexpr int kNeedsLock = 1000;

  IndexFile(std::unique_ptr<File> file, Clock& clock) : file_(std::move(file)), clock_(clock) {}

  // Reads the directory and every tag. kSuccess, kErrorIndex, kErrorTagHeader, kErrorTagExpression or
  // kErrorRead.
  int Open(std::span<const FieldInfo> fields);

  std::vector<std::unique_ptr<IndexTag>>& Tags() { return tags_; }
  const std::vector<std::unique_ptr<IndexTag>>& Tags() const { return tags_; }
  IndexTag* FindTag(std::string_view name);

  // Runs a reading operation against a consistent state, without the lock where the cache suffices.
  template <class Operation>
  int Read(Operation operation) {
    if (written_) {
      const int rc = SettleQueues();
      return rc == 0 ? operation() : rc;
    }
    bool current = false;
    if (const int rc = CompareCounter(&current); rc != 0) return rc;
    if (current) {
      const int rc = operation();
      if (rc != kNeedsLock) return rc;
    }
    if (const int rc = LockShared(); rc != 0) return rc;
    const int rc = operation();
    UnlockShared();
    return rc;
  }

  // Takes the exclusive lock until Publish or Discard.
  int LockForChange();
  bool IsLockedForChange() const { return written_; }
  bool IsLocked() const { return written_ || shared_; }

  // A page of a tag; null with *rc set to kNeedsLock or an error.
  IndexNode* Load(const IndexTag& tag, std::uint32_t offset, int* rc);
  // The tag's root page offset as of now.
  int Root(IndexTag& tag, std::uint32_t* root);
  void SetRoot(IndexTag& tag, std::uint32_t root);
  // A new page; null with *rc set to kErrorTooLarge or kErrorIndex.
  IndexNode* Allocate(const IndexTag& tag, bool leaf, int* rc);
  void Free(IndexNode* node);
  // Must be called before a loaded page is changed.
  void Change(IndexNode* node);

  // Adds a key in a unit of work, to be put into the tree when the tag is next read or the unit ends.
  void Queue(IndexTag& tag, const std::uint8_t* key, std::uint32_t record);
  // Puts every queued key into its tree.
  int SettleQueues();
  // Pages behind the file's end that were packed in the unit, at most 1 MiB in a run. Pages of Collect that
  // stand at the same place are newer.
  struct PageRun {
    std::uint32_t offset = 0;
    std::vector<std::uint8_t> bytes;
    std::uint32_t End() const { return offset + static_cast<std::uint32_t>(bytes.size()); }
  };
  const std::deque<PageRun>& PackedPages() const { return packed_; }

  // Raised by every change of any cached page; a remembered position is good while it stands.
  std::uint64_t Version() const { return version_; }

  // The changed pages and headers of the unit, in ascending order of offset; the change counter is raised
  // among them.
  bool IsDirty() const { return written_ && (queued_ || version_ != locked_version_); }
  using Sink = std::function<void(std::int64_t offset, const std::uint8_t* bytes, std::size_t length)>;
  // kErrorIndex when a page cannot hold its entries.
  int Collect(const Sink& sink);
  // After the bytes are in the file: the cache is clean and the lock is released.
  void Publish();
  // Drops every change and the lock.
  void Discard();

  // Keeps the cache within bounds; called between operations, when no page is in hand.
  void TrimCache();

  File& Raw() { return *file_; }
  std::uint32_t FirstFree() const { return first_free_; }
  std::uint32_t End() const { return end_; }
  std::uint32_t Counter() const { return counter_; }
  void SetSizeLimit(std::int64_t limit) { size_limit_ = limit; }
  // What a dead writer left in the journal: `recover` applies it, called before a lock is taken; `pending`
  // says under the lock whether something is left. `writing` says whether others wait for this workstation.
  void SetRecovery(std::function<int()> recover, std::function<bool()> pending,
                   std::function<bool()> writing) {
    recover_ = std::move(recover);
    pending_ = std::move(pending);
    writing_ = std::move(writing);
  }

 private:
  int CompareCounter(bool* current);
  int LockShared();
  void UnlockShared();
  int TakeLock(LockKind kind, int max_tries);
  // Reads counter, free list and file length; drops the cache when the counter moved.
  int Refresh();
  void DropCache();
  int ReadDirectory(std::span<const FieldInfo> fields);
  int ReadTag(const std::string& name, std::uint32_t offset, std::span<const FieldInfo> fields);
  IndexNode* Keep(std::unique_ptr<IndexNode> node);
  int PutKeys(IndexTag& tag, const KeyList& keys);
  int PackPage(const std::uint8_t* page);
  bool ReadPage(std::uint32_t offset, std::uint8_t* page);

  std::unique_ptr<File> file_;
  Clock& clock_;
  std::function<int()> recover_;
  std::function<bool()> pending_;
  std::function<bool()> writing_;
  std::vector<std::unique_ptr<IndexTag>> tags_;
  std::vector<std::unique_ptr<IndexNode>> nodes_;  // by offset / kPageBytes
  std::size_t cached_bytes_ = 0;
  std::vector<std::uint32_t> changed_;  // offsets of pages marked dirty in the unit
  std::map<std::uint32_t, std::uint32_t>
      free_links_;  // pages freed in the unit, each with the next free page
  std::deque<PageRun> packed_;

  bool counter_known_ = false;
  std::uint32_t counter_ = 0;
  std::uint32_t first_free_ = kNoPage;
  std::uint32_t end_ = 0;
  std::int64_t size_limit_ = 0x7FFFFFFF;
  bool shared_ = false;
  bool written_ = false;
  bool queued_ = false;
  int queue_failure_ = 0;  // stays until the unit ends: what failed to go in is lost to the trees
  std::uint64_t version_ = 1;
  std::uint64_t epoch_ = 1;  // raised whenever the cache is dropped
  std::uint64_t locked_version_ = 0;
};

}  // namespace tallwick::engine
