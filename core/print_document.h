// A document to be printed, as rows of cells, and the port that shows, prints and saves it. What stands on
// which page is decided by print_pages.h, the same for preview, paper and PDF.
#pragma once

#include <string>
#include <vector>

namespace tallwick {

enum class PrintStyle {
  kTitle,    // large
  kHeader,   // 12 points, strong: what a page begins with
  kSmall,    // 8 points
  kText,     // plain
  kHeading,  // of columns
  kStrong,   // the row that a group begins with
  kRow,
  kTotal,  // strong, in the letters of a row
};

struct PrintRow {
  PrintStyle style = PrintStyle::kText;
  // One format for each cell (column_format.h). "" gives the one cell the whole width.
  std::string columns;
  std::vector<std::string> cells;  // UTF-8
  bool with_next = false;          // not the last row of a page when another follows
};

// Rows under headings, which are repeated on every page that the rows reach, with a line below them.
struct PrintSection {
  std::vector<PrintRow> heading;
  std::vector<PrintRow> rows;
  std::vector<PrintRow> page_heading = {};  // above the heading, only where a page begins with the section
};

struct PrintDocument {
  std::string name;  // proposed as the file name, without folder and extension
  bool landscape = false;
  std::vector<PrintRow> header;  // at the top of every page
  std::string footer;            // at the left of every page's last line, which ends with the page's number
  std::vector<PrintSection> sections;
};

class DocumentPrinter {
 public:
  virtual ~DocumentPrinter() = default;
  // Each asks the user what it needs to know, and reports its own failures. True when the document went where
  // it was sent (a preview: when it was printed or saved from there); false also when the user thought better of it.
  virtual bool Preview(const PrintDocument& document) = 0;
  virtual bool Print(const PrintDocument& document) = 0;
  virtual bool SavePdf(const PrintDocument& document) = 0;
  // Rich text that stands already; `name` is proposed as the file name.
  virtual bool SaveRtf(const std::string& name, const std::string& rtf) = 0;
};

}  // namespace tallwick
