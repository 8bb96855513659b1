// How a table's file is laid out, read past the store: for tables that do not open, and files that are none
// of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/file_system.h"

namespace tallwick {

// Of a table's first bytes, little-endian: 4 to 7 the record count, 8 and 9 the head's length, 10 and 11 a
// record's length.
struct TableMeasures {
  std::uint64_t counted = 0;        // records, as the head says
  std::uint64_t head_length = 0;    // bytes
  std::uint64_t record_length = 0;  // bytes; not 0

  // How many records a file of this size holds.
  std::uint64_t HeldIn(std::uint64_t size) const {
    return size > head_length ? (size - head_length) / record_length : 0;
  }
};

// Nullopt for a file that cannot be read or is too short for a table.
std::optional<TableMeasures> ReadTableMeasures(const FileSystem& files, const std::string& path);

// Records that are counted, held and not deleted; 0 for a file that is no table.
std::int64_t LiveRecordsIn(const FileSystem& files, const std::string& path);

}  // namespace tallwick
