#include "print/page_renderer.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <array>
#include <cmath>

#include "core/print_pages.h"
#include "print/print_fonts.h"

namespace tallwick {
namespace {

constexpr double kTwipsPerInch = 1440;
constexpr int kTwipsPerPoint = 20;
constexpr double kMarginInches = 0.5;
constexpr double kLetterWidth = 8.5;  // inches
constexpr double kLetterHeight = 11;
constexpr double kLineSpacing = 1.1;
constexpr int kRuleWidth = 10;
constexpr std::size_t kStyles = 8;

struct StyleFont {
  bool serif;
  bool bold;
  int points;
};

StyleFont FontOfStyle(PrintStyle style) {
  switch (style) {
    case PrintStyle::kTitle:
      return {false, true, 14};
    case PrintStyle::kHeader:
      return {false, true, 12};
    case PrintStyle::kSmall:
      return {false, false, 8};
    case PrintStyle::kHeading:
      return {false, true, 9};
    case PrintStyle::kStrong:
      return {false, true, 10};
    case PrintStyle::kTotal:
      return {true, true, 10};
    case PrintStyle::kText:
    case PrintStyle::kRow:
      break;
  }
  return {true, false, 10};
}

// A style's letters, with the widths of the common ones at hand: a report has tens of thousands of short
// texts.
class Letters {
 public:
  explicit Letters(PrintStyle style) : font_(MakeFont(style)), metrics_(font_) {
    for (std::size_t i = 0; i < widths_.size(); ++i)
      widths_[i] = metrics_.horizontalAdvance(QChar(static_cast<char16_t>(i)));
  }

  const QFont& Font() const { return font_; }
  double Width(std::string_view text) const {
    double width = 0;
    for (const char c : text) {
      const auto letter = static_cast<unsigned char>(c);
      if (letter >= widths_.size())
        return metrics_.horizontalAdvance(
            QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
      width += widths_[letter];
    }
    return width;
  }
  double LineHeight() const { return std::ceil(metrics_.height() * kLineSpacing); }
  // From a line's upper edge.
  double Baseline() const { return (LineHeight() - metrics_.height()) / 2 + metrics_.ascent(); }

 private:
  static QFont MakeFont(PrintStyle style) {
    const StyleFont look = FontOfStyle(style);
    QFont font = PrintFont(look.serif);
    font.setPixelSize(look.points * kTwipsPerPoint);
    font.setBold(look.bold);
    return font;
  }

  QFont font_;
  QFontMetricsF metrics_;
  std::array<double, 128> widths_{};
};

class Sheet : public TextMeasure {
 public:
  int Width(PrintStyle style, std::string_view text) const override {
    return static_cast<int>(std::ceil(Of(style).Width(text)));
  }
  int LineHeight(PrintStyle style) const override { return static_cast<int>(Of(style).LineHeight()); }

  void Draw(QPainter& painter, const PrintPage& page, int width) const {
    painter.setPen(QPen(Qt::black, kRuleWidth));
    for (const int rule : page.rules) painter.drawLine(0, rule, width, rule);
    for (const PlacedText& text : page.texts) Draw(painter, text);
  }

 private:
  const Letters& Of(PrintStyle style) const { return letters_[static_cast<std::size_t>(style)]; }

  void Draw(QPainter& painter, const PlacedText& text) const {
    const Letters& letters = Of(text.style);
    const QString shown = QString::fromStdString(text.text);
    const double room = text.width - letters.Width(text.text) * text.fit.Scale();
    const double x = text.x + (text.alignment == '>' ? room : text.alignment == '^' ? room / 2 : 0);
    const QPointF start(x, text.y + letters.Baseline());
    painter.setFont(letters.Font());
    if (text.fit == TextFit{}) return painter.drawText(start, shown);
    const QTransform before = painter.transform();
    painter.translate(start);
    painter.scale(text.fit.Scale(), text.fit.size);
    painter.drawText(QPointF(), shown);
    painter.setTransform(before);
  }

  const std::array<Letters, kStyles> letters_{Letters(PrintStyle::kTitle),   Letters(PrintStyle::kHeader),
                                              Letters(PrintStyle::kSmall),   Letters(PrintStyle::kText),
                                              Letters(PrintStyle::kHeading), Letters(PrintStyle::kStrong),
                                              Letters(PrintStyle::kRow),     Letters(PrintStyle::kTotal)};
};

}  // namespace

void SetPaper(const PrintDocument& document, QPagedPaintDevice& device) {
  device.setPageSize(QPageSize(QPageSize::Letter));
  device.setPageOrientation(document.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
  constexpr double margin = kMarginInches;
  device.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Inch);
}

bool DrawDocument(const PrintDocument& document, QPagedPaintDevice& device, const PageRange& range) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const double scale = device.logicalDpiX() / kTwipsPerInch;
  const int width = static_cast<int>(device.width() / scale);
  const int height = static_cast<int>(device.height() / scale);
  painter.scale(scale, scale);
  const Sheet sheet;
  const std::vector<PrintPage> pages = LayOutPages(document, width, height, sheet);
  const int count = static_cast<int>(pages.size());
  const int last = range.last > 0 && range.last < count ? range.last : count;
  for (int page = range.first; page <= last; ++page) {
    if (page > range.first && !device.newPage()) return false;
    sheet.Draw(painter, pages[static_cast<std::size_t>(page) - 1], width);
  }
  return painter.end();
}

std::vector<QImage> DrawPictures(const PrintDocument& document, int dots_per_inch) {
  const double paper_width = document.landscape ? kLetterHeight : kLetterWidth;
  const double paper_height = document.landscape ? kLetterWidth : kLetterHeight;
  const int width = static_cast<int>((paper_width - 2 * kMarginInches) * kTwipsPerInch);
  const int height = static_cast<int>((paper_height - 2 * kMarginInches) * kTwipsPerInch);
  const Sheet sheet;
  std::vector<QImage> pictures;
  for (const PrintPage& page : LayOutPages(document, width, height, sheet)) {
    QImage picture(static_cast<int>(paper_width * dots_per_inch),
                   static_cast<int>(paper_height * dots_per_inch), QImage::Format_RGB888);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(dots_per_inch / kTwipsPerInch, dots_per_inch / kTwipsPerInch);
    painter.translate(kMarginInches * kTwipsPerInch, kMarginInches * kTwipsPerInch);
    sheet.Draw(painter, page, width);
    pictures.push_back(std::move(picture));
  }
  return pictures;
}

}  // namespace tallwick
