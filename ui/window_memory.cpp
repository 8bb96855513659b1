#include "ui/window_memory.h"

#include <QSettings>
#include <QSplitter>

namespace tallwick {
namespace {

QString KeyOf(const QWidget& widget, const char* what) {
  return widget.window()->objectName() + "/" + widget.objectName() + "/" + QLatin1String(what);
}

}  // namespace

QByteArray RememberedState(const QWidget& widget, const char* what) {
  return QSettings().value(KeyOf(widget, what)).toByteArray();
}

void RememberState(const QWidget& widget, const char* what, const QByteArray& state) {
  QSettings().setValue(KeyOf(widget, what), state);
}

void RestoreWindow(QWidget& window, QSize size) {
  window.resize(size);
  const QByteArray place = RememberedState(window, "place");
  if (!place.isEmpty()) window.restoreGeometry(place);
  for (QSplitter* splitter : window.findChildren<QSplitter*>()) {
    const QByteArray kept = RememberedState(*splitter, "sizes");
    if (!kept.isEmpty()) splitter->restoreState(kept);
  }
}

void RememberWindow(const QWidget& window) {
  RememberState(window, "place", window.saveGeometry());
  for (const QSplitter* splitter : window.findChildren<QSplitter*>()) {
    RememberState(*splitter, "sizes", splitter->saveState());
  }
}

}  // namespace tallwick
