// A printer that keeps what it is given instead of paper.
#pragma once

#include <string>
#include <vector>

#include "core/print_document.h"

namespace tallwick::testing {

class KeepingPrinter : public DocumentPrinter {
 public:
  bool Preview(const PrintDocument& document) override { return Keep("preview", document); }
  bool Print(const PrintDocument& document) override { return Keep("print", document); }
  bool SavePdf(const PrintDocument& document) override { return Keep("pdf", document); }
  bool SaveRtf(const std::string& name, const std::string& text) override {
    ways.push_back("rtf " + name);
    rtf = text;
    return works;
  }
  // Every cell of the last document, a row a line.
  std::string Text() const {
    std::string text;
    for (const PrintSection& section : last.sections) {
      for (const PrintRow& row : section.rows) {
        for (const std::string& cell : row.cells) text += cell + "|";
        text += "\n";
      }
    }
    return text;
  }

  bool works = true;
  std::vector<std::string> ways;  // "print Ledger 24-0117", in order
  PrintDocument last;
  std::string rtf;

 private:
  bool Keep(const std::string& way, const PrintDocument& document) {
    ways.push_back(way + " " + document.name);
    last = document;
    return works;
  }
};

}  // namespace tallwick::testing
