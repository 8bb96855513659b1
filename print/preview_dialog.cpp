#include "print/preview_dialog.h"

#include <QAction>
#include <QCoreApplication>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

namespace tallwick {
namespace {

constexpr int kLeastWidth = 960;
constexpr int kHeight = 760;
constexpr int kFrame = 32;  // what stands beside the tool bar

// By the text that the toolkit gives its own command; null where it has none such.
QAction* CommandOf(const QPrintPreviewDialog& dialog, const char* text) {
  const QString wanted = QCoreApplication::translate("QPrintPreviewDialog", text);
  const QList<QAction*> commands = dialog.findChildren<QAction*>();
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [&](const QAction* command) { return command->text() == wanted; });
  return found != commands.end() ? *found : nullptr;
}

void ShowInWords(const QToolBar& bar, QAction* command) {
  if (command == nullptr) return;
  if (auto* button = qobject_cast<QToolButton*>(bar.widgetForAction(command)))
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
}

}  // namespace

void DressPreview(QPrintPreviewDialog& dialog, const std::string& title,
                  const std::function<void()>& save_pdf) {
  dialog.setWindowTitle(QString::fromStdString(title));
  auto* bar = dialog.findChild<QToolBar*>();
  int width = kLeastWidth;
  QAction* print = CommandOf(dialog, "Print");
  if (print != nullptr) print->setShortcut(QKeySequence::Print);
  if (bar != nullptr) {
    ShowInWords(*bar, CommandOf(dialog, "Page setup"));
    ShowInWords(*bar, print);
    if (save_pdf) QObject::connect(bar->addAction("Save as PDF"), &QAction::triggered, &dialog, save_pdf);
    width = std::max(width, bar->sizeHint().width() + kFrame);
  }
  dialog.resize(width, kHeight);
}

}  // namespace tallwick
