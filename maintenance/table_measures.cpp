#include "maintenance/table_measures.h"

#include <algorithm>

namespace tallwick {
namespace {

constexpr std::size_t kBlockRecords = 4096;

}  // namespace

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

// A record begins with "*" when it is deleted.
std::int64_t LiveRecordsIn(const FileSystem& files, const std::string& path) {
  const std::optional<TableMeasures> measures = ReadTableMeasures(files, path);
  if (!measures) return 0;
  const std::uint64_t length = measures->record_length;
  std::int64_t live = 0;
  for (std::uint64_t record = 0; record < measures->counted; record += kBlockRecords) {
    const std::string block =
        files.ReadPart(path, measures->head_length + record * length, kBlockRecords * length).value_or("");
    const std::uint64_t held = std::min<std::uint64_t>(block.size() / length, measures->counted - record);
    for (std::uint64_t i = 0; i < held; ++i) live += block[i * length] != '*' ? 1 : 0;
    if (held < kBlockRecords) break;
  }
  return live;
}

}  // namespace tallwick
