#include "ui/document_printer.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <cmath>

#include "core/print_pages.h"

namespace tallwick {
namespace {

constexpr double kTwipsPerInch = 1440;
constexpr int kTwipsPerPoint = 20;
constexpr double kMarginInches = 0.5;

// One pixel is one twip: the same lines break at the same words on every device.
QFont FontOf(PrintStyle style) {
  const bool rows = style == PrintStyle::kRow || style == PrintStyle::kText;
  QFont font(rows ? "Times New Roman" : "Arial");
  font.setStyleHint(rows ? QFont::Serif : QFont::SansSerif);
  font.setPixelSize((style == PrintStyle::kTitle ? 14 : 10) * kTwipsPerPoint);
  font.setBold(!rows);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

class FontMeasure : public TextMeasure {
 public:
  int Width(PrintStyle style, std::string_view text) const override {
    const QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    return static_cast<int>(std::ceil(Metrics(style).horizontalAdvance(shown)));
  }
  int LineHeight(PrintStyle style) const override {
    return static_cast<int>(std::ceil(Metrics(style).height() * 1.1));
  }

 private:
  const QFontMetricsF& Metrics(PrintStyle style) const {
    return style == PrintStyle::kTitle                               ? title_
           : style == PrintStyle::kRow || style == PrintStyle::kText ? plain_
                                                                     : strong_;
  }

  QFontMetricsF title_{FontOf(PrintStyle::kTitle)};
  QFontMetricsF plain_{FontOf(PrintStyle::kRow)};
  QFontMetricsF strong_{FontOf(PrintStyle::kStrong)};
};

void DrawText(QPainter& painter, const PlacedText& text, int line_height) {
  const int flags = text.alignment == '>'   ? Qt::AlignRight
                    : text.alignment == '^' ? Qt::AlignHCenter
                                            : Qt::AlignLeft;
  painter.setFont(FontOf(text.style));
  painter.drawText(QRectF(text.x, text.y, text.width, line_height),
                   flags | Qt::AlignVCenter | Qt::TextDontClip, QString::fromStdString(text.text));
}

// False when the device could not be begun or a page could not be added.
bool Draw(const PrintDocument& document, QPagedPaintDevice& device) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const double scale = device.logicalDpiX() / kTwipsPerInch;
  const int width = static_cast<int>(device.width() / scale);
  const int height = static_cast<int>(device.height() / scale);
  painter.scale(scale, scale);
  painter.setPen(QPen(Qt::black, 10));
  const FontMeasure measure;
  bool first = true;
  for (const PrintPage& page : LayOutPages(document, width, height, measure)) {
    if (!first && !device.newPage()) return false;
    first = false;
    for (const PlacedText& text : page.texts) DrawText(painter, text, measure.LineHeight(text.style));
    for (int rule : page.rules) painter.drawLine(0, rule, width, rule);
  }
  return painter.end();
}

void SetPage(const PrintDocument& document, QPagedPaintDevice& device) {
  device.setPageSize(QPageSize(QPageSize::Letter));
  device.setPageOrientation(document.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
  const double margin = kMarginInches;
  device.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Inch);
}

}  // namespace

bool WritePdf(const PrintDocument& document, const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  bool drawn = false;
  {
    QPdfWriter writer(&file);
    writer.setTitle(QString::fromStdString(document.name));
    SetPage(document, writer);
    drawn = Draw(document, writer);
  }
  return drawn && file.flush() && file.error() == QFileDevice::NoError;
}

void QtDocumentPrinter::Preview(const PrintDocument& document) {
  QPrinter printer(QPrinter::HighResolution);
  SetPage(document, printer);
  QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
  dialog.resize(960, 760);
  dialog.setWindowTitle(QString::fromStdString(document.name));
  QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                   [&document](QPrinter* device) { Draw(document, *device); });
  dialog.exec();
}

void QtDocumentPrinter::Print(const PrintDocument& document) {
  QPrinter printer(QPrinter::HighResolution);
  SetPage(document, printer);
  printer.setDocName(QString::fromStdString(document.name));
  QPrintDialog dialog(&printer, QApplication::activeWindow());
  if (dialog.exec() != QDialog::Accepted) return;
  if (!Draw(document, printer))
    boxes_.Critical(document.name,
                    "The printer did not take the document.  Make sure that it is ready and try again.");
}

void QtDocumentPrinter::SavePdf(const PrintDocument& document) {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const QString proposed = folder + "/" + QString::fromStdString(document.name) + ".pdf";
  const QString path =
      QFileDialog::getSaveFileName(QApplication::activeWindow(), "Save as PDF", proposed, "PDF (*.pdf)");
  if (path.isEmpty() || WritePdf(document, path)) return;
  boxes_.Critical(document.name, "The file " + path.toStdString() +
                                     " could not be written.  Choose a folder that you may write to.");
}

}  // namespace tallwick
