// The demo company: it must add up, look like a year's work, and be the same each time.
#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "cli/demo/company.h"
#include "tests/cli/run_escrowctl.h"

namespace tallwick::testing {
namespace {

using cli::DemoBank;
using cli::DemoCompany;
using cli::MakeDemoCompany;

bool GivenBack(const CheckRecord& check) {
  return check.status == "V" || check.status == "S";
}

// Of everything up to the last reconciliation: what the check book and the bank hold, and what lies between.
void ExpectReconciled(const DemoBank& bank) {
  const std::int32_t last = MakeKey(bank.bank.reconciled);
  Currency book;
  Currency statement;
  Currency in_transit;
  const auto count = [&](const Period& posted, const Period& cleared, Currency amount) {
    if (MakeKey(posted) > last) return;
    const bool is_cleared = !cleared.IsEmpty() && MakeKey(cleared) <= last;
    book += amount;
    (is_cleared ? statement : in_transit) += amount;
  };
  for (const CheckRecord& check : bank.checks) {
    if (!GivenBack(check))
      count(check.accounting, check.statement, -check.amount);
    else if (MakeKey(check.statement) > last)
      count(check.accounting, {}, -check.amount);
  }
  for (const WireRecord& wire : bank.wires) count(wire.accounting, wire.statement, -wire.amount);
  for (const DepositRecord& deposit : bank.deposits)
    for (const DepositItem& item : deposit.items) count(deposit.accounting, item.statement, item.amount);
  EXPECT_EQ(bank.bank.ending_balance, book) << bank.bank.code;
  EXPECT_EQ(bank.bank.statement_balance, statement) << bank.bank.code;
  EXPECT_EQ(book, statement + in_transit);
}

std::map<std::string, Currency> FileBalances(const DemoCompany& company) {
  std::map<std::string, Currency> balances;
  for (const DemoBank& bank : company.banks) {
    for (const CheckRecord& check : bank.checks)
      if (!GivenBack(check)) balances[check.file_number] -= check.amount;
    for (const WireRecord& wire : bank.wires) balances[wire.file_number] -= wire.amount;
    for (const DepositRecord& deposit : bank.deposits)
      for (const DepositItem& item : deposit.items)
        if (!item.file_number.empty()) balances[item.file_number] += item.amount;
  }
  return balances;
}

// Days on which calendars go wrong: month ends, 29 February, a Sunday, New Year.
TEST(Demo, AddsUpOnAnyDay) {
  for (const Date& today : {Date{2024, 3, 15}, Date{2024, 2, 29}, Date{2024, 3, 1}, Date{2025, 1, 1},
                            Date{2024, 12, 29}, Date{2023, 3, 9}}) {
    const DemoCompany company = MakeDemoCompany(7, 300, today);
    const std::string stored_today = StoredDate(today);
    for (const DemoBank& bank : company.banks) {
      ExpectReconciled(bank);
      const Currency none;
      std::int64_t number = bank.checks.empty() ? 0 : std::stoll(bank.checks.front().number);
      for (const CheckRecord& check : bank.checks) {
        EXPECT_EQ(check.number, std::to_string(number++));
        EXPECT_LE(check.dated, today);
        EXPECT_EQ(check.amount == none, check.file_number == "VOID");
        EXPECT_EQ(check.status == "O" || check.status == "H", check.statement.IsEmpty());
      }
      for (const DepositRecord& deposit : bank.deposits) EXPECT_LE(deposit.dated, stored_today);
      // As the program leaves them: the check that used one is noted, the clerk's mark is nobody's.
      for (const VoucherRecord& voucher : bank.vouchers) {
        EXPECT_EQ(voucher.status, "O");
        const bool is_named =
            std::any_of(bank.checks.begin(), bank.checks.end(), [&](const CheckRecord& check) {
              return check.status != "V" && check.voucher_number == voucher.number &&
                     (voucher.check_number.empty() || check.number == voucher.check_number);
            });
        EXPECT_EQ(is_named, !voucher.check_number.empty()) << voucher.number;
      }
      EXPECT_EQ(bank.bank.last_voucher, static_cast<std::int64_t>(bank.vouchers.size()));
    }
  }
}

TEST(Demo, LooksLikeAnOffice) {
  const DemoCompany company = MakeDemoCompany(1, 500, {2024, 3, 15});
  std::map<std::string, int> statuses;
  std::set<std::string> payees;
  for (const DemoBank& bank : company.banks) {
    EXPECT_GT(bank.checks.size(), 100u) << bank.bank.code;
    EXPECT_GT(bank.wires.size(), 20u) << bank.bank.code;
    EXPECT_GT(bank.vouchers.size(), 20u) << bank.bank.code;
    for (const CheckRecord& check : bank.checks) {
      ++statuses[check.status];
      payees.insert(check.payee);
    }
  }
  for (const char* status : {"O", "H", "C", "V", "S"}) EXPECT_GT(statuses[status], 0) << status;
  EXPECT_GT(payees.size(), 200u);
  EXPECT_EQ(company.banks[0].bank.accounting.day, 15);
  EXPECT_EQ(company.banks[1].bank.accounting.day, 0);

  int balanced = 0;
  int funded = 0;
  int overdrawn = 0;
  for (const auto& [file, balance] : FileBalances(company))
    ++(balance.IsZero() ? balanced : balance.IsNegative() ? overdrawn : funded);
  EXPECT_GT(balanced, 400);
  EXPECT_GT(funded, 20);
  EXPECT_GT(overdrawn, 0);
  EXPECT_LT(overdrawn, 15);
}

TEST(Demo, IsWrittenWholeAndTheSameEachTime) {
  const Escrowctl first;
  const Escrowctl second;
  const Escrowctl other;
  const RunResult made = first.Run("--json demo --files 60 --seed 9");
  ASSERT_EQ(made.status, 0) << made.err;
  ASSERT_EQ(second.Run("demo --files 60 --seed 9").status, 0);
  ASSERT_EQ(other.Run("demo --files 60 --seed 10").status, 0);
  EXPECT_EQ(made.Json()["files"], 60);
  const nlohmann::json verified = first.Run("--json verify").Json();
  EXPECT_EQ(verified["problems"], nlohmann::json::array());
  for (const auto& entry : std::filesystem::directory_iterator(first.Data())) {
    const std::string name = entry.path().filename().string();
    if (!name.ends_with(".DBF") && !name.ends_with(".CDX")) continue;
    EXPECT_EQ(ReadWhole(first.Data(name)), ReadWhole(second.Data(name))) << name;
  }
  EXPECT_NE(ReadWhole(first.Data("ESCROW_CHECKS_FNT.DBF")), ReadWhole(other.Data("ESCROW_CHECKS_FNT.DBF")));
  EXPECT_EQ(first.Run("demo").status, 1);  // the folder holds a company
  EXPECT_EQ(first.Run("demo --files 0").status, 2);
}

TEST(Demo, CountsNoAuditEntryThatWasNotWritten) {
  const Escrowctl escrowctl;
  std::filesystem::create_directories(escrowctl.Data());
  escrowctl.Write("data/Logs", "a file where the folder should be");
  const RunResult made = escrowctl.Run("--json demo --files 20");
  EXPECT_EQ(made.status, 1);
  EXPECT_NE(made.err.find("audit logs"), std::string::npos) << made.err;
  EXPECT_FALSE(made.Json().contains("auditEntries"));
}

}  // namespace
}  // namespace tallwick::testing
