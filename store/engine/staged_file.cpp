#include "store/engine/staged_file.h"

#include <algorithm>
#include <cstring>

namespace tallwick::engine {
namespace {

// Adjacent writes join into one extent up to this size, so that growing it stays cheap.
constexpr std::size_t kJoinLimit = std::size_t{1} << 20;

std::int64_t End(const std::pair<const std::int64_t, StagedFile::Bytes>& extent) {
  return extent.first + static_cast<std::int64_t>(extent.second.size());
}

// Writes over an extent's bytes, and behind their end.
void Put(StagedFile::Bytes& extent, std::size_t at, const std::uint8_t* bytes, std::size_t length) {
  const std::size_t over = std::min(length, extent.size() - at);
  std::memcpy(extent.data() + at, bytes, over);
  if (over == length) return;
  // An extent that grows past this is likely to grow to the limit.
  if (extent.size() + length > extent.capacity() && extent.size() > kJoinLimit / 32)
    extent.reserve(2 * kJoinLimit);
  extent.insert(extent.end(), bytes + over, bytes + length);
}

}  // namespace

std::int64_t StagedFile::Size() {
  const std::int64_t size = file_->Size();
  if (size < 0 || extents_.empty()) return size;
  return std::max(size, End(*extents_.rbegin()));
}

const StagedFile::Bytes* StagedFile::Covering(std::int64_t offset, std::int64_t end) {
  auto extent = extents_.upper_bound(offset);
  if (extent == extents_.begin()) return nullptr;
  --extent;
  covering_at_ = extent->first;
  return End(*extent) >= end ? &extent->second : nullptr;
}

std::int64_t StagedFile::ReadAt(std::int64_t offset, void* buffer, std::size_t length) {
  const std::int64_t end = offset + static_cast<std::int64_t>(length);
  if (const Bytes* whole = Covering(offset, end)) {
    std::memcpy(buffer, whole->data() + (offset - covering_at_), length);
    return static_cast<std::int64_t>(length);
  }
  std::int64_t got = file_->ReadAt(offset, buffer, length);
  if (got < 0 || extents_.empty()) return got;
  auto* out = static_cast<std::uint8_t*>(buffer);
  auto extent = extents_.upper_bound(offset);
  if (extent != extents_.begin()) --extent;
  for (; extent != extents_.end() && extent->first < end; ++extent) {
    const std::int64_t from = std::max(extent->first, offset);
    const std::int64_t to = std::min(End(*extent), end);
    if (from >= to) continue;
    // A gap between the file's end and a staged extent reads as zeros.
    if (from - offset > got) std::memset(out + got, 0, static_cast<std::size_t>(from - offset - got));
    std::memcpy(out + (from - offset), extent->second.data() + (from - extent->first),
                static_cast<std::size_t>(to - from));
    got = std::max(got, to - offset);
  }
  return got;
}

void StagedFile::Stage(std::int64_t offset, const void* bytes, std::size_t length) {
  if (length == 0) return;
  recent_bytes_ += length;
  const auto* in = static_cast<const std::uint8_t*>(bytes);

  auto target = extents_.upper_bound(offset);
  bool joined = false;
  if (target != extents_.begin()) {
    --target;
    const bool touches =
        End(*target) > offset || (End(*target) == offset && target->second.size() < kJoinLimit);
    if (touches) {
      Put(target->second, static_cast<std::size_t>(offset - target->first), in, length);
      joined = true;
    }
  }
  if (!joined) target = extents_.emplace(offset, Bytes(in, in + length)).first;

  // Extents that the new one now covers or runs into give up to it what lies behind its end.
  for (auto next = std::next(target); next != extents_.end() && next->first < End(*target);) {
    if (End(*next) > End(*target)) {
      const auto tail = static_cast<std::ptrdiff_t>(End(*target) - next->first);
      target->second.insert(target->second.end(), next->second.begin() + tail, next->second.end());
    }
    next = extents_.erase(next);
  }
}

void StagedFile::DropFrom(std::int64_t offset) {
  recent_bytes_ = 0;
  auto extent = extents_.lower_bound(offset);
  extents_.erase(extent, extents_.end());
  if (extents_.empty()) return;
  extent = std::prev(extents_.end());
  if (End(*extent) > offset) extent->second.resize(static_cast<std::size_t>(offset - extent->first));
}

void StagedFile::Discard() {
  extents_.clear();
  recent_bytes_ = 0;
}

}  // namespace tallwick::engine
