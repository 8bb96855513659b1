// The windows of deposits, wires and vouchers, worked by keys alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QLabel>
#include <QPushButton>

#include "posting/payee_book.h"
#include "shell/company_tables.h"
#include "tests/support/desktop_test.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using ::testing::IsEmpty;

constexpr std::string_view kDeposits = "frmEditDepositsPost";
constexpr std::string_view kClearing = "frmEditDepositsClear";
constexpr std::string_view kWires = "frmEditWiresPost";
constexpr std::string_view kVouchers = "frmEditVouchersPost";

using PostingWindowsTest = testing::DesktopTest;

TEST_F(PostingWindowsTest, ADepositIsTypedLikeASpreadsheet) {
  Open(kDeposits);
  EXPECT_EQ(Focus(), "txtFileNumbers_1");
  Type({"24-0117", "SMITH TITLE CO", "1250"});
  EXPECT_EQ(Focus(), "txtFileNumbers_2");
  Press(Qt::Key_I, Qt::ControlModifier);  // the file of the line above
  EXPECT_EQ(Get<QLineEdit>(kDeposits, "txtFileNumbers_2")->text(), "24-0117");
  Type({"", "LENDER ONE", "98000.5"});
  EXPECT_EQ(Get<QLabel>(kDeposits, "lblDepositTotal")->text(), "99,250.50");
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtFileNumbers_2");
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtFileNumbers_3");
  EXPECT_EQ(Get<QLabel>(kDeposits, "lblKeys")->text(),
            "Enter posts     Up Down other line     F4 look-up     F1 help     Esc back");
  Press(Qt::Key_Return);  // on an empty line: posts
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(tables_->deposits.Read().item_count, 2);
  EXPECT_EQ(Focus(), "txtFileNumbers_1");
  EXPECT_EQ(Get<QLineEdit>(kDeposits, "txtDateSequence")->text(), "2");
  auto* deposits = Get<RegisterView>(kDeposits, "lstDepositDates");
  EXPECT_EQ(deposits->Model().rowCount(), 1);

  // Found by a file number, and taken into the entry. Esc ends the search, then leads back to the entry.
  QTest::keyClick(&Window(kDeposits), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), "x");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Focus(), "boxFind");
  EXPECT_EQ(Text(kDeposits, "boxFind"), "");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Focus(), "txtDepositDated");
  ASSERT_NE(desktop_->Find(kDeposits), nullptr);
  QTest::keyClick(&Window(kDeposits), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), "24-01");
  EXPECT_EQ(deposits->Table().currentIndex().row(), 0);
  Press(Qt::Key_Down);
  EXPECT_EQ(Get<QLabel>(kDeposits, "lblItemStatus_2")->text(), "Outstanding");
  EXPECT_EQ(Get<QPushButton>(kDeposits, "cmdOk")->text(), "&Ok");
  QTest::mouseClick(Get<QPushButton>(kDeposits, "cmdCalendar"), Qt::LeftButton);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(QApplication::activePopupWidget()->windowTitle(), "Deposit Accounting Period");
  QApplication::activePopupWidget()->close();
}

TEST_F(PostingWindowsTest, AWireAndAVoucherArePostedByKeysAlone) {
  Open(kWires);
  EXPECT_EQ(Focus(), "txtWireNumber");
  Type({"FED-0417", "", "SMITH TITLE CO", "1250", "24-0117"});
  const auto enter = [&] { return Get<QLabel>(kWires, "lblKeys")->text().section("     ", 0, 0); };
  EXPECT_EQ(enter(), "Enter next field") << "filled, and yet it leads on to the statement period";
  Type({"", ""});
  EXPECT_EQ(Focus(), "txtWireStmtPeriod");
  EXPECT_EQ(enter(), "Enter posts");
  Type({"3/2024"});
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->wires.SeekNumber("FED-0417"));
  EXPECT_EQ(tables_->wires.Read().status, "C");
  EXPECT_EQ(Focus(), "txtWireNumber");

  Open(kVouchers);
  EXPECT_EQ(Focus(), "txtVCHRFileNumber");
  Type({"24-0117", "", "SMITH TITLE CO", "PAYOFF", "1250"});
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->vouchers.SeekNumber("1"));
  EXPECT_EQ(tables_->vouchers.Read().reason, "PAYOFF");
  EXPECT_EQ(Get<QLineEdit>(kVouchers, "txtVCHRNumber")->text(), "2");
}

