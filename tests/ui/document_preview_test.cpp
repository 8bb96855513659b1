// The preview of a report: who only looks has not printed.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QTimer>

#include "print/document_printer.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tallwick {
namespace {

// Has `work` done on the dialog of this kind once it waits.
template <class Dialog>
void On(QObject& watch, const std::function<void(Dialog&)>& work, int looks = 0) {
  QTimer::singleShot(1, &watch, [&watch, work, looks] {
    if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()))
      work(*dialog);
    else if (looks < 10'000)
      On<Dialog>(watch, work, looks + 1);
  });
}

TEST(DocumentPreviewTest, IsNoPrintUnlessItIsPrinted) {
  testing::ScriptedBoxes boxes;
  const testing::TempFolder folder;
  const QString path = QString::fromStdString(folder.Platform("seen.pdf"));
  QtDocumentPrinter printer(boxes);
  QObject watch;
  PrintDocument document;
  document.name = "Report";
  document.sections.resize(1);

  On<QPrintPreviewDialog>(watch, [](QPrintPreviewDialog& dialog) { dialog.reject(); });
  EXPECT_FALSE(printer.Preview(document));

  On<QPrintPreviewDialog>(watch, [&](QPrintPreviewDialog& dialog) {
    On<QPrintDialog>(watch, [&](QPrintDialog& chosen) {
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
