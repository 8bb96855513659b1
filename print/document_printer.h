// The desktop's way to paper: preview, printer dialog, and PDF files at a place that the person chooses.
#pragma once

#include "core/message_boxes.h"
#include "core/print_document.h"

namespace tallwick {

class QtDocumentPrinter : public DocumentPrinter {
 public:
  explicit QtDocumentPrinter(MessageBoxes& boxes) : boxes_(boxes) {}

  bool Preview(const PrintDocument& document) override;
  bool Print(const PrintDocument& document) override;
  bool SavePdf(const PrintDocument& document) override;

 private:
  bool Refused(const std::string& name);

  MessageBoxes& boxes_;
};

}  // namespace tallwick
