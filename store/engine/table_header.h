// The head of a table file (DBF): 32 bytes, a 32-byte descriptor per field, 0x0D, then the records, then one
// 0x1A.
//
//   0     0x03 no memo, 0xF5 with an FPT memo file, 0x30 the later variant (read, and written back as it is)
//   1-3   date of last update: year - 1900, month, day
//   4-7   number of records, deleted ones included
//   8-9   header length = 32 + 32 * fields + 1 (0x30 adds 263)
//   10-11 record length = 1 + sum of widths
//   28    flags: 0x01 structural CDX, 0x02 memo
//   29    code page mark: 0x03 = Windows-1252
//
//   descriptor: 0-10 name, NUL padded; 11 type; 12-15 offset in the record; 16 width; 17 decimals (C: high
//   byte of the width); 18 flags
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/date.h"
#include "store/engine/codebase.h"
#include "store/engine/expression.h"

namespace tallwick::engine {

struct TableHeader {
  std::uint8_t version = 0x03;
  std::uint32_t record_count = 0;
  int header_length = 0;
  int record_length = 0;
  bool has_index = false;
  bool has_memo = false;
  std::vector<FieldInfo> fields;
};

inline constexpr int kTableHeadBytes = 32;
inline constexpr int kMaxFields = 1023;
inline constexpr std::uint8_t kEndOfFileMark = 0x1A;

// Reads the head of a table from the first bytes of its file (at least header_length of them;
// ReadHeaderLength says how many). kSuccess or kErrorDataStructure.
int ParseTableHeader(std::span<const std::uint8_t> bytes, TableHeader* header);
// The header length that the first 32 bytes state; 0 when they are no table's.
int ReadHeaderLength(std::span<const std::uint8_t> head);

// Checks a field list and lays it out: offsets, record length, header length. kSuccess or kErrorParameter.
int LayOutTable(std::span<const FieldLayout> fields, bool with_index, TableHeader* header);
// The header's bytes, descriptors and 0x0D included.
std::vector<std::uint8_t> BuildTableHeader(const TableHeader& header, const Date& today);

}  // namespace tallwick::engine
