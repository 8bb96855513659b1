#include "core/column_format.h"

#include <charconv>
#include <numeric>

#include "core/text.h"

namespace tallwick {
namespace {

constexpr int kWidest = 14 * 1440;

ColumnFormat ParseColumn(std::string_view text) {
  ColumnFormat column;
  if (!text.empty() && (text.front() == '>' || text.front() == '^')) column.alignment = text.front();
  const std::size_t digits = text.find_first_of("0123456789");
  if (digits == std::string_view::npos) return column;
  int width = 0;
  const auto result = std::from_chars(text.data() + digits, text.data() + text.size(), width);
  column.width = result.ec == std::errc() && width < kWidest ? width : kWidest;
  return column;
}

}  // namespace

std::vector<ColumnFormat> ParseColumnFormats(std::string_view text) {
  std::vector<ColumnFormat> columns;
  for (const std::string& piece : Split(text, '|')) columns.push_back(ParseColumn(piece));
  return columns;
}

int TotalWidth(const std::vector<ColumnFormat>& columns) {
  return std::accumulate(columns.begin(), columns.end(), 0,
                         [](int sum, const ColumnFormat& column) { return sum + column.width; });
}

}  // namespace tallwick
