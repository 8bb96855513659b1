// A memo field's reference in the record: the block number as text, right-aligned in 10 characters (blanks =
// no memo), or as 4 binary bytes in tables of the later variant.
#pragma once

#include <cstdint>

#include "store/engine/expression.h"

namespace tallwick::engine {

// Memos, and pictures and objects of other programs.
inline bool IsMemoReference(const FieldInfo& field) {
  return field.type == 'M' || field.type == 'G' || field.type == 'P';
}

// The block number at a field's place in a record; 0 = no memo, also for a reference that is no number.
std::uint32_t MemoBlockAt(const FieldInfo& field, const std::uint8_t* place);
void PutMemoBlock(const FieldInfo& field, std::uint8_t* place, std::uint32_t block);

}  // namespace tallwick::engine
