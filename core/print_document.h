// A document to be printed, as rows of cells, and the port that shows, prints and saves it. What stands on
// which page is decided by print_pages.h, the same for preview, paper and PDF.
#pragma once

#include <string>
#include <vector>

namespace tallwick {

enum class PrintStyle {
  kTitle,    // large
  kText,     // plain
  kHeading,  // of columns, with a line below its last row
  kStrong,   // the row that a group begins with
  kRow,
};

struct PrintRow {
  PrintStyle style = PrintStyle::kText;
  // One format for each cell, separated by "|": an alignment character ("<" left, ">" right, "^" centred),
  // "+" and a width in twips. "" gives the one cell the whole width.
  std::string columns;
  std::vector<std::string> cells;  // UTF-8
  bool with_next = false;          // not the last row of a page when another follows
};

struct PrintDocument {
  std::string name;  // proposed as the file name, without folder and extension
  bool landscape = false;
  std::vector<PrintRow> rows;
  // Repeated at the top of every page, on the first one behind the rows before `heading_at`.
  std::vector<PrintRow> heading;
  std::size_t heading_at = 0;
};

class DocumentPrinter {
 public:
  virtual ~DocumentPrinter() = default;
  // Each asks the user what it needs to know, and reports its own failures.
  virtual void Preview(const PrintDocument& document) = 0;
  virtual void Print(const PrintDocument& document) = 0;
  virtual void SavePdf(const PrintDocument& document) = 0;
};

}  // namespace tallwick
