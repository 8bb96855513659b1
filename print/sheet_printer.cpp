#include "print/sheet_printer.h"

#include <QApplication>
#include <QPaintEngine>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSettings>

#include "print/preview_dialog.h"
#include "print/printer_result.h"
#include "print/sheet_renderer.h"

namespace tallwick {
namespace {

constexpr const char* kLastPrinter = "sheets/printer";

// A printer prepared for the sheets, and the sheets for the printer: another one may move them otherwise.
SheetDocument Prepare(QPrinter& printer, const SheetMaker& make, int prints) {
  SheetDocument document = make(LetterMeasure(), {printer.printerName().toStdString(), prints});
  SetSheetPaper(document.width, document.height, printer);
  printer.setDocName(QString::fromStdString(document.name));
  return document;
}

// A printer that is not there any more is passed over.
void ProposeLast(QPrinter& printer) {
  const QString last = QSettings().value(kLastPrinter).toString();
  if (QPrinterInfo::availablePrinterNames().contains(last)) printer.setPrinterName(last);
}

void RememberLast(const QPrinter& printer) {
  if (!printer.printerName().isEmpty()) QSettings().setValue(kLastPrinter, printer.printerName());
}

// A preview draws on a device of its own in the printer's place.
bool IsOnPaper(const QPrinter& printer) {
  return printer.paintEngine()->type() != QPaintEngine::Picture;
}

}  // namespace

bool QtSheetPrinter::HasFont(std::string_view family) {
  return HasLetters(family);
}

const SheetMeasure& QtSheetPrinter::Measure() {
  static const LetterMeasure measure;
  return measure;
}

SheetEnd QtSheetPrinter::Preview(const SheetMaker& make) {
  QPrinter printer(QPrinter::HighResolution);
  ProposeLast(printer);
  const SheetDocument document = Prepare(printer, make, 0);
  printer.setCopyCount(document.prints);
  QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
  DressPreview(dialog, document.name);
  bool sent = false;
  bool taken = false;
  QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&](QPrinter* device) {
    const bool on_paper = IsOnPaper(*device);
    const bool drawn = Draw(*device, make);
    sent = sent || on_paper;
    if (on_paper) taken = drawn;
  });
  dialog.exec();
  if (!sent) return SheetEnd::kNothing;
  RememberLast(printer);
  return taken ? SheetEnd::kPrinted : Refused(document.name);
}

SheetEnd QtSheetPrinter::Print(const SheetMaker& make) {
  QPrinter printer(QPrinter::HighResolution);
  ProposeLast(printer);
  const SheetDocument document = Prepare(printer, make, 0);
  printer.setCopyCount(document.prints);
  QPrintDialog dialog(&printer, QApplication::activeWindow());
  // All or nothing: what is noted as printed must be on paper.
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
  dialog.setOption(QAbstractPrintDialog::PrintCollateCopies, false);
  if (dialog.exec() != QDialog::Accepted) return SheetEnd::kNothing;
  RememberLast(printer);
  return Draw(printer, make) ? SheetEnd::kPrinted : Refused(document.name);
}

// Prints are pages of their own: those behind the first are marked as copies, which a printer cannot do.
bool QtSheetPrinter::Draw(QPrinter& printer, const SheetMaker& make) {
  const int prints = printer.copyCount();
  const SheetDocument document = Prepare(printer, make, prints);
  printer.setCopyCount(1);
  const bool drawn = DrawSheets(document, printer) && (!IsOnPaper(printer) || HasTaken(printer));
  printer.setCopyCount(prints);
  return drawn;
}

SheetEnd QtSheetPrinter::Refused(const std::string& name) {
  boxes_.Critical(name,
                  "The printer did not take the checks.  Look which of them lie printed, make sure that the "
                  "printer is ready and try again.  They stay noted as printed: you are asked about them "
                  "then.");
  return SheetEnd::kUnknown;
}

}  // namespace tallwick
