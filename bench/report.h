// Medians, and the table that the program prints.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tallwick::bench {

// The middle of the values, which are not empty; the mean of the middle two when their count is even.
double Median(std::vector<double> values);

// One line of the table. Times are in seconds for one of `items`.
struct Row {
  std::string work;
  double ours = 0;
  std::optional<double> theirs;
  std::optional<double> goal;  // ours / theirs may be at most this
};

// The rows as a Markdown table, a ratio below 1 meaning that ours is faster.
std::string MarkdownTable(const std::vector<Row>& rows);

}  // namespace tallwick::bench
