#include "ui/report_menu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "shell/screen_routes.h"
#include "ui/layout_helpers.h"

namespace tallwick {
namespace {

QAction* Command(QWidget& window, const char* name) {
  return Named(new QAction(&window), name);
}

}  // namespace

void AddReportMenu(QMainWindow& window) {
  QMenu* menu = window.menuBar()->addMenu(QObject::tr("&File"));
  menu->addAction(Command(window, "mnuFileRefresh"));
  menu->addSeparator();
  for (const char* name : {"mnuFilePreview", "mnuFilePrint", "mnuFilePdf", "mnuFileRtf"})
    menu->addAction(Command(window, name));
  menu->addSeparator();
  menu->addAction(Command(window, "mnuFileExit"));
}

void AddLedgerMenu(QMainWindow& window) {
  window.menuBar()->addMenu(QObject::tr("&View"))->addAction(Command(window, kLedgerCommand.data()));
}

void AddLedgerKey(QWidget& window) {
  auto* action = window.findChild<QAction*>(kLedgerCommand.data());
  if (action == nullptr) {
    action = Command(window, kLedgerCommand.data());
    window.addAction(action);
  }
  action->setShortcut(QKeySequence("Ctrl+L"));
}

}  // namespace tallwick
