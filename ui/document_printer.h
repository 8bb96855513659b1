// Documents on screen, paper and in PDF files. What stands where is core's business (print_pages.h); this
// draws it.
#pragma once

#include "core/message_boxes.h"
#include "core/print_document.h"

class QPagedPaintDevice;
class QString;

namespace tallwick {

class QtDocumentPrinter : public DocumentPrinter {
 public:
  explicit QtDocumentPrinter(MessageBoxes& boxes) : boxes_(boxes) {}

  void Preview(const PrintDocument& document) override;
  void Print(const PrintDocument& document) override;
  void SavePdf(const PrintDocument& document) override;

 private:
  MessageBoxes& boxes_;
};

// False when the file could not be written.
bool WritePdf(const PrintDocument& document, const QString& path);

}  // namespace tallwick
