// Checks through the printer's dialog, as a person works it: the PDF printer stands for paper. What was
// cancelled or failed is not noted as printed.
#include <gmock/gmock.h>

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QSpinBox>

#include "checks/printed_checks.h"
#include "print/sheet_printer.h"
#include "tests/support/desktop_test.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::string_view kScreen = "frmPrintChecks";

class PrintDialogTest : public testing::DesktopTest {
 protected:
  void SetUp() override {
    office_.sheets = &printer_;
    DesktopTest::SetUp();
    for (const char* number : {"10", "11"}) {
      CheckRecord check;
      check.number = number;
      check.payee = "SMITH TITLE CO";
      check.amount = Currency::FromCents(12'50);
      check.status = "O";
      ASSERT_EQ(tables_->checks.Add(check), 0);
    }
  }
  void ChangeBank(BankRecord& bank) override { bank.routing_number = "041200050"; }

  // Works the dialog of the batch, which waits until it is closed.
  void WithBatch(const std::function<void()>& work) {
    QTimer::singleShot(0, &watch_, [&] {
      auto* numbers = Get<QLineEdit>(kScreen, "txtNumbers");
      numbers->setFocus(Qt::TabFocusReason);
      numbers->selectAll();
      QTest::keyClicks(numbers, "10-11");
      work();
      desktop_->Find(kScreen)->Close();
    });
    desktop_->OpenScreen(kScreen, "");
  }
  // Counts the dialogs.
  template <class Dialog>
  void On(const std::function<void(Dialog&)>& work) {
    testing::OnDialog<Dialog>(watch_, [this, work](Dialog& dialog) {
      ++dialogs_;
      work(dialog);
    });
  }
  // The file that stands for paper, how many prints, and the button that ends the dialog.
  void ChooseOnPaper(const QString& path, int prints, bool accept = true) {
    On<QPrintDialog>([this, path, prints, accept](QPrintDialog& dialog) {
      auto* printers = dialog.findChild<QComboBox*>("printers");
      printers->setCurrentIndex(printers->findText("PDF", Qt::MatchContains));
      dialog.findChild<QLineEdit*>("filename")->setText(path);
      copies_at_first_ = dialog.findChild<QSpinBox*>("copies")->value();
      dialog.findChild<QSpinBox*>("copies")->setValue(prints);
      accept ? dialog.accept() : dialog.reject();
    });
  }
  void Print() { Get<QPushButton>(kScreen, "cmdPrint")->click(); }
  QString Path(const char* name) { return QString::fromStdString(office_.folder.Platform(name)); }
  static int Pages(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? static_cast<int>(file.readAll().count("/Type /Page\n")) : 0;
  }
  // The numbers of the checks that count as printed.
  std::vector<std::string> Printed() {
    std::vector<std::string> numbers;
    const PrintedChecks log(*office_.files, office_.folder.Held(), "FNB");
    const LastPrints prints = log.Read().value_or(LastPrints());
    for (const auto& [number, print] : prints) numbers.push_back(number);
    return numbers;
  }

  QtSheetPrinter printer_{office_.boxes};
  QObject watch_;
  int dialogs_ = 0;
  int copies_at_first_ = 0;
};

TEST_F(PrintDialogTest, WhatIsCancelledIsNotNotedAndWhatIsPrintedIs) {
  WithBatch([&] {
    ChooseOnPaper(Path("checks.pdf"), 1, false);
    Print();
    EXPECT_EQ(dialogs_, 1);
    EXPECT_THAT(Printed(), IsEmpty());
    EXPECT_FALSE(QFile::exists(Path("checks.pdf")));

    office_.WriteFile("Check_Print_FNB.dat", "Copies=2\r\n");
    ChooseOnPaper(Path("checks.pdf"), 3);
    Print();
    EXPECT_EQ(copies_at_first_, 2) << "as the layout says";
    EXPECT_EQ(Pages(Path("checks.pdf")), 6) << "two checks, three prints";
    EXPECT_THAT(Printed(), ElementsAre("10", "11"));
    EXPECT_THAT(office_.TakeTexts(), IsEmpty());

    office_.boxes.answers = {BoxAnswer::kNo};
    Print();
    EXPECT_EQ(dialogs_, 2) << "nobody is asked for a printer for what is not printed again";
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Check 10 was printed on")));
    office_.boxes.answers = {BoxAnswer::kYes};
    ChooseOnPaper(Path("again.pdf"), 1);
    Print();
    EXPECT_EQ(Pages(Path("again.pdf")), 2);
    EXPECT_THAT(Printed(), ElementsAre("10", "11"));
  });
}

TEST_F(PrintDialogTest, WhatThePrinterDidNotTakeIsNotNoted) {
  if (!QFile::exists("/dev/full")) GTEST_SKIP() << "there is no full disk here";
  WithBatch([&] {
    ChooseOnPaper("/dev/full", 1);
    // The dialog asks whether the file shall be written over.
    On<QMessageBox>([](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
    Print();
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("The printer did not take the checks")));
    EXPECT_THAT(Printed(), IsEmpty());
  });
}

TEST_F(PrintDialogTest, AClosedPreviewIsNoPrint) {
  WithBatch([&] {
    Get<QAbstractButton>(kScreen, "chkPreview")->click();
    On<QPrintPreviewDialog>([](QPrintPreviewDialog& dialog) {
      QTest::qWait(50);  // the pages are drawn
      dialog.reject();
    });
    Print();
    EXPECT_EQ(dialogs_, 1);
    EXPECT_THAT(Printed(), IsEmpty());

    On<QPrintPreviewDialog>([this](QPrintPreviewDialog& dialog) {
      ChooseOnPaper(Path("seen.pdf"), 1);
      for (QAction* action : dialog.findChildren<QAction*>()) {
        if (action->text() == "Print") return action->trigger();
      }
      dialog.reject();
    });
    Print();
    EXPECT_EQ(dialogs_, 3);
    EXPECT_EQ(Pages(Path("seen.pdf")), 2);
    EXPECT_THAT(Printed(), ElementsAre("10", "11"));
    EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  });
}

}  // namespace
}  // namespace tallwick
