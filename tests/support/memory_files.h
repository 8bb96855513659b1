// Files in memory behind the engine's file layer: for tests that need no disk, and for fuzzing.
//
// A file lives as long as its name or an open File refers to it, as on a POSIX disk. Locks belong to the open
// File and end with it, so two opens of one file exclude each other here too. Not for use by several threads.
//
// A fault can be planned for the n-th change (write, truncate, flush, create, rename, remove, folder flush).
// After a death the disk is looked at again by Restart: as a process death leaves it (everything written
// stands) or as a power cut does (only what was flushed stands, names only where their folder was flushed).
// What a flush that failed should have made durable is lost for later flushes too, as it is on Linux.
#pragma once

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "store/engine/file.h"

namespace tallwick::testing {

enum class Fault {
  kNone,
  kFail,   // the one change fails and has no effect
  kShort,  // half of the one write is done, then it fails
  kFull,   // from here on the disk is full: writes fail, and what was there stays
  kDie,    // the process dies before the change: nothing works until Restart
  kTear,   // the process dies in the middle of a write, at a sector boundary
};

class MemoryFiles : public engine::FileLayer {
 public:
  // The fault strikes at the change with this number (from 1, counted from this call).
  void Plan(Fault fault, int at_change) {
    fault_ = fault;
    fault_at_ = at_change;
    changes_ = 0;
    full_ = false;
  }
  // From now on nothing can be opened for writing.
  void SetReadOnly(bool on) { read_only_ = on; }
  int Changes() const { return changes_; }
  int Flushes() const { return flushes_; }
  bool IsDead() const { return dead_; }
  // Whether the planned fault has struck, be it a death or not.
  bool HasStruck() const { return fault_ != Fault::kNone && changes_ >= fault_at_; }

  // After a death (all open files of the dead process must be closed).
  void Restart(bool power_cut) {
    Plan(Fault::kNone, 0);
    dead_ = false;
    if (!power_cut) return;
    nodes_ = durable_names_;
    for (auto& [path, node] : nodes_) {
      node->bytes = node->durable;
      node->dirty.clear();
      node->shortest = std::string::npos;
    }
  }

  // A disk of its own with the same files.
  std::unique_ptr<MemoryFiles> Clone() const {
    auto copy = std::make_unique<MemoryFiles>(capacity_);
    for (const auto& [path, node] : nodes_)
      copy->nodes_[path] = std::make_shared<Node>(Node{node->bytes, node->bytes, {}, std::string::npos, {}});
    copy->durable_names_ = copy->nodes_;
    return copy;
  }

  // A write that would make one file longer than `capacity` bytes meets a full disk.
  explicit MemoryFiles(std::int64_t capacity = std::int64_t{1} << 30) : capacity_(capacity) {}

  std::unique_ptr<engine::File> Open(const std::string& path, engine::OpenMode mode, int* code) override {
    using engine::OpenMode;
    auto found = nodes_.find(path);
    const bool exists = found != nodes_.end();
    const bool makes = mode != OpenMode::kReadOnly && mode != OpenMode::kReadWrite;
    int result = engine::kSuccess;
    if (exists && mode == OpenMode::kCreateNew) result = engine::kErrorExists;
    if (!exists && !makes) result = engine::kErrorOpen;
    if (read_only_ && mode != OpenMode::kReadOnly && (exists || makes)) result = engine::kErrorReadOnly;
    if (result == engine::kSuccess && dead_) result = engine::kErrorOpen;
    const bool changes = !exists || mode == OpenMode::kCreate;
    if (result == engine::kSuccess && changes) result = Step(engine::kErrorCreate);
    if (code != nullptr) *code = result;
    if (result != engine::kSuccess) return nullptr;
    if (!exists) found = nodes_.emplace(path, std::make_shared<Node>()).first;
    if (mode == OpenMode::kCreate) {
      found->second->Touch(0, found->second->bytes.size());
      found->second->bytes.clear();
      found->second->shortest = 0;
    }
    return std::make_unique<OpenFile>(*this, found->second, mode != OpenMode::kReadOnly);
  }

