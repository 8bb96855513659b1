#include "print/sheet_printer.h"

#include <QApplication>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include "print/sheet_renderer.h"

namespace tallwick {
namespace {

// A printer prepared for the sheets, and the sheets for the printer: another one may move them otherwise.
SheetDocument Prepare(QPrinter& printer, const SheetMaker& make) {
  SheetDocument document = make(LetterMeasure(), printer.printerName().toStdString());
  SetSheetPaper(document.width, document.height, printer);
  printer.setDocName(QString::fromStdString(document.name));
  return document;
}

}  // namespace

bool QtSheetPrinter::HasFont(std::string_view family) {
  return HasLetters(family);
}

const SheetMeasure& QtSheetPrinter::Measure() {
  static const LetterMeasure measure;
  return measure;
}

bool QtSheetPrinter::Preview(const SheetMaker& make) {
  QPrinter printer(QPrinter::HighResolution);
  const SheetDocument document = Prepare(printer, make);
  QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
  dialog.resize(960, 760);
  dialog.setWindowTitle(QString::fromStdString(document.name));
  bool drawn = false;
  QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                   [&](QPrinter* device) { drawn = DrawSheets(Prepare(*device, make), *device); });
  // The dialog is accepted only by its print button, when the pages have been drawn for paper.
  if (dialog.exec() != QDialog::Accepted) return false;
  return drawn || Refused(document.name);
}

bool QtSheetPrinter::Print(const SheetMaker& make) {
  QPrinter printer(QPrinter::HighResolution);
  const std::string name = Prepare(printer, make).name;
  QPrintDialog dialog(&printer, QApplication::activeWindow());
  // All or nothing: what is noted as printed must be on paper.
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
  dialog.setOption(QAbstractPrintDialog::PrintCollateCopies, false);
  if (dialog.exec() != QDialog::Accepted) return false;
  const SheetDocument document = Prepare(printer, make);
  printer.setCopyCount(1);  // a second print of a check would be a second check
  return (DrawSheets(document, printer) && printer.printerState() != QPrinter::Error) || Refused(name);
}

bool QtSheetPrinter::Refused(const std::string& name) {
  boxes_.Critical(name,
                  "The printer did not take the checks.  Look which of them lie printed, make sure that the "
                  "printer is ready and try again.");
  return false;
}

}  // namespace tallwick
