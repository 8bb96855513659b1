// The ledger of a marked row by Ctrl+L, by Enter and by a double click, in the windows that list items.
#include <gmock/gmock.h>

#include <QPushButton>

#include "tests/support/desktop_test.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

constexpr std::string_view kLedger = "frmViewFileLedgers";

class LedgerKeyTest : public testing::DesktopTest {
 protected:
  void SetUp() override {
    DesktopTest::SetUp();
    CheckRecord check;
    check.number = "7";
    check.dated = {2024, 3, 15};
    check.payee = "JONES";
    check.amount = Currency::FromCents(5'00);
    check.accounting = {3, 0, 2024};
    check.status = "O";
    check.file_number = "24-0117";
    ASSERT_EQ(tables_->checks.Add(check), 0);
    desktop_->TheSession().NotifyChanged(SessionChange::kPosted);
  }
  QTableView& Mark(std::string_view screen, const char* grid) {
    auto* view = Get<RegisterView>(screen, grid);
    EXPECT_EQ(view->Model().rowCount(), 1) << screen;
    view->Table().setFocus(Qt::TabFocusReason);
    view->Table().setCurrentIndex(view->Model().index(0, 0));
    return view->Table();
  }
  // The title of the ledger that has opened, which is closed again.
  std::string TakeLedger() {
    ScreenHost* host = desktop_->Find(kLedger);
    if (host == nullptr) return "none";
    const std::string title = host->Window().windowTitle().toStdString();
    host->Close();
    return title;
  }
};

TEST_F(LedgerKeyTest, ARowLeadsToItsLedgerFromEveryList) {
  struct Case {
    const char *screen, *compute, *list, *grid;
    bool enter_too;  // opens the ledger as well; elsewhere it opens the item
  };
  const Case cases[] = {
      {"frmMainEscrowAccounting", nullptr, nullptr, "grdLatestPostings", true},
      {"frmViewTrialBalance", "cmdCompute", nullptr, "grdFiles", true},
      {"frmReconcileAccount", "cmdCompute", "cmdOutstandingChecks", "grdItems", false},
      {"frmReconcileAccount", "cmdCompute", "cmdFiles", "grdItems", true},
      {"frmEditChecksPost", nullptr, nullptr, "lstCheckNumbers", false},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.screen);
    if (desktop_->Find(one.screen) == nullptr) Open(one.screen, "");
    Activate(one.screen);
    for (const char* button : {one.compute, one.list}) {
      if (button != nullptr) Get<QPushButton>(one.screen, button)->click();
    }
    QTableView& rows = Mark(one.screen, one.grid);
    QTest::keyClick(&rows, Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(TakeLedger(), "File Ledger - 24-0117");
    if (!one.enter_too) continue;
    Activate(one.screen);
    rows.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&rows, Qt::Key_Return);
    EXPECT_EQ(TakeLedger(), "File Ledger - 24-0117");
    Activate(one.screen);
    const QPoint first = rows.visualRect(rows.model()->index(0, 0)).center();
    QTest::mouseClick(rows.viewport(), Qt::LeftButton, {}, first);
    QTest::mouseDClick(rows.viewport(), Qt::LeftButton, {}, first);
    EXPECT_EQ(TakeLedger(), "File Ledger - 24-0117");
  }
  EXPECT_THAT(office_.TakeTexts(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace tallwick
