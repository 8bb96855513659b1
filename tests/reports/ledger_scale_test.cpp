// A ledger costs its file's items, not the bank's size, and a trial balance one pass. TALLWICK_LEDGER_CHECKS
// gives the number of checks, 1000000 for the figures that are promised: 5 ms for a ledger, 2 s for the trial
// balance.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>

#include "reports/ledger_reader.h"
#include "reports/trial_balance.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

constexpr int kItemsOfFile = 40;
constexpr int kRecordsOfUnit = 100'000;

template <class Table, class MakeRecord>
void Fill(Table& table, int count, MakeRecord make) {
  for (int done = 0; done < count;) {
    ASSERT_EQ(table.Data().BeginUnit(), engine::kSuccess);
    for (const int end = std::min(count, done + kRecordsOfUnit); done < end; ++done)
      ASSERT_EQ(table.Add(make(done), true), engine::kSuccess);
    ASSERT_EQ(table.Data().CommitUnit(), engine::kSuccess);
  }
}

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

TEST(LedgerScaleTest, ALedgerCostsItsFilesItems) {
  const char* asked = std::getenv("TALLWICK_LEDGER_CHECKS");
  const int checks = asked != nullptr ? std::atoi(asked) : 10'000;
  testing::Office office;
  ASSERT_TRUE(office.Open());
  const auto file = [](int item) { return "24-" + std::to_string(100'000 + item / kItemsOfFile); };
  {
    BankTables tables(office.session->Home());
    ASSERT_TRUE(tables.Open("FNB"));
    Fill(tables.checks, checks, [&](int i) {
      CheckRecord check;
      check.number = std::to_string(i + 1);
      check.file_number = file(i);
      check.payee = "PAYEE " + std::to_string(i);
      check.dated = {2024, 3, 1 + i % 28};
      check.amount = Currency::FromCents(100 + i % 1000);
      check.status = "O";
      check.accounting = {3, 0, 2024};
      return check;
    });
  }
  const auto ledger = [&] {
    const LedgerReading reading = ReadFileLedger(*office.session, file(checks / 2));
    ASSERT_EQ(reading.ledger.Banks().front().TotalChecksCount(), kItemsOfFile);
  };
  ledger();
  constexpr int kRuns = 20;
  const double one = Milliseconds([&] {
                       for (int run = 0; run < kRuns; ++run) ledger();
                     }) /
                     kRuns;
  std::size_t files = 0;
  const auto trial = [&] { files = ReadTrialBalance(*office.session, {}, {}).files.size(); };
  trial();
  const double all = Milliseconds(trial);
  std::cout << "Among " << checks << " checks: a ledger of " << kItemsOfFile << " items in " << one
            << " ms, the trial balance of " << files << " files in " << all << " ms\n";
  EXPECT_EQ(files, static_cast<std::size_t>((checks + kItemsOfFile - 1) / kItemsOfFile));
  EXPECT_LT(one, 100) << "5 ms on a machine at rest";
}

}  // namespace
}  // namespace tallwick
