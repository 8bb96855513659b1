// A screen that shows a report: its commands preview, print and save it, Ctrl+P prints, Esc closes.
//
// Controls: mnuFilePreview, mnuFilePrint, mnuFilePdf, mnuFileExit.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/form.h"
#include "core/print_document.h"
#include "reports/report_document.h"
#include "shell/session.h"

namespace tallwick {

class ReportForm : public Form {
 protected:
  ReportForm(std::string name, Session& session);

  // What is shown now.
  virtual ReportDocument Report() = 0;
  void SetPrintable(bool on);

  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;

  Session& session_;

 private:
  void Send(bool (DocumentPrinter::*how)(const PrintDocument&));
};

// Rows of texts for a grid, with a word for the look of each (see RowSource::RowStyle).
class ReportGrid : public RowSource {
 public:
  struct Line {
    std::vector<std::string> cells;
    std::string style = {};
  };
  // Columns of `numeric` stand on the right.
  ReportGrid(std::vector<std::string> headings, std::vector<std::size_t> numeric, std::vector<Line> lines)
      : headings_(std::move(headings)), numeric_(std::move(numeric)), lines_(std::move(lines)) {}

  std::vector<std::string> Headings() const override { return headings_; }
  std::size_t RowCount() override { return lines_.size(); }
  std::vector<std::string> Row(std::size_t row) override;
  std::string RowStyle(std::size_t row) override;
  bool IsNumeric(std::size_t column) const override;

 private:
  const std::vector<std::string> headings_;
  const std::vector<std::size_t> numeric_;
  const std::vector<Line> lines_;
};

}  // namespace tallwick
