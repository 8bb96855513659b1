// The ledger's arithmetic, and the walk over real tables.

#include "reports/file_ledger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reports/ledger_reader.h"
#include "reports/report_origin.h"
#include "reports/trial_balance.h"
#include "shell/clsSecurity.h"
#include "shell/rights.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using testing::Office;

CheckRecord Check(const char* number, std::int64_t cents, const char* status, const char* file = "24-0117") {
  CheckRecord check;
  check.number = number;
  check.amount = Currency::FromCents(cents);
  check.status = status;
  check.file_number = file;
  return check;
}

DepositRecord Deposit(std::int64_t first_cents, std::int64_t twelfth_cents) {
  DepositRecord deposit;
  deposit.dated = "20240310";
  deposit.sequence = "1";
  deposit.items[0] = {"1", "24-0117", "BUYER", Currency::FromCents(first_cents), {}, "O"};
  deposit.items[11] = {"12", "24-0117", "LENDER", Currency::FromCents(twelfth_cents), {}, "C"};
  deposit.spare = std::string(11, ' ') + "X";
  return deposit;
}

TEST(FileLedgerTest, AddsUpBankByBank) {
  BankLedger bank("FNB", "First");
  bank.AddCheck(Check("1", 100'00, "O"));
  bank.AddCheck(Check("2", 30'00, "V"));
  bank.AddCheck(Check("3", 7'00, "S"));
  WireRecord wire;
  wire.amount = Currency::FromCents(50'00);
  bank.AddWire(wire);
  bank.AddDepositItem(Deposit(200'00, 25'00), 1);
  bank.AddDepositItem(Deposit(200'00, 25'00), 12);
  bank.AddDepositItem(Deposit(200'00, 25'00), 16);
  VoucherRecord voucher;
  voucher.amount = Currency::FromCents(10'00);
  bank.AddVoucher(voucher);
  EXPECT_EQ(bank.TotalChecks().ToText(), "137.00");
  EXPECT_EQ(bank.TotalChecksCount(), 3);
  EXPECT_EQ(bank.VoidChecks().ToText(), "37.00");
  EXPECT_EQ(bank.VoidChecksCount(), 2);
  EXPECT_EQ(bank.NetChecks().ToText(), "100.00");
  EXPECT_EQ(bank.NetDisbursements().ToText(), "150.00");
  EXPECT_EQ(bank.TotalDeposits().ToText(), "225.00");
  EXPECT_EQ(bank.TotalDepositsCount(), 2);
  EXPECT_EQ(bank.BankBalance().ToText(), "75.00");
  EXPECT_EQ(bank.AdjustedBalance().ToText(), "65.00");
  EXPECT_FALSE(bank.Deposits()[0].wire_in);
  EXPECT_TRUE(bank.Deposits()[1].wire_in);

  FileLedger ledger("24-0117");
  ledger.AddBank(bank);
  ledger.AddBank(BankLedger("SAV", "without transactions"));
  EXPECT_EQ(ledger.MultipleBanks(), "No");
  EXPECT_EQ(ledger.FileBalance().ToText(), "75.00");
  EXPECT_EQ(ledger.Vouchered().ToText(), "10.00");
}

TEST(FileLedgerTest, TheConditionTurnsAtTheCent) {
  struct Case {
    std::int64_t check_cents, deposit_cents;
    const char* status;
    const char* condition;
  };
  const Case cases[] = {{100, 100, "O", "Balanced"},
                        {101, 100, "O", "Over Drawn"},
                        {100, 101, "C", "Funds Available"},
                        {100, 0, "V", "Balanced"}};
  for (const Case& one : cases) {
    BankLedger checks("FNB", "");
    BankLedger deposits("SAV", "");
    checks.AddCheck(Check("1", one.check_cents, one.status));
    deposits.AddDepositItem(Deposit(one.deposit_cents, 0), 1);
    FileLedger ledger("24-0117");
    ledger.AddBank(checks);
    ledger.AddBank(deposits);
    EXPECT_EQ(ledger.Condition(), one.condition);
    EXPECT_EQ(ledger.MultipleBanks(), "Yes");
  }
  EXPECT_EQ(LedgerStatusText("H"), "Outstanding");
  EXPECT_EQ(LedgerStatusText("S"), "Stopped Payment ");
}

TEST(LedgerReaderTest, FindsTheFilesRowsInEveryBank) {
  Office office;
  office.session = std::move(office.Start().session);
  ASSERT_TRUE(office.session);
  EXPECT_EQ(ReadFileLedger(*office.session, "24-0117").message, "No banks have been created.");
  ASSERT_TRUE(office.AddBank("FNB", "Zuercher") && office.AddBank("SAV", "Alpine"));
  EXPECT_EQ(ReadFileLedger(*office.session, " 24-0117 ").message,
            "24-0117 does NOT have any transactions posted.");
  EXPECT_EQ(ReadFileLedger(*office.session, "26-m\u00fcller").ledger.FileNumber(), "26-M\u00dcLLER");
  BankTables tables(office.session->Home());
  ASSERT_TRUE(tables.Open("FNB"));
  for (const CheckRecord& check : {Check("2", 2, "O"), Check("1", 1, "O"), Check("3", 4, "O", "24-01170"),
                                   Check("4", 8, "O", "24-011")}) {
    ASSERT_EQ(tables.checks.Add(check), 0);
  }
  ASSERT_TRUE(tables.Open("SAV"));
  ASSERT_EQ(tables.deposits.Add(Deposit(16, 32)), 0);
  for (const char* item : {"12", "1"})
    ASSERT_EQ(tables.deposit_xrefs.Add({"24-0117", "20240310", "1", item}), 0);
  ASSERT_EQ(tables.deposit_xrefs.Add({"24-0117", "20240311", "1", "1"}), 0);  // its deposit is gone

  const LedgerReading reading = ReadFileLedger(*office.session, "24-0117");
  EXPECT_EQ(reading.message, "");
  ASSERT_EQ(reading.ledger.Banks().size(), 2u);
  EXPECT_EQ(reading.ledger.Banks()[0].Code(), "SAV");
  EXPECT_EQ(reading.ledger.Banks()[0].Deposits()[0].item, 1);
  EXPECT_TRUE(reading.ledger.Banks()[0].Deposits()[1].wire_in);
  EXPECT_EQ(reading.ledger.Banks()[1].Checks()[0].number, "1");
  EXPECT_EQ(reading.ledger.FileBalance().ToText(), "0.45");

  // A user's list of banks does not bound a file's ledger, whose balance is of every bank; it does the trial
  // balance, which says so.
  clsSecurity user;
  user.osLogin = office.suite.login;
  user.sBankCodes = {"SAV"};
  ASSERT_EQ(user.SaveUserSecurity(office.session->Home(), office.clock.Now()), 0);
  office.suite.security = true;
  office.session->ReloadUser();
  EXPECT_EQ(ReadFileLedger(*office.session, "24-0117").ledger.FileBalance().ToText(), "0.45");
  const TrialBalance trial = ReadTrialBalance(*office.session, {}, {});
  EXPECT_THAT(trial.banks, ::testing::ElementsAre("SAV"));
  EXPECT_NE(trial.note, "");
  user.SetRight(kRightEscrowReports, false);
  ASSERT_EQ(user.SaveUserSecurity(office.session->Home(), office.clock.Now()), 0);
  office.session->ReloadUser();
  EXPECT_TRUE(ReadTrialBalance(*office.session, {}, {}).banks.empty());
}

// Another program has given the item to another file and left its reference.
TEST(LedgerReaderTest, WhatAReferenceHoldsOfAnotherFileIsNotAdded) {
  Office office;
  ASSERT_TRUE(office.Open());
  BankTables tables(office.session->Home());
  ASSERT_TRUE(tables.Open("FNB"));
  ASSERT_EQ(tables.deposits.Add(Deposit(16, 32)), 0);
  // What is left of an item that is gone brings in no money.
  ASSERT_EQ(tables.deposit_xrefs.Add({"24-0118", "20240310", "1", "15"}), 0);
  EXPECT_TRUE(ReadFileLedger(*office.session, "24-0118").complete);
  ASSERT_EQ(tables.deposit_xrefs.Add({"24-0118", "20240310", "1", "12"}), 0);
  const LedgerReading reading = ReadFileLedger(*office.session, "24-0118");
  EXPECT_FALSE(reading.complete);
  EXPECT_THAT(reading.message,
              ::testing::StartsWith("Item 12 of deposit 03-10-2024 / 1 is of file \"24-0117\""));
}

TEST(ReportOriginTest, NamesThePersonWhetherOrNotSecurityIsOn) {
  Office office;
  office.session = std::move(office.Start().session);
  ASSERT_TRUE(office.session);
  EXPECT_EQ(OriginOf(*office.session).user, "jdoe");
  clsSecurity user;
  user.osLogin = "JDOE";
  user.sUserName = "Joan M. Doe";
  ASSERT_EQ(user.SaveUserSecurity(office.session->Home(), office.clock.Now()), 0);
  EXPECT_EQ(OriginOf(*office.session).user, "Joan M. Doe");
}

}  // namespace
}  // namespace tallwick
