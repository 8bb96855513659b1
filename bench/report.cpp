#include "bench/report.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tallwick::bench {
namespace {

std::string Format(const char* format, double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

std::string Time(double seconds) {
  if (seconds >= 1) return Format("%.2f s", seconds);
  if (seconds >= 1e-3) return Format("%.2f ms", seconds * 1e3);
  return Format("%.2f µs", seconds * 1e6);
}

}  // namespace

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::string MemoryRow(const std::string& work, double mebibytes, double goal) {
  return "| " + work + " | " + Format("%.0f MiB", mebibytes) + " | ≤ " + Format("%.0f MiB", goal) +
         (mebibytes <= goal ? " | yes |\n" : " | no |\n");
}

std::string MarkdownTable(const std::string& against, const std::vector<Row>& rows) {
  std::string table =
      "| work | ours | " + against + " | ratio | goal | ok |\n| --- | ---: | ---: | ---: | ---: | --- |\n";
  for (const Row& row : rows) {
    table += "| " + row.work + " | " + Time(row.ours) + " | ";
    if (row.theirs) {
      const double ratio = row.ours / *row.theirs;
      table += Time(*row.theirs) + " | " + Format("%.2f", ratio) + " | ";
      table +=
          row.goal ? "≤ " + Format("%.2f", *row.goal) + (ratio <= *row.goal ? " | yes" : " | no") : "– | –";
    } else {
      table += "– | – | – | –";
    }
    table += " |\n";
  }
  return table;
}

}  // namespace tallwick::bench
