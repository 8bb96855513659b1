// The desktop's way to check stock: preview and printer dialog. The printer chosen last is proposed again.
#pragma once

#include <QPrinter>

#include "core/message_boxes.h"
#include "core/sheet.h"

namespace tallwick {

class QtSheetPrinter : public SheetPrinter {
 public:
  explicit QtSheetPrinter(MessageBoxes& boxes) : boxes_(boxes) {}
  bool HasFont(std::string_view family) override;
  const SheetMeasure& Measure() override;
  bool Preview(const SheetMaker& make) override;
  bool Print(const SheetMaker& make) override;

 private:
  // Draws what was chosen. False when the printer did not take it.
  static bool Draw(QPrinter& printer, const SheetMaker& make);
  bool Refused(const std::string& name);

  MessageBoxes& boxes_;
};

}  // namespace tallwick
