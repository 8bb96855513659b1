// Medians, and the table that the program prints.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tallwick::bench {

// The middle of the values, which are not empty; the mean of the middle two when their count is even.
double Median(std::vector<double> values);

// One line of the table. Times are in seconds, of the whole work or of each of its items as `work` says.
struct Row {
  std::string work;
  double ours = 0;
  std::optional<double> theirs;
  std::optional<double> goal;  // ours / theirs may be at most this
};

// The rows as a Markdown table, a ratio below 1 meaning that ours is faster than what it is held against.
std::string MarkdownTable(const std::string& against, const std::vector<Row>& rows);
// A line of the table of memory.
std::string MemoryRow(const std::string& work, double mebibytes, double goal);

}  // namespace tallwick::bench
