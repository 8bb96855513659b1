// The reconcile window under a clerk's hands: typed figures, computed results, the items behind them, the
// update, and what is asked on leaving.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "tests/support/office.h"
#include "ui/desktop.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using testing::FakeSuite;
using testing::Office;

constexpr std::string_view kReconcile = "frmReconcileAccount";

class ReconcileWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open());
    office_.session.reset();
    ASSERT_TRUE(desktop_.Start([&] { return std::make_unique<FakeSuite>(office_.suite); }));
    ASSERT_TRUE(SelectBank(desktop_.TheSession(), "FNB"));
    BankTables tables(desktop_.TheSession().Home());
    ASSERT_TRUE(tables.Open("FNB"));
    CheckRecord check;
    check.number = "1001";
    check.payee = "JONES";
    check.amount = Currency::FromCents(40'00);
    check.accounting = {3, 0, 2024};
    check.status = "O";
    check.file_number = "24-0117";
    ASSERT_EQ(tables.checks.Add(check), 0);
    desktop_.OpenScreen(kReconcile, {});
    ASSERT_NE(desktop_.Find(kReconcile), nullptr);
  }
  template <class Widget>
  Widget& Find(const char* name) {
    return *desktop_.Find(kReconcile)->Window().findChild<Widget*>(name);
  }
  void Type(const char* name, const char* text) {
    auto& field = Find<QLineEdit>(name);
    field.setFocus(Qt::TabFocusReason);
    field.selectAll();
    QTest::keyClicks(&field, text);
  }
  void Press(const char* name) { QTest::mouseClick(&Find<QPushButton>(name), Qt::LeftButton); }
  QString Shown(const char* name) { return Find<QLineEdit>(name).text(); }

  Office office_;
  Desktop desktop_{{office_.boxes, SystemFileSystem(), office_.clock, office_.workstation}};
};

TEST_F(ReconcileWindowTest, BalancesShowsItsItemsAndUpdates) {
  EXPECT_EQ(Shown("txtStatementDate"), "3-2024");
  EXPECT_FALSE(Find<QPushButton>("cmdOutstandingChecks").isEnabled());
  Type("txtBankStatementBalance", "10");
  Press("cmdCompute");
  EXPECT_EQ(Find<QLabel>("lblStatus").text(), "Account Not Balanced...");
  EXPECT_EQ(Shown("txtDifferenceBalances"), "10.00");
  Type("txtPlusBankCredits", "10");
  Press("cmdCompute");
  EXPECT_EQ(Shown("txtAdjustedBalance"), "-30.00");
  EXPECT_EQ(Find<QLabel>("lblStatus").text(), "Account Balanced to a Zero Difference...");

  const int least = desktop_.Find(kReconcile)->Window().minimumSizeHint().width();
  Press("cmdOutstandingChecks");
  EXPECT_EQ(desktop_.Find(kReconcile)->Window().minimumSizeHint().width(), least) << "nothing moves";
  auto& items = Find<RegisterView>("grdItems");
  ASSERT_EQ(items.Model().rowCount(), 1);
  EXPECT_EQ(items.Model().index(0, 5).data().toString(), "JONES");
  items.Table().setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(Find<QLabel>("lblKeys").text().startsWith("Enter opens it"));
  EXPECT_FALSE(Find<QPushButton>("cmdTakeBack").isEnabled());

  Press("cmdUpdateBankRecord");
  EXPECT_EQ(Find<QLabel>("lblStatus").text(), "Updated as Reconciled for 3-2024 ...");
  EXPECT_EQ(Shown("txtReconciledThrough"), "3-2024");
  office_.boxes.answers = {BoxAnswer::kNo};
  QTest::keyClick(&Find<QLineEdit>("txtStatementDate"), Qt::Key_Escape);
  EXPECT_EQ(desktop_.Find(kReconcile), nullptr);
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("WARNING - Account Reconciled but Report NOT Printed...\r\rPrint now ?"));
}

TEST_F(ReconcileWindowTest, RefusesADateAndKeepsAReconciledAccountOpen) {
  Type("txtStatementDate", "12/2023");
  Press("cmdCompute");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("12-2023 is prior or the same as the last reconciliation 1-2024"));
  EXPECT_EQ(desktop_.Find(kReconcile)->Window().focusWidget(), &Find<QLineEdit>("txtStatementDate"));
  Type("txtStatementDate", "2/2024");
  Press("cmdCompute");
  EXPECT_EQ(Shown("txtDifferenceBalances"), "0.00");
  office_.boxes.answers = {BoxAnswer::kCancel};
  Press("cmdClose");
  ASSERT_NE(desktop_.Find(kReconcile), nullptr);
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("WARNING - Account Reconciled but NOT Updated...\r\rUpdate now?"));
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
