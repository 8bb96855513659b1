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
  SheetEnd Preview(const SheetMaker& make) override;
  SheetEnd Print(const SheetMaker& make) override;

 private:
  // Draws what was chosen. False when the printer did not take it.
  static bool Draw(QPrinter& printer, const SheetMaker& make);
  // What to say and to give back then: pages before the failure may have come out.
  SheetEnd Refused(const std::string& name);

  MessageBoxes& boxes_;
};

}  // namespace tallwick
