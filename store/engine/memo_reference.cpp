#include "store/engine/memo_reference.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

constexpr int kBinaryWidth = 4;

}  // namespace

std::uint32_t MemoBlockAt(const FieldInfo& field, const std::uint8_t* place) {
  if (field.width == kBinaryWidth) return Load32(place);
  std::uint64_t block = 0;
  for (int i = 0; i < field.width; ++i) {
    if (place[i] >= '0' && place[i] <= '9') block = block * 10 + static_cast<std::uint64_t>(place[i] - '0');
    if (block > 0xFFFFFFFFU) return 0;
  }
  return static_cast<std::uint32_t>(block);
}

void PutMemoBlock(const FieldInfo& field, std::uint8_t* place, std::uint32_t block) {
  if (field.width == kBinaryWidth) {
    Store32(place, block);
    return;
  }
  std::memset(place, ' ', static_cast<std::size_t>(field.width));
  if (block == 0) return;
  const std::string digits = std::to_string(block);
  std::copy(digits.begin(), digits.end(), place + field.width - static_cast<int>(digits.size()));
}

}  // namespace tallwick::engine