// What is proposed or posted stands in the fields; a clerk types over it.
TEST_F(PostingWindowsTest, TypingReplacesWhatAFieldHolds) {
  Open(kDeposits);
  PutCursor(kDeposits, "txtDepositDated");
  Type({"3/14/2024", "3", "4/2024", "24-0117", "SMITH TITLE CO", "1250", "24-0117", "LENDER", "10", ""});
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240314", "3"));
  EXPECT_EQ(tables_->deposits.Read().accounting, (Period{4, 0, 2024}));

  // Posted: Enter alone goes through, and what is typed on the way stands in place of what was there.
  PutCursor(kDeposits, "txtDepositDated");
  Type({"3/14/2024", "3", "", "", "", "5"});
  EXPECT_EQ(Text(kDeposits, "txtAmounts_1"), "5.00");
  Press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(Focus(), "txtFileNumbers_2");
  QTest::keyClicks(QApplication::focusWidget(), "24-0072");
  EXPECT_EQ(Text(kDeposits, "txtFileNumbers_2"), "24-0072") << "over the file that was put in";

  Open(kWires);
  Type({"FED-0417", "3/14/2024", "COUNTY", "75", "24-0117", "", "4/2024", "4/2024"});
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->wires.SeekNumber("FED-0417"));
  EXPECT_EQ(tables_->wires.Read().dated, (Date{2024, 3, 14}));
  EXPECT_EQ(tables_->wires.Read().accounting, (Period{4, 0, 2024}));
}

// The field keeps all that was typed or pasted, so that the refusal can say what does not fit.
TEST_F(PostingWindowsTest, ATextThatIsTooLongIsRefusedAndNotCut) {
  const auto paste = [&](std::string_view screen, const char* field, const char* text) {
    PutCursor(screen, field);
    QApplication::clipboard()->setText(text);
    Get<QLineEdit>(screen, field)->paste();
  };
  const auto refusal = [&] {
    Press(Qt::Key_Return, Qt::ControlModifier);
    const std::vector<std::string> said = office_.TakeTexts();
    return said.empty() ? "posted" : said.back();
  };
  const auto type = [&](std::string_view screen,
                        std::initializer_list<std::pair<const char*, const char*>> texts) {
    for (const auto& [field, text] : texts) {
      PutCursor(screen, field);
      QTest::keyClicks(QApplication::focusWidget(), text);
    }
  };
  Open("frmEditChecksPost");
  type("frmEditChecksPost", {{"txtCheckPayee", "SMITH TITLE CO"}, {"txtCheckAmount", "1250"}});
  paste("frmEditChecksPost", "txtCheckFileNumber", "24-0117-123456X");
  EXPECT_EQ(refusal(), "File Number is too long: 15 characters, and 14 fit.  Shorten it.");
  EXPECT_EQ(Focus(), "txtCheckFileNumber");
  EXPECT_EQ(Get<QLineEdit>("frmEditChecksPost", "txtCheckFileNumber")->selectedText(), "24-0117-123456X");
  paste("frmEditChecksPost", "txtCheckFileNumber", "24-0117\n");  // as a cell of a spreadsheet comes
  paste("frmEditChecksPost", "txtCheckNumber", "1234567890123");
  EXPECT_EQ(refusal(), "Check Number is too long: 13 characters, and 12 fit.  Shorten it.");

  Open(kDeposits);
  type(kDeposits, {{"txtFileNumbers_1", "24-0117"}, {"txtAmounts_1", "5"}});
  paste(kDeposits, "txtSources_1", "SMITH\nTITLE");
  EXPECT_EQ(refusal(),
            "Line 1 Source has a line break or a tab in it behind \"SMITH\".  Type it on one line.");
  EXPECT_EQ(Text(kDeposits, "txtSources_1"), QString::fromUtf8("SMITH↵TITLE"));
  paste(kDeposits, "txtSources_1", "SMITH TITLE");
  paste(kDeposits, "txtDateSequence", "123");
  EXPECT_EQ(refusal(), "Sequence Number \"123\" is not one of 1 to 99.");
  EXPECT_EQ(tables_->checks.RecordCount() + tables_->deposits.RecordCount(), 0);
}

