// A file whose writes stay in memory until the unit of work they belong to is committed. Reads see the staged
// bytes. Invariant: staged extents never overlap, and the file itself is not touched before the commit hands
// them out.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "store/engine/file.h"

namespace tallwick::engine {

class StagedFile {
 public:
  using Bytes = std::vector<std::uint8_t>;

  explicit StagedFile(std::unique_ptr<File> file) : file_(std::move(file)) {}

  File& Raw() { return *file_; }

  // As File::ReadAt and File::Size, with the staged bytes in place.
  std::int64_t ReadAt(std::int64_t offset, void* buffer, std::size_t length);
  std::int64_t Size();

  void Stage(std::int64_t offset, const void* bytes, std::size_t length);
  bool IsDirty() const { return !extents_.empty(); }
  // Staged bytes by offset, in ascending order.
  const std::map<std::int64_t, Bytes>& Extents() const { return extents_; }
  // Bytes staged, again and again at one place or not, since the last DropFrom or Discard.
  std::size_t RecentBytes() const { return recent_bytes_; }
  // Lets go of what is staged from an offset on: the file has it.
  void DropFrom(std::int64_t offset);
  void Discard();

 private:
  // The one extent that holds all of a range, if there is one; it begins at covering_at_.
  const Bytes* Covering(std::int64_t offset, std::int64_t end);

  std::unique_ptr<File> file_;
  std::int64_t covering_at_ = 0;
  std::size_t recent_bytes_ = 0;
  std::map<std::int64_t, Bytes> extents_;
};

}  // namespace tallwick::engine
