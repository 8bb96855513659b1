// Rows of plain texts behind a grid.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/form.h"

namespace tallwick {

class TextRows : public RowSource {
 public:
  explicit TextRows(std::vector<std::string> headings) : headings_(std::move(headings)) {}
  // `style` as RowSource::RowStyle names it.
  void Add(std::vector<std::string> cells, std::string style = {}) {
    rows_.emplace_back(std::move(cells), std::move(style));
  }

  std::vector<std::string> Headings() const override { return headings_; }
  std::size_t RowCount() override { return rows_.size(); }
  std::vector<std::string> Row(std::size_t row) override {
    return row < rows_.size() ? rows_[row].first : std::vector<std::string>();
  }
  std::string RowStyle(std::size_t row) override { return row < rows_.size() ? rows_[row].second : ""; }

 private:
  std::vector<std::string> headings_;
  std::vector<std::pair<std::vector<std::string>, std::string>> rows_;
};

}  // namespace tallwick