TEST_F(PostingWindowsTest, PayeesOfChecksAreOfferedForWiresAndVouchers) {
  PayeeBook(desktop_->TheSession().Company().agent).Keep({"SMITH TITLE CO", "12 Main Street", "", ""});
  struct Screen {
    std::string_view name;
    const char* payee;
  };
  for (const Screen& screen : {Screen{kWires, "txtWirePayee"}, Screen{kVouchers, "txtVCHRPayee"}}) {
    Open(screen.name);
    PutCursor(screen.name, screen.payee);
    QTest::keyClicks(QApplication::focusWidget(), "JONES");
    Press(Qt::Key_F4);
    ASSERT_EQ(Focus(), "txtFindPayee");
    QTest::keyClicks(QApplication::focusWidget(), "main");
    office_.boxes.answers = {BoxAnswer::kYes};
    Press(Qt::Key_Return);
    EXPECT_EQ(office_.TakeTexts(),
              std::vector<std::string>{"Replace payee \"JONES\" with \"SMITH TITLE CO\" ?"});
    EXPECT_EQ(Text(screen.name, screen.payee), "SMITH TITLE CO");
  }
}

TEST_F(PostingWindowsTest, FilesAreLookedUpInTheLinesOfADeposit) {
  office_.suite.files = {"24-0117", "24-0118", "25-0001"};
  Open(kDeposits);
  Type({"25-0001", "LENDER", "10"});
  ASSERT_EQ(Focus(), "txtFileNumbers_2");
  EXPECT_TRUE(Get<QLabel>(kDeposits, "lblKeys")->text().contains("F4 look-up"));
  Press(Qt::Key_F4);
  ASSERT_EQ(Focus(), "txtFindFile");
  QTest::keyClicks(QApplication::focusWidget(), "24");
  Press(Qt::Key_Down);
  EXPECT_EQ(Get<RegisterView>(kDeposits, "lstFiles")->Table().currentIndex().row(), 1);
  Press(Qt::Key_Return);
  EXPECT_FALSE(Get<RegisterView>(kDeposits, "lstFiles")->isVisible());
  EXPECT_EQ(Focus(), "txtFileNumbers_2");
  EXPECT_EQ(Text(kDeposits, "txtFileNumbers_2"), "24-0117");
  Type({"", "SMITH TITLE CO", "5"});
  EXPECT_EQ(Get<QLabel>(kDeposits, "lblDepositTotal")->text(), "15.00");
}

TEST_F(PostingWindowsTest, AnItemOfADepositIsClearedByKeysAlone) {
  Open(kDeposits);
  Type({"24-0117", "SMITH TITLE CO", "1250", "24-0117", "LENDER", "10", ""});
  Open(kClearing, "Clearing");
  EXPECT_EQ(Focus(), "txtDepositDated");
  Type({"3/15/2024", "1"});
  EXPECT_EQ(Get<QLabel>(kClearing, "lblItems_2")->text(), "24-0117  LENDER");
  EXPECT_EQ(Get<QLabel>(kClearing, "lblItemAmounts_2")->text(), "10.00");
  EXPECT_EQ(Focus(), "chkCleared_1");
  Press(Qt::Key_Down);
  Press(Qt::Key_Space);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(tables_->deposits.Read().items[1].status, "C");
  EXPECT_EQ(Get<QLabel>(kClearing, "lblDepositStatus")->text(), "Partly Cleared");
}

TEST_F(PostingWindowsTest, AnEntryOutlivesTheClosingOfItsBank) {
  Open("frmEditChecksPost");
  QTest::keyClicks(Get<QLineEdit>("frmEditChecksPost", "txtCheckPayee"), "SMITH TITLE CO");
  Command("frmMainEscrowAccounting", "mnuFileClose");
  ASSERT_EQ(desktop_->TheSession().BankCode(), "");
  Activate("frmEditChecksPost");
  PutCursor("frmEditChecksPost", "txtCheckAmount");
  Type({"1250", "24-0117"});
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  EXPECT_TRUE(tables_->checks.SeekNumber("1")) << "a screen keeps its bank";
}

TEST_F(PostingWindowsTest, EveryWindowShowsItsControls) {
  for (std::string_view screen : {kDeposits, kWires, kVouchers, kClearing}) {
    Open(screen, screen == kClearing ? "Clearing" : "Posting");
    QWidget& window = Window(screen);
    for (const Control& control : desktop_->Find(screen)->TheForm().Controls()) {
      if (control.name == "txtStmtPeriods") continue;  // for the audit trail alone
      const QString index = control.index == 0 ? "" : "_" + QString::number(control.index);
      auto* object = window.findChild<QObject*>(QString::fromStdString(control.name) + index);
      ASSERT_NE(object, nullptr) << control.name << control.index;
      const auto* widget = qobject_cast<QWidget*>(object);
      const bool is_field = control.kind != ControlKind::kLabel && control.kind != ControlKind::kMenu;
      EXPECT_TRUE(!is_field || !widget->accessibleName().isEmpty()) << control.name;
    }
  }
}

}  // namespace
}  // namespace tallwick
