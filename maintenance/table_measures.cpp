#include "maintenance/table_measures.h"

namespace tallwick {

std::optional<TableMeasures> ReadTableMeasures(const FileSystem& files, const std::string& path) {
  const std::string head = files.ReadPart(path, 0, 12).value_or("");
  if (head.size() < 12) return std::nullopt;
  const auto number = [&](std::size_t from, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = from + count; i > from; --i)
      value = value * 256 + static_cast<unsigned char>(head[i - 1]);
    return value;
  };
  const TableMeasures measures{number(4, 4), number(8, 2), number(10, 2)};
  return measures.record_length == 0 ? std::nullopt : std::optional(measures);
}

}  // namespace tallwick