  bool Exists(const std::string& path) override { return nodes_.contains(path); }

  int Remove(const std::string& path) override {
    if (const int rc = Step(engine::kErrorRemove); rc != engine::kSuccess) return rc;
    return nodes_.erase(path) == 1 ? engine::kSuccess : engine::kErrorRemove;
  }

  int Rename(const std::string& from, const std::string& to) override {
    if (const int rc = Step(engine::kErrorRename); rc != engine::kSuccess) return rc;
    auto node = nodes_.extract(from);
    if (node.empty()) return engine::kErrorRename;
    nodes_.erase(to);
    node.key() = to;
    nodes_.insert(std::move(node));
    return engine::kSuccess;
  }

  int FlushFolder(const std::string&) override {
    if (const int rc = Step(engine::kErrorWrite); rc != engine::kSuccess) return rc;
    durable_names_ = nodes_;
    return engine::kSuccess;
  }

  // Puts a whole file in place, or reads one ("" when it is missing), past all locks.
  void Put(const std::string& path, std::string bytes) {
    auto& node = nodes_[path];
    if (!node) node = std::make_shared<Node>();
    node->Touch(0, bytes.size());
    node->bytes = std::move(bytes);
  }
  std::string Get(const std::string& path) const {
    const auto found = nodes_.find(path);
    return found == nodes_.end() ? std::string() : found->second->bytes;
  }

 private:
  class OpenFile;
  struct LockedRange {
    const OpenFile* owner;
    std::int64_t begin;
    std::int64_t end;
    engine::LockKind kind;
  };
  static constexpr std::size_t kPage = 512;

  struct Node {
    std::string bytes;
    std::string durable;                       // as last flushed
    std::set<std::size_t> dirty;               // pages written since, by the system's own account
    std::size_t shortest = std::string::npos;  // its least length since the last flush that held
    std::vector<LockedRange> locks;

    void Touch(std::size_t from, std::size_t to) {
      for (std::size_t page = from / kPage; page * kPage < to; ++page) dirty.insert(page);
    }
  };

  // Counts a change and says whether it may happen.
  int Step(int failure) {
    if (dead_) return failure;
    if (++changes_ != fault_at_) return full_ ? engine::kErrorDiskFull : engine::kSuccess;
    if (fault_ == Fault::kDie || fault_ == Fault::kTear) dead_ = true;
    if (fault_ == Fault::kFull) full_ = true;
    return fault_ == Fault::kFull ? engine::kErrorDiskFull : failure;
  }

