// The preview of a report: who only looks has not printed.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QToolBar>

#include "print/document_printer.h"
#include "tests/support/desktop_test.h"

namespace tallwick {
namespace {

using testing::OnDialog;

TEST(DocumentPreviewTest, IsNoPrintUnlessItIsPrinted) {
  testing::ScriptedBoxes boxes;
  const testing::TempFolder folder;
  const QString path = QString::fromStdString(folder.Platform("seen.pdf"));
  QtDocumentPrinter printer(boxes);
  QObject watch;
  PrintDocument document;
  document.name = "Report";
  document.sections.resize(1);

  OnDialog<QPrintPreviewDialog>(watch, [](QPrintPreviewDialog& dialog) {
    const auto* bar = dialog.findChild<QToolBar*>();
    for (QAction* action : bar->actions()) {
      const QWidget* button = bar->widgetForAction(action);
      EXPECT_TRUE(button->isVisible() && bar->rect().contains(button->geometry()))
          << action->text().toStdString();
    }
    dialog.reject();
  });
  EXPECT_FALSE(printer.Preview(document));

  OnDialog<QPrintPreviewDialog>(watch, [&](QPrintPreviewDialog& dialog) {
    OnDialog<QPrintDialog>(watch, [&](QPrintDialog& chosen) {
      auto* printers = chosen.findChild<QComboBox*>("printers");
      printers->setCurrentIndex(printers->findText("PDF", Qt::MatchContains));
      chosen.findChild<QLineEdit*>("filename")->setText(path);
      chosen.accept();
    });
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_P, Qt::ControlModifier);
    if (dialog.isVisible()) dialog.reject();
  });
  EXPECT_TRUE(printer.Preview(document));
  EXPECT_TRUE(QFile::exists(path));
  EXPECT_TRUE(boxes.shown.empty());
}

}  // namespace
}  // namespace tallwick
