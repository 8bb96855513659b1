// A memo file (FPT), big-endian.
//   header   512 bytes: 0-3 number of the next free block, 6-7 block size (64 for new files; any from 1
//            is read, and 0 means 512 in files of some writers)
//   block k  starts at k * block size
//   memo     4 bytes type (1 text, 0 binary), 4 bytes length, the data, padded up to the block size
// A memo is rewritten in place when its blocks hold it, else appended; blocks given up are reclaimed by a
// pack.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/engine/staged_file.h"

namespace tallwick::engine {

class MemoFile {
 public:
  enum class Kind : std::uint32_t { kBinary = 0, kText = 1 };
  struct Extent {
    std::uint32_t first_block = 0;
    std::uint32_t blocks = 0;
  };

  static constexpr int kNewBlockSize = 64;

  explicit MemoFile(std::unique_ptr<File> file) : file_(std::move(file)) {}

  // Writes the header of an empty memo file.
  static int Create(File& file);
  // Reads the header. kSuccess or kErrorMemo.
  int Open();

  // Reads the memo at a block; 0 is the empty memo. kSuccess or kErrorMemo.
  int Read(std::uint32_t block, std::string* text, Kind* kind = nullptr);
  // The blocks a memo takes. kSuccess or kErrorMemo.
  int Measure(std::uint32_t block, Extent* extent);
  // Stages a memo in place of the one at `*block` (0 = none) and sets `*block` to where it lies now; an empty
  // text gives 0. `may_grow` is the greatest length the file may have. kSuccess, kErrorMemo or
  // kErrorTooLarge.
  int Write(std::uint32_t* block, std::string_view text, Kind kind, std::int64_t may_grow);

  std::uint32_t NextFree();
  // The first block behind the file's end: what NextFree should give. Negative when the length cannot be
  // read.
  std::int64_t BlocksHeld();
  // Stages it as the next free block. kErrorRead when the length cannot be read.
  int CorrectNextFree();
  int BlockSize() const { return block_size_; }
  StagedFile& Staged() { return file_; }
  bool IsDirty() const { return file_.IsDirty(); }

 private:
  int ReadHead(std::uint32_t block, std::uint32_t* length, Kind* kind = nullptr);

  StagedFile file_;
  int block_size_ = kNewBlockSize;
};

}  // namespace tallwick::engine
