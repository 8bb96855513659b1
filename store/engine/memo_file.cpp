#include "store/engine/memo_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kHeaderBytes = 512;
constexpr std::size_t kMemoHead = 8;
constexpr int kUnstatedBlockSize = 512;

}  // namespace

int MemoFile::Create(File& file) {
  std::array<std::uint8_t, kHeaderBytes> header{};
  Store32Big(&header[0], kHeaderBytes / kNewBlockSize);
  Store16Big(&header[6], kNewBlockSize);
  return file.WriteAt(0, header.data(), header.size());
}

int MemoFile::Open() {
  std::array<std::uint8_t, 8> head{};
  if (file_.ReadAt(0, head.data(), head.size()) != static_cast<std::int64_t>(head.size())) return kErrorMemo;
  block_size_ = Load16Big(&head[6]);
  if (block_size_ == 0) block_size_ = kUnstatedBlockSize;
  return kSuccess;
}

std::uint32_t MemoFile::NextFree() {
  std::array<std::uint8_t, 4> head{};
  if (file_.ReadAt(0, head.data(), head.size()) != static_cast<std::int64_t>(head.size())) return 0;
  return Load32Big(head.data());
}

std::int64_t MemoFile::BlocksHeld() {
  const std::int64_t size = file_.Size();
  return size < 0 ? size : (size + block_size_ - 1) / block_size_;
}

int MemoFile::CorrectNextFree() {
  const std::int64_t held = BlocksHeld();
  if (held < 0) return kErrorRead;
  std::array<std::uint8_t, 4> next{};
  Store32Big(next.data(), static_cast<std::uint32_t>(held));
  file_.Stage(0, next.data(), next.size());
  return kSuccess;
}

int MemoFile::ReadHead(std::uint32_t block, std::uint32_t* length, Kind* kind) {
  std::array<std::uint8_t, kMemoHead> head{};
  const std::int64_t at = static_cast<std::int64_t>(block) * block_size_;
  if (at < static_cast<std::int64_t>(kHeaderBytes)) return kErrorMemo;
  if (file_.ReadAt(at, head.data(), head.size()) != static_cast<std::int64_t>(head.size())) return kErrorMemo;
  *length = Load32Big(&head[4]);
  if (kind != nullptr) *kind = Load32Big(&head[0]) == 0 ? Kind::kBinary : Kind::kText;
  const std::int64_t size = file_.Size();
  const std::int64_t end = at + static_cast<std::int64_t>(kMemoHead) + *length;
  return size >= 0 && end <= size ? kSuccess : kErrorMemo;
}

int MemoFile::Read(std::uint32_t block, std::string* text, Kind* kind) {
  text->clear();
  if (block == 0) return kSuccess;
  std::uint32_t length = 0;
  if (const int rc = ReadHead(block, &length, kind); rc != kSuccess) return rc;
  text->resize(length);
  const std::int64_t at =
      static_cast<std::int64_t>(block) * block_size_ + static_cast<std::int64_t>(kMemoHead);
  if (file_.ReadAt(at, text->data(), length) == static_cast<std::int64_t>(length)) return kSuccess;
  text->clear();
  return kErrorMemo;
}

int MemoFile::Measure(std::uint32_t block, Extent* extent) {
  *extent = Extent{block, 0};
  if (block == 0) return kSuccess;
  std::uint32_t length = 0;
  if (const int rc = ReadHead(block, &length); rc != kSuccess) return rc;
  const auto size = static_cast<std::uint64_t>(block_size_);
  extent->blocks = static_cast<std::uint32_t>((kMemoHead + length + size - 1) / size);
  return kSuccess;
}

int MemoFile::Write(std::uint32_t* block, std::string_view text, Kind kind, std::int64_t may_grow) {
  if (text.empty()) {
    *block = 0;
    return kSuccess;
  }
  const auto size = static_cast<std::size_t>(block_size_);
  const std::size_t blocks = (kMemoHead + text.size() + size - 1) / size;
  Extent old;
  // An unreadable old memo is left where it is, and the new one goes to the end.
  const bool in_place = *block != 0 && Measure(*block, &old) == kSuccess && old.blocks >= blocks;
  std::uint32_t target = *block;
  if (!in_place) {
    const std::int64_t length = file_.Size();
    if (length < 0) return kErrorMemo;
    const auto behind = static_cast<std::uint64_t>((length + block_size_ - 1) / block_size_);
    const std::uint64_t first =
        std::max<std::uint64_t>({NextFree(), behind, (kHeaderBytes + size - 1) / size});
    if (first + blocks > 0xFFFFFFFFU || static_cast<std::int64_t>((first + blocks) * size) > may_grow) {
      return kErrorTooLarge;
    }
    target = static_cast<std::uint32_t>(first);
    std::array<std::uint8_t, 4> next{};
    Store32Big(next.data(), static_cast<std::uint32_t>(first + blocks));
    file_.Stage(0, next.data(), next.size());
  }
  std::vector<std::uint8_t> bytes(blocks * size, 0);
  Store32Big(&bytes[0], static_cast<std::uint32_t>(kind));
  Store32Big(&bytes[4], static_cast<std::uint32_t>(text.size()));
  std::memcpy(&bytes[kMemoHead], text.data(), text.size());
  file_.Stage(static_cast<std::int64_t>(target) * block_size_, bytes.data(), bytes.size());
  *block = target;
  return kSuccess;
}

}  // namespace tallwick::engine
