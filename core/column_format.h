// The column formats of printed tables: one piece for each column, separated by "|", each an alignment
// character (">" right, "<" left, "^" centred), "+" and a width in twips (1440 to the inch):
// ">+1000|^+1280|<+3160".
#pragma once

#include <string_view>
#include <vector>

namespace tallwick {

struct ColumnFormat {
  char alignment = '<';
  int width = 0;  // twips, never negative
  friend bool operator==(const ColumnFormat&, const ColumnFormat&) = default;
};

// A piece without an alignment character stands left, one without a number is 0 twips wide.
std::vector<ColumnFormat> ParseColumnFormats(std::string_view text);

// The sum of the widths.
int TotalWidth(const std::vector<ColumnFormat>& columns);

}  // namespace tallwick
