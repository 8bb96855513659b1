// The registers of the posting screens over many records: the first rows stand at once, the rest and the
// totals come while the window answers. TALLWICK_REGISTER_ROWS says how many records, for a run that
// measures; the figures are printed.
#include <QElapsedTimer>

#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

#include "posting/entry_problems.h"
#include "tests/support/desktop_test.h"
#include "tests/support/processes.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

constexpr int kBatch = 50'000;

struct Screen {
  const char* name;
  const char* list;
  const char* second_list;  // a button that filters
  const char* find;         // a text that a tag knows
  const char* found;        // first cell of its row
  void (*fill)(BankTables&, int number);
};

std::string Number(int number) {
  return std::to_string(100'000 + number);
}

const char* PayeeOf(int number) {
  return number % 1000 == 17 ? "QUINCY ABSTRACT" : "SMITH TITLE CO";
}

// Every hundredth is cleared or used up.
std::string StatusOf(int number) {
  return number % 100 == 0 ? "C" : "O";
}

template <class Record>
Record Make(int number) {
  Record record;
  record.number = Number(number);
  record.dated = {2024, 3, 15};
  record.payee = PayeeOf(number);
  record.amount = Currency::FromCents(100 + number % 977);
  record.file_number = "24-" + std::to_string(number % 5000);
  record.accounting = {3, 0, 2024};
  record.status = StatusOf(number);
  return record;
}

DepositRecord MakeDeposit(int number) {
  DepositRecord deposit;
  deposit.dated = StoredDate(DateFromJulianDay(2440000 + number / 99));
  deposit.sequence = std::to_string(number % 99 + 1);
  deposit.accounting = {3, 0, 2024};
  deposit.item_count = 1;
  DepositItem& item = deposit.items[0];
  item.number = "1";
  item.file_number = "24-1";
  item.source = PayeeOf(number);
  item.amount = Currency::FromCents(100 + number % 977);
  item.status = StatusOf(number);
  return deposit;
}

const Screen kScreens[] = {
    {"frmEditChecksPost", "lstCheckNumbers", "cmdListCleared", "100777", "100777",
     [](BankTables& bank, int number) { ASSERT_EQ(bank.checks.Add(Make<CheckRecord>(number), true), 0); }},
    {"frmEditWiresPost", "lstWireNumbers", "cmdListCleared", "100777", "100777",
     [](BankTables& bank, int number) { ASSERT_EQ(bank.wires.Add(Make<WireRecord>(number), true), 0); }},
    {"frmEditVouchersPost", "lstVCHRNumbers", "cmdListCleared", "100777", "100777",
     [](BankTables& bank, int number) {
       ASSERT_EQ(bank.vouchers.Add(Make<VoucherRecord>(number), true), 0);
     }},
    {"frmEditDepositsPost", "lstDepositDates", "cmdListCleared", "05/26/1968", "05-26-1968",
     [](BankTables& bank, int number) { ASSERT_EQ(bank.deposits.Add(MakeDeposit(number), true), 0); }},
};

class BigRegister : public testing::DesktopTest, public ::testing::WithParamInterface<Screen> {
 protected:
  void Fill(int rows) {
    clsKVRData& data = desktop_->TheSession().Data();
    for (int number = 1; number <= rows;) {
      ASSERT_EQ(data.BeginUnit(), 0);
      for (int end = std::min(number + kBatch, rows + 1); number < end; ++number)
        ASSERT_NO_FATAL_FAILURE(GetParam().fill(*tables_, number));
      ASSERT_EQ(data.CommitUnit(), 0);
    }
    desktop_->TheSession().NotifyChanged(
        SessionChange::kPosted);  // the main window's figures are not measured
  }
  RegisterView& View() { return *Get<RegisterView>(GetParam().name, GetParam().list); }
  int Rows() { return View().Model().rowCount(); }
  QString Cell(int row) { return View().Model().index(row, 0).data().toString(); }
  QString Line() {
    for (QLabel* label : View().findChildren<QLabel*>()) {
      if (label->text().contains("row")) return label->text();
    }
    return {};
  }
  // Lets the window work until the totals stand; the longest turn of the event loop, in milliseconds.
  qint64 Settle() {
    qint64 longest = 0;
    QElapsedTimer all;
    all.start();
    while (!Line().contains("Total") && all.elapsed() < 120'000) {
      QElapsedTimer turn;
      turn.start();
      QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
      longest = std::max(longest, turn.elapsed());
    }
    return longest;
  }
  void Say(const char* what, qint64 ms) {
    std::printf("  %-20s %-40s %6lld ms\n", GetParam().name, what, static_cast<long long>(ms));
  }
};

TEST_P(BigRegister, ShowsItsFirstRowsAtOnceAndTheRestWhileItAnswers) {
  const Screen& screen = GetParam();
  const int rows = testing::Setting("TALLWICK_REGISTER_ROWS", 3000);
  const bool measured = rows >= 1'000'000;
  ASSERT_NO_FATAL_FAILURE(Fill(rows));
  QElapsedTimer timer;
  timer.start();
  desktop_->OpenScreen(screen.name, "Posting");
  View().Table().viewport()->grab();
  const qint64 first_rows = timer.elapsed();
  EXPECT_GT(Rows(), 30);
  EXPECT_NE(Cell(0), "");
  Say("open, to the first rows drawn", first_rows);
  EXPECT_TRUE(!measured || first_rows < 200);
  timer.start();
  const qint64 turn = Settle();
  Say("all rows and their total", timer.elapsed());
  Say("longest turn meanwhile", turn);
  Activate(screen.name);
  EXPECT_EQ(Rows(), rows);
  Currency total;
  for (int number = 1; number <= rows; ++number) total += Currency::FromCents(100 + number % 977);
  EXPECT_TRUE(Line().contains("Total " + QString::fromStdString(AmountText(total)))) << Line().toStdString();

  timer.start();
  QScrollBar* bar = View().Table().verticalScrollBar();
  for (int place = 1; place <= 50; ++place) {
    bar->setValue(static_cast<int>(std::int64_t{bar->maximum()} * (place * 37 % 51) / 51));
    View().Table().viewport()->grab();
  }
  Say("one of fifty jumps through the list", timer.elapsed() / 50);
  EXPECT_NE(Cell(rows - 1), "");

  timer.start();
  QTest::keyClick(&Window(screen.name), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), screen.find);
  Say("found while typed", timer.elapsed());
  EXPECT_EQ(Cell(View().Table().currentIndex().row()).toStdString(), screen.found);

  timer.start();
  Get<QPushButton>(screen.name, screen.second_list)->click();
  while (Rows() == 0 && timer.elapsed() < 60'000) QCoreApplication::processEvents();
  View().Table().viewport()->grab();
  Say("filter, to the first rows drawn", timer.elapsed());
  EXPECT_TRUE(!measured || timer.elapsed() < 200);
  Settle();
  Say("filter, all rows", timer.elapsed());
  EXPECT_EQ(Rows(), rows / 100);
}

INSTANTIATE_TEST_SUITE_P(Screens, BigRegister, ::testing::ValuesIn(kScreens),
                         [](const auto& one) { return std::string(one.param.name); });

class AmountOrder : public BigRegister {};

TEST_P(AmountOrder, IsMadeInStepsAndCanBeStopped) {
  const int rows = testing::Setting("TALLWICK_REGISTER_ROWS", 3000);
  ASSERT_NO_FATAL_FAILURE(Fill(rows));
  Open("frmEditChecksPost");
  Settle();
  QElapsedTimer timer;
  timer.start();
  Command("frmEditChecksPost", "mnuViewAmount");
  Say("amount order, until the window answers", timer.elapsed());
  Settle();
  Say("amount order, all rows", timer.elapsed());
  EXPECT_EQ(Rows(), rows);
  const auto amount = [&](int row) { return View().Model().index(row, 3).data().toString().toDouble(); };
  for (int row = 1; row < 2000; ++row) ASSERT_GE(amount(row - 1), amount(row));
  Command("frmEditChecksPost", "mnuViewPayee");
  Command("frmEditChecksPost", "mnuViewAmount");
  const bool sorting = Rows() == 0;
  QTest::keyClick(&Window("frmEditChecksPost"), Qt::Key_Escape);
  if (!sorting) GTEST_SKIP() << "sorted at once, which left nothing to stop: the key closes the screen";
  ASSERT_NE(desktop_->Find("frmEditChecksPost"), nullptr);
  EXPECT_TRUE(Get<QAction>("frmEditChecksPost", "mnuViewNumber")->isChecked());
}

INSTANTIATE_TEST_SUITE_P(Checks, AmountOrder, ::testing::Values(kScreens[0]));

}  // namespace
}  // namespace tallwick
