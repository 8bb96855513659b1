// Sheets in files: PDF, and PNG pictures. Works in a program without Qt's application object too, as long as
// no other thread makes one.
#pragma once

#include <memory>
#include <string>

#include "core/message_boxes.h"
#include "core/sheet.h"

namespace tallwick {

class ApplicationInNeed;

// `path` in the platform's form. False when the file could not be written; an older one is then as it was.
bool WriteSheetsPdf(const SheetDocument& document, const std::string& path);

// Page n goes to `stem` + "-n.png". The number of pages written, 0 when one could not be.
int WriteSheetPictures(const SheetDocument& document, const std::string& stem, int dots_per_inch);

// Puts everything into a PDF file, which stands for paper; what is printed later goes beside it, into files
// with a number behind their name.
class SheetFilePrinter : public SheetPrinter {
 public:
  SheetFilePrinter(std::string path, MessageBoxes* boxes);
  ~SheetFilePrinter() override;
  bool HasFont(std::string_view family) override;
  const SheetMeasure& Measure() override;
  SheetEnd Preview(const SheetMaker& make) override { return Print(make); }
  SheetEnd Print(const SheetMaker& make) override;

 private:
  // From the first need on: letters are measured between other work.
  void NeedApplication();

  std::unique_ptr<const ApplicationInNeed> application_;
  const std::string path_;
  MessageBoxes* boxes_;
  int printed_ = 0;
};

}  // namespace tallwick
