// Rows of plain texts behind a grid.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/form.h"

namespace tallwick {

class TextRows : public RowSource {
 public:
  // `numeric`: the columns of numbers, from 0.
  explicit TextRows(std::vector<std::string> headings, std::vector<std::size_t> numeric = {})
      : headings_(std::move(headings)), numeric_(std::move(numeric)) {}
  // `style` as RowSource::RowStyle names it.
  void Add(std::vector<std::string> cells, std::string style = {}) {
    rows_.emplace_back(std::move(cells), std::move(style));
  }

  void SayWhenEmpty(std::string text) { empty_text_ = std::move(text); }

  // Puts a row's last cell; the row is the one with this first cell, or is added.
  void SetLast(std::string_view first, std::string_view last) {
    for (auto& [cells, style] : rows_) {
      if (cells.front() != first) continue;
      cells.back() = last;
      return;
    }
    Add({std::string(first), std::string(last)});
  }

  std::vector<std::string> Headings() const override { return headings_; }
  std::size_t RowCount() override { return rows_.size(); }
  std::vector<std::string> Row(std::size_t row) override {
    return row < rows_.size() ? rows_[row].first : std::vector<std::string>();
  }
  bool IsNumeric(std::size_t column) const override {
    return std::find(numeric_.begin(), numeric_.end(), column) != numeric_.end();
  }
  std::string RowStyle(std::size_t row) override { return row < rows_.size() ? rows_[row].second : ""; }
  std::string EmptyText() const override { return empty_text_; }

 private:
  std::vector<std::string> headings_;
  std::vector<std::size_t> numeric_;
  std::string empty_text_;
  std::vector<std::pair<std::vector<std::string>, std::string>> rows_;
};

}  // namespace tallwick
