// The desktop's way to paper: preview, printer dialog, and PDF files at a place that the person chooses.
#pragma once

#include <QString>
#include <functional>
#include <string>

#include "core/message_boxes.h"
#include "core/print_document.h"

namespace tallwick {

class QtDocumentPrinter : public DocumentPrinter {
 public:
  explicit QtDocumentPrinter(MessageBoxes& boxes) : boxes_(boxes) {}

  bool Preview(const PrintDocument& document) override;
  bool Print(const PrintDocument& document) override;
  bool SavePdf(const PrintDocument& document) override;
  bool SaveRtf(const std::string& name, const std::string& rtf) override;

 private:
  bool Refused(const std::string& name);
  // Asks for the place of a file of this kind ("PDF"), and has it written there.
  bool Save(const std::string& name, const QString& kind,
            const std::function<bool(const std::string&)>& write);

  MessageBoxes& boxes_;
};

}  // namespace tallwick
