#include "ui/window_memory.h"

#include <QAction>
#include <QSettings>
#include <QSplitter>

namespace tallwick {
namespace {

QString KeyOf(const QWidget& widget, const char* what) {
  return widget.window()->objectName() + "/" + widget.objectName() + "/" + QLatin1String(what);
}

QString KeyOf(const QWidget& window, const QAction& command) {
  return window.objectName() + "/" + command.objectName() + "/checked";
}

QList<QAction*> RememberedCommands(const QWidget& window) {
  QList<QAction*> commands = window.findChildren<QAction*>();
  commands.removeIf([](const QAction* command) { return !command->property("remembered").toBool(); });
  return commands;
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
  for (const QAction* command : RememberedCommands(window))
    QSettings().setValue(KeyOf(window, *command), command->isChecked());
}

void RestoreChoices(const QWidget& window) {
  for (QAction* command : RememberedCommands(window)) {
    const QVariant kept = QSettings().value(KeyOf(window, *command));
    if (kept.isValid() && kept.toBool() != command->isChecked()) command->trigger();
  }
}

}  // namespace tallwick
