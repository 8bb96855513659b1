// The ledger's window: from a posting screen to the ledger of its file, and from there to the item.
#include <gmock/gmock.h>

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "tests/support/desktop_test.h"
#include "tests/support/keeping_printer.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using ::testing::IsEmpty;
using testing::KeepingPrinter;

constexpr std::string_view kLedger = "frmViewFileLedgers";
constexpr std::string_view kVouchers = "frmEditVouchersPost";

class LedgerWindowTest : public testing::DesktopTest {
 protected:
  LedgerWindowTest() { office_.printer = &printer_; }

  KeepingPrinter printer_;
};

TEST_F(LedgerWindowTest, OpensFromAnEntryAndLeadsBackToTheItem) {
  VoucherRecord voucher;
  voucher.number = "7";
  voucher.file_number = "24-0117";
  voucher.payee = "JONES";
  voucher.amount = Currency::FromCents(5'00);
  voucher.status = "O";
  voucher.accounting = {3, 0, 2024};
  ASSERT_EQ(tables_->vouchers.Add(voucher), 0);

  Open(kVouchers);
  PutCursor(kVouchers, "txtVCHRFileNumber");
  QTest::keyClicks(QApplication::focusWidget(), "24-0117");
  Press(Qt::Key_L, Qt::ControlModifier);
  ASSERT_NE(desktop_->Find(kLedger), nullptr);
  QWidget& ledger = Window(kLedger);
  EXPECT_EQ(ledger.windowTitle(), "File Ledger - 24-0117");
  EXPECT_EQ(ledger.findChild<QLabel*>("lblCondition")->text(), "Balanced");
  EXPECT_EQ(ledger.findChild<QListWidget*>("lstBanks")->count(), 1);
  auto* vouchers = ledger.findChild<RegisterView*>("grdVouchers");
  ASSERT_EQ(vouchers->Model().rowCount(), 1);
  EXPECT_FALSE(ledger.findChild<QPushButton*>("cmdOpenItem")->isEnabled());

  Activate(kLedger);
  vouchers->Table().setFocus(Qt::TabFocusReason);
  vouchers->Table().setCurrentIndex(vouchers->Model().index(0, 0));
  EXPECT_TRUE(ledger.findChild<QPushButton*>("cmdOpenItem")->isEnabled());
  QTest::keyClick(&vouchers->Table(), Qt::Key_Return);
  ASSERT_NE(desktop_->Find(kVouchers), nullptr);
  QWidget& viewed = Window(kVouchers);
  EXPECT_EQ(viewed.windowTitle(), "View Vouchers - First National Trust");
  EXPECT_EQ(viewed.findChild<QLineEdit*>("txtVCHRPayee")->text(), "JONES");
  EXPECT_FALSE(viewed.findChild<QPushButton*>("cmdOk")->isEnabled());
  ledger.findChild<QAction*>("mnuFilePdf")->trigger();
  ledger.findChild<QAction*>("mnuFileRtf")->trigger();
  ASSERT_EQ(printer_.ways.size(), 2U);
  EXPECT_EQ(printer_.ways[1].substr(0, 18), "rtf Ledger 24-0117");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
}

}  // namespace
}  // namespace tallwick
