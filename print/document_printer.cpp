#include "print/document_printer.h"

#include <QApplication>
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QStandardPaths>

#include "print/page_renderer.h"
#include "print/pdf_document.h"

namespace tallwick {

bool QtDocumentPrinter::Preview(const PrintDocument& document) {
  QPrinter printer(QPrinter::HighResolution);
  SetPaper(document, printer);
  printer.setDocName(QString::fromStdString(document.name));
  QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
  dialog.resize(960, 760);
  dialog.setWindowTitle(QString::fromStdString(document.name));
  bool drawn = false;
  QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                   [&](QPrinter* device) { drawn = DrawDocument(document, *device); });
  // The dialog is accepted only by its print button, when the pages have been drawn for paper.
  return dialog.exec() == QDialog::Accepted && (drawn || Refused(document.name));
}

bool QtDocumentPrinter::Print(const PrintDocument& document) {
  QPrinter printer(QPrinter::HighResolution);
  SetPaper(document, printer);
  printer.setDocName(QString::fromStdString(document.name));
  QPrintDialog dialog(&printer, QApplication::activeWindow());
  dialog.setOption(QAbstractPrintDialog::PrintPageRange);
  if (dialog.exec() != QDialog::Accepted) return false;
  const PageRange range{printer.fromPage() > 0 ? printer.fromPage() : 1, printer.toPage()};
  return DrawDocument(document, printer, range) || Refused(document.name);
}

bool QtDocumentPrinter::Refused(const std::string& name) {
  boxes_.Critical(name, "The printer did not take the document.  Make sure that it is ready and try again.");
  return false;
}

bool QtDocumentPrinter::SavePdf(const PrintDocument& document) {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const QString proposed = folder + "/" + QString::fromStdString(document.name) + ".pdf";
  const QString path =
      QFileDialog::getSaveFileName(QApplication::activeWindow(), "Save as PDF", proposed, "PDF (*.pdf)");
  if (path.isEmpty()) return false;
  if (WritePdf(document, path.toStdString())) return true;
  boxes_.Critical(document.name, "The file " + path.toStdString() +
                                     " could not be written.  Make room, or choose a folder that you may "
                                     "write to.");
  return false;
}

}  // namespace tallwick
