#include "print/document_printer.h"

#include <QApplication>
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QStandardPaths>

#include "print/page_renderer.h"
#include "print/pdf_document.h"
#include "print/preview_dialog.h"
#include "print/printer_result.h"

namespace tallwick {

bool QtDocumentPrinter::Preview(const PrintDocument& document) {
  QPrinter printer(QPrinter::HighResolution);
  SetPaper(document, printer);
  printer.setDocName(QString::fromStdString(document.name));
  QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
  bool saved = false;
  DressPreview(dialog, document.name, [&] { saved = SavePdf(document) || saved; });
  bool drawn = false;
  QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                   [&](QPrinter* device) { drawn = DrawDocument(document, *device); });
  // The dialog is accepted only by its print button, when the pages have been drawn for paper.
  const bool printed = dialog.exec() == QDialog::Accepted;
  return (printed && ((drawn && HasTaken(printer)) || Refused(document.name))) || saved;
}

bool QtDocumentPrinter::Print(const PrintDocument& document) {
  QPrinter printer(QPrinter::HighResolution);
  SetPaper(document, printer);
  printer.setDocName(QString::fromStdString(document.name));
  QPrintDialog dialog(&printer, QApplication::activeWindow());
  dialog.setOption(QAbstractPrintDialog::PrintPageRange);
  if (dialog.exec() != QDialog::Accepted) return false;
  const PageRange range{printer.fromPage() > 0 ? printer.fromPage() : 1, printer.toPage()};
  return (DrawDocument(document, printer, range) && HasTaken(printer)) || Refused(document.name);
}

bool QtDocumentPrinter::Refused(const std::string& name) {
  boxes_.Critical(name, "The printer did not take the document.  Make sure that it is ready and try again.");
  return false;
}

bool QtDocumentPrinter::SavePdf(const PrintDocument& document) {
  return Save(document.name, "PDF", [&](const std::string& path) { return WritePdf(document, path); });
}

bool QtDocumentPrinter::SaveRtf(const std::string& name, const std::string& rtf) {
  return Save(name, "RTF", [&](const std::string& path) {
    QSaveFile file(QString::fromStdString(path));
    return file.open(QIODevice::WriteOnly) &&
           file.write(rtf.data(), static_cast<qint64>(rtf.size())) == static_cast<qint64>(rtf.size()) &&
           file.commit();
  });
}

bool QtDocumentPrinter::Save(const std::string& name, const QString& kind,
                             const std::function<bool(const std::string&)>& write) {
  const QString extension = kind.toLower();
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const QString proposed = folder + "/" + QString::fromStdString(name) + "." + extension;
  QString path = QFileDialog::getSaveFileName(QApplication::activeWindow(), "Save as " + kind, proposed,
                                              kind + " (*." + extension + ")");
  if (path.isEmpty()) return false;
  if (!path.endsWith("." + extension, Qt::CaseInsensitive)) path += "." + extension;
  if (write(path.toStdString())) return true;
  boxes_.Critical(name, "The file " + path.toStdString() +
                            " could not be written.  Make room, or choose a folder that you may write to.");
  return false;
}

}  // namespace tallwick