  class OpenFile : public engine::File {
   public:
    OpenFile(MemoryFiles& disk, std::shared_ptr<Node> node, bool writable)
        : disk_(disk), node_(std::move(node)), writable_(writable) {}
    ~OpenFile() override {
      std::erase_if(node_->locks, [this](const LockedRange& range) { return range.owner == this; });
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    std::int64_t Size() override { return static_cast<std::int64_t>(node_->bytes.size()); }

    std::int64_t ReadAt(std::int64_t offset, void* buffer, std::size_t length) override {
      if (offset < 0) return engine::kErrorRead;
      if (offset >= Size()) return 0;
      const std::size_t count = std::min(length, static_cast<std::size_t>(Size() - offset));
      std::copy_n(node_->bytes.data() + offset, count, static_cast<char*>(buffer));
      return static_cast<std::int64_t>(count);
    }

    int WriteAt(std::int64_t offset, const void* buffer, std::size_t length) override {
      if (!writable_ || offset < 0) return engine::kErrorWrite;
      if (offset + static_cast<std::int64_t>(length) > disk_.capacity_) return engine::kErrorDiskFull;
      const int rc = disk_.Step(engine::kErrorWrite);
      // A full disk still takes what falls on bytes it has.
      if (rc == engine::kErrorDiskFull && offset + static_cast<std::int64_t>(length) <= Size()) {
        Put(offset, buffer, length);
        return engine::kSuccess;
      }
      if (rc != engine::kSuccess && disk_.changes_ == disk_.fault_at_) {
        if (disk_.fault_ == Fault::kShort) Put(offset, buffer, length / 2);
        if (disk_.fault_ == Fault::kTear) {
          const std::int64_t sector = (offset + static_cast<std::int64_t>(length) / 2) / 512 * 512;
          if (sector > offset) Put(offset, buffer, static_cast<std::size_t>(sector - offset));
        }
      }
      if (rc == engine::kSuccess) Put(offset, buffer, length);
      return rc;
    }

    int Truncate(std::int64_t size) override {
      if (!writable_ || size < 0) return engine::kErrorWrite;
      if (size > disk_.capacity_) return engine::kErrorDiskFull;
      const int rc = disk_.Step(engine::kErrorWrite);
      if (rc != engine::kSuccess && !(rc == engine::kErrorDiskFull && size <= Size())) return rc;
      node_->Touch(static_cast<std::size_t>(size), node_->bytes.size());
      node_->bytes.resize(static_cast<std::size_t>(size));
      node_->shortest = std::min(node_->shortest, node_->bytes.size());
      return engine::kSuccess;
    }

    int Flush() override {
      const int rc = disk_.Step(engine::kErrorWrite);
      if (disk_.dead_) return rc;
      const std::set<std::size_t> pages = std::exchange(node_->dirty, {});
      if (rc == engine::kErrorWrite) return rc;
      ++disk_.flushes_;
      // A file does not get back what it gave up, even where the bytes behind its new end have been lost.
      node_->durable.resize(std::min(node_->durable.size(), node_->shortest));
      node_->shortest = std::string::npos;
      node_->durable.resize(node_->bytes.size());
      for (const std::size_t page : pages) {
        const std::size_t at = page * kPage;
        if (at < node_->bytes.size()) node_->durable.replace(at, kPage, node_->bytes, at, kPage);
      }
      return engine::kSuccess;
    }

    bool IsStill(const std::string& path) override {
      const auto named = disk_.nodes_.find(path);
      return named != disk_.nodes_.end() && named->second == node_;
    }

    int Lock(std::int64_t offset, std::int64_t length, engine::LockKind kind) override {
      if (!writable_ && kind == engine::LockKind::kExclusive) return engine::kErrorLock;
      const std::int64_t end = offset + length;
      for (const LockedRange& range : node_->locks) {
        const bool overlaps = range.begin < end && offset < range.end;
        const bool exclusive =
            kind == engine::LockKind::kExclusive || range.kind == engine::LockKind::kExclusive;
        if (range.owner != this && overlaps && exclusive) return engine::kLocked;
      }
      Unlock(offset, length);  // a second lock of the same bytes replaces the first
      node_->locks.push_back({this, offset, end, kind});
      return engine::kSuccess;
    }

    int Unlock(std::int64_t offset, std::int64_t length) override {
      const std::int64_t end = offset + length;
      std::vector<LockedRange> kept;
      for (const LockedRange& range : node_->locks) {
        if (range.owner != this || range.end <= offset || range.begin >= end) {
          kept.push_back(range);
          continue;
        }
        if (range.begin < offset) kept.push_back({this, range.begin, offset, range.kind});
        if (range.end > end) kept.push_back({this, end, range.end, range.kind});
      }
      node_->locks = std::move(kept);
      return engine::kSuccess;
    }

   private:
    void Put(std::int64_t offset, const void* buffer, std::size_t length) {
      const std::size_t end = static_cast<std::size_t>(offset) + length;
      if (end > node_->bytes.size()) node_->bytes.resize(end);
      if (length > 0) std::memcpy(node_->bytes.data() + offset, buffer, length);
      node_->Touch(static_cast<std::size_t>(offset), end);
    }

    MemoryFiles& disk_;
    std::shared_ptr<Node> node_;
    bool writable_;
  };

  using Names = std::map<std::string, std::shared_ptr<Node>>;
  Names nodes_;
  Names durable_names_;
  std::int64_t capacity_;
  Fault fault_ = Fault::kNone;
  int fault_at_ = 0;
  int changes_ = 0;
  int flushes_ = 0;
  bool full_ = false;
  bool read_only_ = false;
  bool dead_ = false;
};

}  // namespace tallwick::testing
