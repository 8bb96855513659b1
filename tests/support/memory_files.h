// Files in memory behind the engine's file layer: for tests that need no disk, and for fuzzing.
//
// A file lives as long as its name or an open File refers to it, as on a POSIX disk. Locks belong to the open
// File and end with it, so two opens of one file exclude each other here too. Not for use by several threads.
#pragma once

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "store/engine/file.h"

namespace tallwick::testing {

class MemoryFiles : public engine::FileLayer {
 public:
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
    if (code != nullptr) *code = result;
    if (result != engine::kSuccess) return nullptr;
    if (!exists) found = nodes_.emplace(path, std::make_shared<Node>()).first;
    if (mode == OpenMode::kCreate) found->second->bytes.clear();
    return std::make_unique<OpenFile>(found->second, mode != OpenMode::kReadOnly, capacity_);
  }

  bool Exists(const std::string& path) override { return nodes_.contains(path); }

  int Remove(const std::string& path) override {
    return nodes_.erase(path) == 1 ? engine::kSuccess : engine::kErrorRemove;
  }

  int Rename(const std::string& from, const std::string& to) override {
    auto node = nodes_.extract(from);
    if (node.empty()) return engine::kErrorRename;
    nodes_.erase(to);
    node.key() = to;
    nodes_.insert(std::move(node));
    return engine::kSuccess;
  }

  int FlushFolder(const std::string&) override { return engine::kSuccess; }

  // Puts a whole file in place, or reads one ("" when it is missing), past all locks.
  void Put(const std::string& path, std::string bytes) {
    auto& node = nodes_[path];
    if (!node) node = std::make_shared<Node>();
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
  struct Node {
    std::string bytes;
    std::vector<LockedRange> locks;
  };

  class OpenFile : public engine::File {
   public:
    OpenFile(std::shared_ptr<Node> node, bool writable, std::int64_t capacity)
        : node_(std::move(node)), writable_(writable), capacity_(capacity) {}
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
      std::memcpy(buffer, node_->bytes.data() + offset, count);
      return static_cast<std::int64_t>(count);
    }

    int WriteAt(std::int64_t offset, const void* buffer, std::size_t length) override {
      if (!writable_ || offset < 0) return engine::kErrorWrite;
      const std::int64_t end = offset + static_cast<std::int64_t>(length);
      if (end > capacity_) return engine::kErrorDiskFull;
      if (end > Size()) node_->bytes.resize(static_cast<std::size_t>(end));
      if (length > 0) std::memcpy(node_->bytes.data() + offset, buffer, length);
      return engine::kSuccess;
    }

    int Truncate(std::int64_t size) override {
      if (!writable_ || size < 0) return engine::kErrorWrite;
      if (size > capacity_) return engine::kErrorDiskFull;
      node_->bytes.resize(static_cast<std::size_t>(size));
      return engine::kSuccess;
    }

    int Flush() override { return engine::kSuccess; }

    int Lock(std::int64_t offset, std::int64_t length, engine::LockKind kind) override {
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
    std::shared_ptr<Node> node_;
    bool writable_;
    std::int64_t capacity_;
  };

  std::map<std::string, std::shared_ptr<Node>> nodes_;
  std::int64_t capacity_;
};

}  // namespace tallwick::testing
