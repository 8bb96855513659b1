#include "print/sheet_renderer.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPainter>
#include <cmath>

#include "print/print_fonts.h"

namespace tallwick {
namespace {

// Letters are measured and drawn at twenty pixels to the point, so that they are as wide on every device.
constexpr double kPixelsPerPoint = 20;
constexpr double kPixel = kMillimetresPerInch / 72 / kPixelsPerPoint;

QString Shown(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QFont Letters(const SheetFont& font) {
  QFont letters = PrintFont(false);
  if (!font.family.empty()) letters.setFamilies({Shown(font.family)});
  letters.setPixelSize(static_cast<int>(std::lround(font.points * kPixelsPerPoint)));
  letters.setBold(font.bold);
  return letters;
}

void Draw(const SheetText& text, QPainter& painter) {
  const QTransform before = painter.transform();
  painter.translate(text.box.x, text.box.Bottom());
  painter.rotate(-text.angle);
  painter.translate(0, -text.box.height * (1 - kSheetBaseline));
  painter.scale(kPixel * text.stretch, kPixel);
  painter.setPen(QColor(text.grey, text.grey, text.grey));
  painter.setFont(Letters(text.font));
  painter.drawText(QPointF(), Shown(text.text));
  painter.setTransform(before);
}

void Draw(const SheetPage& page, QPainter& painter) {
  for (const SheetText& text : page.background) Draw(text, painter);
  for (const SheetText& text : page.texts) Draw(text, painter);
  for (const SheetText& text : page.micro) Draw(text, painter);
  for (const SheetRect& bar : page.bars)
    painter.fillRect(QRectF(bar.x, bar.y, bar.width, bar.height), Qt::black);
}

}  // namespace

double LetterMeasure::Width(const SheetFont& font, std::string_view text) const {
  return QFontMetricsF(Letters(font)).horizontalAdvance(Shown(text)) * kPixel;
}

bool HasLetters(std::string_view family) {
  return QFontDatabase::hasFamily(Shown(family));
}

void SetSheetPaper(double width, double height, QPagedPaintDevice& device) {
  QPageLayout layout(QPageSize(QSizeF(width, height), QPageSize::Millimeter, {}, QPageSize::FuzzyMatch),
                     QPageLayout::Portrait, QMarginsF());
  layout.setMode(QPageLayout::FullPageMode);
  device.setPageLayout(layout);
}

bool DrawSheets(const SheetDocument& document, QPagedPaintDevice& device) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const double scale = device.logicalDpiX() / kMillimetresPerInch;
  bool first = true;
  for (const SheetPage& page : document.pages) {
    if (!first && !device.newPage()) return false;
    first = false;
    painter.resetTransform();
    painter.scale(scale, scale);
    Draw(page, painter);
  }
  return painter.end();
}

std::vector<QImage> DrawSheetPictures(const SheetDocument& document, int dots_per_inch) {
  const double scale = dots_per_inch / kMillimetresPerInch;
  std::vector<QImage> pictures;
  for (const SheetPage& page : document.pages) {
    QImage picture(static_cast<int>(std::lround(document.width * scale)),
                   static_cast<int>(std::lround(document.height * scale)), QImage::Format_RGB888);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    Draw(page, painter);
    pictures.push_back(std::move(picture));
  }
  return pictures;
}

}  // namespace tallwick
