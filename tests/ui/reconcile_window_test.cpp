// The reconcile window under a clerk's hands: typed figures, computed results, the items behind them, the
// update, and what is asked on leaving.
#include <gmock/gmock.h>

#include <QLabel>
#include <QPushButton>

#include "tests/support/desktop_test.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;

constexpr std::string_view kReconcile = "frmReconcileAccount";

class ReconcileWindowTest : public testing::DesktopTest {
 protected:
  void SetUp() override {
    DesktopTest::SetUp();
    CheckRecord check;
    check.number = "1001";
    check.payee = "JONES";
    check.amount = Currency::FromCents(40'00);
    check.accounting = {3, 0, 2024};
    check.status = "O";
    check.file_number = "24-0117";
    ASSERT_EQ(tables_->checks.Add(check), 0);
    Open(kReconcile, {});
  }
  template <class Widget>
  Widget& Find(const char* name) {
    return *Get<Widget>(kReconcile, name);
  }
  void Fill(const char* name, const char* text) {
    PutCursor(kReconcile, name);
    Find<QLineEdit>(name).selectAll();
    QTest::keyClicks(&Find<QLineEdit>(name), text);
  }
  void Click(const char* name) { QTest::mouseClick(&Find<QPushButton>(name), Qt::LeftButton); }
  QString Shown(const char* name) { return Text(kReconcile, name); }
};

TEST_F(ReconcileWindowTest, BalancesShowsItsItemsAndUpdates) {
  EXPECT_EQ(Shown("txtStatementDate"), "3-2024");
  EXPECT_FALSE(Find<QPushButton>("cmdOutstandingChecks").isEnabled());
  Fill("txtBankStatementBalance", "10");
  Click("cmdCompute");
  EXPECT_EQ(Find<QLabel>("lblStatus").text(), "Account Not Balanced...");
  EXPECT_EQ(Shown("txtDifferenceBalances"), "10.00");
  Fill("txtPlusBankCredits", "10");
  Click("cmdCompute");
  EXPECT_EQ(Shown("txtAdjustedBalance"), "-30.00");
  EXPECT_EQ(Find<QLabel>("lblStatus").text(), "Account Balanced to a Zero Difference...");

  const int least = Window(kReconcile).minimumSizeHint().width();
  Click("cmdOutstandingChecks");
  EXPECT_EQ(Window(kReconcile).minimumSizeHint().width(), least) << "nothing moves";
  auto& items = Find<RegisterView>("grdItems");
  ASSERT_EQ(items.Model().rowCount(), 1);
  EXPECT_EQ(items.Model().index(0, 5).data().toString(), "JONES");
  items.Table().setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(Find<QLabel>("lblKeys").text().startsWith("Enter opens it"));
  EXPECT_FALSE(Find<QPushButton>("cmdTakeBack").isEnabled());

  Click("cmdUpdateBankRecord");
  EXPECT_EQ(Find<QLabel>("lblStatus").text(), "Updated as Reconciled for 3-2024 ...");
  EXPECT_EQ(Shown("txtReconciledThrough"), "3-2024");
  office_.boxes.answers = {BoxAnswer::kNo};
  QTest::keyClick(&Find<QLineEdit>("txtStatementDate"), Qt::Key_Escape);
  EXPECT_EQ(desktop_->Find(kReconcile), nullptr);
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("WARNING - Account Reconciled but Report NOT Printed...\r\rPrint now ?"));
}

TEST_F(ReconcileWindowTest, RefusesADateAndKeepsAReconciledAccountOpen) {
  Fill("txtStatementDate", "12/2023");
  Click("cmdCompute");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("12-2023 is prior or the same as the last reconciliation 1-2024"));
  EXPECT_EQ(Window(kReconcile).focusWidget(), &Find<QLineEdit>("txtStatementDate"));
  Fill("txtStatementDate", "2/2024");
  Click("cmdCompute");
  EXPECT_EQ(Shown("txtDifferenceBalances"), "0.00");
  office_.boxes.answers = {BoxAnswer::kCancel};
  Click("cmdClose");
  ASSERT_NE(desktop_->Find(kReconcile), nullptr);
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("WARNING - Account Reconciled but NOT Updated...\r\rUpdate now?"));
}

TEST_F(ReconcileWindowTest, FiguresThatWereTypedAreNotThrownAwayUnasked) {
  const auto escape = [this](BoxAnswer answer) {
    office_.boxes.answers = {answer};
    QTest::keyClick(&Find<QLineEdit>("txtStatementDate"), Qt::Key_Escape);
    return desktop_->Find(kReconcile) == nullptr;
  };
  const char* question = "The figures entered are not in the bank record.\r\rClose without them ?";
  for (const char* field : {"txtBeginningCheckBookBalance", "txtBankStatementBalance"}) {
    PutCursor(kReconcile, field);
  }
  EXPECT_TRUE(escape(BoxAnswer::kNo));
  EXPECT_TRUE(office_.TakeTexts().empty()) << "nothing was typed";
  Open(kReconcile, {});
  Fill("txtBankStatementBalance", "10");
  EXPECT_FALSE(escape(BoxAnswer::kNo));
  Click("cmdCompute");
  EXPECT_TRUE(escape(BoxAnswer::kYes));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question, question));
}

TEST_F(ReconcileWindowTest, EnterGoesOnUntilTheStatementsBalanceIsThere) {
  auto& date = Find<QLineEdit>("txtStatementDate");
  date.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&date, Qt::Key_Return);
  EXPECT_EQ(date.window()->focusWidget(), &Find<QLineEdit>("txtBankStatementBalance"));
  EXPECT_EQ(Find<QLabel>("lblStatus").text(), "");
}

}  // namespace
}  // namespace tallwick
