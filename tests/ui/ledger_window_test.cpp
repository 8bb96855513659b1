// The ledger's window: from a posting screen to the ledger of its file, and from there to the item.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "tests/support/keeping_printer.h"
#include "tests/support/office.h"
#include "ui/desktop.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using testing::FakeSuite;
using ::testing::IsEmpty;
using testing::KeepingPrinter;
using testing::Office;

constexpr std::string_view kLedger = "frmViewFileLedgers";
constexpr std::string_view kVouchers = "frmEditVouchersPost";

TEST(LedgerWindowTest, OpensFromAnEntryAndLeadsBackToTheItem) {
  Office office;
  office.suite.files = {"24-0117"};
  ASSERT_TRUE(office.Open());
  office.session.reset();
  KeepingPrinter printer;
  Desktop desktop({office.boxes, SystemFileSystem(), office.clock, office.workstation, nullptr, nullptr,
                   nullptr, &printer});
  ASSERT_TRUE(desktop.Start([&] { return std::make_unique<FakeSuite>(office.suite); }));
  ASSERT_TRUE(SelectBank(desktop.TheSession(), "FNB"));
  {
    BankTables tables(desktop.TheSession().Home());
    ASSERT_TRUE(tables.Open("FNB"));
    VoucherRecord voucher;
    voucher.number = "7";
    voucher.file_number = "24-0117";
    voucher.payee = "JONES";
    voucher.amount = Currency::FromCents(5'00);
    voucher.status = "O";
    voucher.accounting = {3, 0, 2024};
    ASSERT_EQ(tables.vouchers.Add(voucher), 0);
  }
  const auto window = [&](std::string_view screen) -> QWidget& { return desktop.Find(screen)->Window(); };

  desktop.OpenScreen(kVouchers, "Posting");
  window(kVouchers).activateWindow();
  QTest::qWait(1);
  auto* file = window(kVouchers).findChild<QLineEdit*>("txtVCHRFileNumber");
  file->setFocus(Qt::TabFocusReason);
  QTest::keyClicks(file, "24-0117");
  QTest::keyClick(file, Qt::Key_L, Qt::ControlModifier);
  ASSERT_NE(desktop.Find(kLedger), nullptr);
  QWidget& ledger = window(kLedger);
  EXPECT_EQ(ledger.windowTitle(), "File Ledger - 24-0117");
  EXPECT_EQ(ledger.findChild<QLabel*>("lblCondition")->text(), "Balanced");
  EXPECT_EQ(ledger.findChild<QListWidget*>("lstBanks")->count(), 1);
  auto* vouchers = ledger.findChild<RegisterView*>("grdVouchers");
  ASSERT_EQ(vouchers->Model().rowCount(), 1);
  EXPECT_FALSE(ledger.findChild<QPushButton*>("cmdOpenItem")->isEnabled());

  ledger.activateWindow();
  QTest::qWait(1);
  vouchers->Table().setFocus(Qt::TabFocusReason);
  vouchers->Table().setCurrentIndex(vouchers->Model().index(0, 0));
  EXPECT_TRUE(ledger.findChild<QPushButton*>("cmdOpenItem")->isEnabled());
  QTest::keyClick(&vouchers->Table(), Qt::Key_Return);
  ASSERT_NE(desktop.Find(kVouchers), nullptr);
  QWidget& viewed = window(kVouchers);
  EXPECT_EQ(viewed.windowTitle(), "View Vouchers - First National Trust");
  EXPECT_EQ(viewed.findChild<QLineEdit*>("txtVCHRPayee")->text(), "JONES");
  EXPECT_FALSE(viewed.findChild<QPushButton*>("cmdOk")->isEnabled());
  ledger.findChild<QAction*>("mnuFilePdf")->trigger();
  ledger.findChild<QAction*>("mnuFileRtf")->trigger();
  ASSERT_EQ(printer.ways.size(), 2U);
  EXPECT_EQ(printer.ways[1].substr(0, 18), "rtf Ledger 24-0117");
  EXPECT_THAT(office.TakeTexts(), IsEmpty());
}

}  // namespace
}  // namespace tallwick
