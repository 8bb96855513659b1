// A report as its author says it: a heading line, tables with their columns, subtotals and remarks.
// report_rtf.h makes RTF of it, report_pages.h the pages that are previewed, printed and saved as PDF.
//
// A table is described by two texts: the headings separated by "|", and the column formats separated by "|"
// (column_format.h). Lengths are twips; 10800 is the width of an upright page, 14400 of one across.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/currency.h"
#include "core/date.h"

namespace tallwick {

inline constexpr std::string_view kFullLine = "<+10800";

struct ReportRow {
  enum class Kind {
    kPlain,
    kSubtotal,  // strong, and never the first row of a page
    kRemark,    // small
  };
  Kind kind = Kind::kPlain;
  std::string format;  // "" = the table's
  std::vector<std::string> cells;
};

struct ReportTable {
  std::string caption;   // a strong line above the headings, repeated on every page; "" = none
  std::string headings;  // repeated on every page; "" = none
  std::string format;
  std::vector<ReportRow> rows;
  std::string page_caption = {};  // a caption only where a page begins with the table; "" = none

  void Add(std::vector<std::string> cells) {
    rows.push_back({ReportRow::Kind::kPlain, {}, std::move(cells)});
  }
  // `row_format` "" = the table's.
  void AddSubtotal(std::vector<std::string> cells, std::string_view row_format = {}) {
    rows.push_back({ReportRow::Kind::kSubtotal, std::string(row_format), std::move(cells)});
  }
};

// Who made a report, where and when, for its head and foot.
struct ReportOrigin {
  std::string user;     // the preparing user's name; "" = nobody is named
  DateTime when;        // when it was prepared
  std::string version;  // of the program, "1.00.0001"
  std::string company;  // at the foot of every page
};

struct ReportDocument {
  std::string group;  // of reports: "ESCROW REPORTS"
  std::string title;  // the head begins with it: "Escrow Ledger for File: 24-0117"
  std::string name;   // proposed as the file name: "Ledger 24-0117 2024-03-15"
  ReportOrigin origin;
  bool landscape = false;
  std::vector<ReportTable> tables;

  ReportTable& AddTable(std::string_view headings, std::string_view format, std::string_view caption = {});
  // A paragraph of its own, over the whole width.
  void AddText(std::string_view text, ReportRow::Kind kind = ReportRow::Kind::kPlain);
};

// "Escrow Ledger for File: 24-0117, prep by Mary Klein, March 15, 2024 9:30 AM".
std::string HeadLine(const ReportDocument& report);
// "Version: 1.00.0001".
std::string VersionLine(const ReportDocument& report);

// An amount in a report: "1,250.00", negative with a minus.
std::string ReportAmount(Currency amount);
// "Mar 15,2024"; "" for no date.
std::string ReportDate(const Date& date);
// The caption of a counted sum: "Total Checks  (3)".
std::string CountedCaption(std::string_view caption, int count);

}  // namespace tallwick
