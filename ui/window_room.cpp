#include "ui/window_room.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace tallwick {
namespace {

// The frame that the system draws is not known before a window is shown: a title bar and borders.
QRect RoomFor(const QWidget& window) {
  const int border = window.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
  const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight) + border;
  return window.screen()->availableGeometry().adjusted(border, title, -border, -border);
}

bool IsSized(const QWidget& window) {
  const bool plain = window.windowType() == Qt::Window || window.windowType() == Qt::Dialog;
  return plain && (window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)) == 0;
}

void FitIn(QWidget& window) {
  const QRect room = RoomFor(window);
  QRect place = window.geometry();
  place.setSize(place.size().boundedTo(room.size()));
  if (!window.testAttribute(Qt::WA_Moved)) return window.resize(place.size());
  place.moveLeft(std::clamp(place.left(), room.left(), room.right() + 1 - place.width()));
  place.moveTop(std::clamp(place.top(), room.top(), room.bottom() + 1 - place.height()));
  window.setGeometry(place);
}

}  // namespace

WindowRoom::WindowRoom(QApplication& app) : QObject(&app) {
  app.installEventFilter(this);
}

// A window is polished once, before it is shown for the first time.
bool WindowRoom::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Polish || !watched->isWidgetType()) return false;
  auto& widget = static_cast<QWidget&>(*watched);
  if (widget.isWindow() && widget.testAttribute(Qt::WA_Resized) && IsSized(widget)) FitIn(widget);
  return false;
}

}  // namespace tallwick
