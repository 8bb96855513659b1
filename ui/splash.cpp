#include "ui/splash.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>

#include "shell/about.h"
#include "shell/start_up.h"
#include "ui/style.h"

namespace tallwick {
namespace {

constexpr QSize kSize(440, 200);
constexpr int kMargin = 32;
constexpr int kIcon = 40;

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

std::unique_ptr<QSplashScreen> MakeSplash() {
  const qreal scale = qApp->devicePixelRatio();
  QPixmap picture(kSize * scale);
  picture.setDevicePixelRatio(scale);
  const QPalette palette = QApplication::palette();
  picture.fill(palette.color(QPalette::Base));
  QPainter painter(&picture);
  painter.fillRect(0, 0, 6, kSize.height(), palette.color(kAccentRole));
  painter.drawPixmap(kMargin, kMargin, DrawnIcon("ledgers", kAccentRole).pixmap(QSize(kIcon, kIcon), scale));
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * 1.6);
  font.setWeight(QFont::DemiBold);
  painter.setFont(font);
  painter.setPen(palette.color(QPalette::Text));
  painter.drawText(QRect(kMargin, 88, kSize.width() - 2 * kMargin, 40), Qt::AlignLeft | Qt::AlignVCenter,
                   Text(kProgramName));
  painter.setFont(QApplication::font());
  painter.setPen(palette.color(kMutedRole));
  painter.drawText(QRect(kMargin, 128, kSize.width() - 2 * kMargin, 24), Qt::AlignLeft | Qt::AlignVCenter,
                   "Version: " + QString::fromStdString(VersionTextOf({})));
  painter.end();
  return std::make_unique<QSplashScreen>(picture);
}

}  // namespace tallwick
