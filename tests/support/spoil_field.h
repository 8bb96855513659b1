// Damage to a field of a table, or what another program has left there.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <string>
#include <string_view>

#include "core/system_ports.h"
#include "core/text.h"
#include "tables/packed_record.h"

namespace tallwick::testing {

// Puts the text into a numeric field of a record of the open table, in the file itself.
inline void SpoilField(TableBase& table, std::int32_t record, std::string_view field, std::string_view text) {
  ASSERT_TRUE(table.GoTo(record));
  const PackedField place = PackedFields(table).Find(field, 'N');
  const std::size_t length = table.Data().RecordBytes(table.Handle()).size();
  std::fstream file(SystemFileSystem().PlatformPath(table.Path()),
                    std::ios::in | std::ios::out | std::ios::binary);
  std::array<char, 12> head{};
  file.read(head.data(), head.size());
  const std::size_t head_length =
      static_cast<unsigned char>(head[8]) + 256U * static_cast<unsigned char>(head[9]);
  const std::size_t offset = head_length + (static_cast<std::size_t>(record) - 1) * length + place.offset;
  file.seekp(static_cast<std::streamoff>(offset));
  file << PadLeft(text, place.width);
  ASSERT_TRUE(file.flush());
}

}  // namespace tallwick::testing
