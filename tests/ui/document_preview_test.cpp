// The preview of a report: who only looks has not printed.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>

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

  OnDialog<QPrintPreviewDialog>(watch, [](QPrintPreviewDialog& dialog) { dialog.reject(); });
  EXPECT_FALSE(printer.Preview(document));

  OnDialog<QPrintPreviewDialog>(watch, [&](QPrintPreviewDialog& dialog) {
    OnDialog<QPrintDialog>(watch, [&](QPrintDialog& chosen) {
      auto* printers = chosen.findChild<QComboBox*>("printers");
      printers->setCurrentIndex(printers->findText("PDF", Qt::MatchContains));
      chosen.findChild<QLineEdit*>("filename")->setText(path);
      chosen.accept();
    });
    for (QAction* action : dialog.findChildren<QAction*>()) {
      if (action->text() == "Print") return action->trigger();
    }
    dialog.reject();
  });
  EXPECT_TRUE(printer.Preview(document));
  EXPECT_TRUE(QFile::exists(path));
  EXPECT_TRUE(boxes.shown.empty());
}

}  // namespace
}  // namespace tallwick
