// The rules of a check that need no table: numbers, vouchers, entries as typed.

#include <gtest/gtest.h>

#include "posting/check_entry.h"
#include "posting/check_numbering.h"
#include "posting/check_voucher.h"
#include "posting/entry_problems.h"

namespace tallwick {
namespace {

TEST(CheckNumberingTest, TheSettingRulesOnlyAboveTheLastNumber) {
  struct Case {
    long long last, setting;
    const char* label;
    long long counts_as_last;
  };
  const Case cases[] = {{0, 0, "Last Check Number: 0", 0},
                        {10451, 0, "Last Check Number: 10451", 10451},
                        {10451, 10451, "Last Check Number: 10451", 10451},
                        {10451, 10460, "Next Check Number: 10460", 10459}};
  for (const Case& one : cases) {
    const CheckNumbering numbering{one.last, one.setting};
    EXPECT_EQ(numbering.Label(), one.label);
    EXPECT_EQ(numbering.Last(), one.counts_as_last);
    EXPECT_EQ(numbering.Next(), one.counts_as_last + 1);
  }
}

TEST(CheckNumberingTest, WarnsOfGapsAndOfNumbersOutsideTheStock) {
  EXPECT_EQ(GapWarning("Check", "10452", 10451), "");
  EXPECT_EQ(GapWarning("Check", "1", 10451), "");
  EXPECT_EQ(GapWarning("Check", "A99999", 10451), "");
  EXPECT_EQ(GapWarning("Check", "10453", 10451), "Greater than Last Check Number of 10451 by 2");
  EXPECT_EQ(GapWarning("Check", "20011451", 10451), "Greater than Last Check Number of 10451 by 20,001,000");

  BankRecord bank;
  bank.check_inventory = true;
  bank.lowest_check = "100";
  bank.highest_check = "200";
  EXPECT_EQ(InventoryWarning("100", bank), "");
  EXPECT_EQ(InventoryWarning("200", bank), "");
  EXPECT_EQ(InventoryWarning("99", bank),
            "WARNING - Check Number 99 is lower than inventory range of 100 thru 200 ...");
  EXPECT_EQ(InventoryWarning("1000", bank),
            "WARNING - Check Number 1000 is higher than inventory range of 100 thru 200 ...");
  bank.highest_check = "";
  EXPECT_EQ(InventoryWarning("99", bank), "");
  bank.highest_check = "200";
  bank.check_inventory = false;
  EXPECT_EQ(InventoryWarning("99", bank), "");
}

TEST(CheckVoucherTest, SummaryAndWarnings) {
  VoucherRecord voucher;
  voucher.number = "31";
  voucher.file_number = "24-0117";
  voucher.dated = {2024, 3, 5};
  voucher.payee = "SMITH TITLE";
  voucher.amount = Currency::FromCents(1250'00);
  EXPECT_EQ(VoucherSummary(voucher), "Voucher dated March 05, 2024 to SMITH TITLE\r\nfor $1,250.00");
  voucher.reason = "survey";
  EXPECT_EQ(VoucherSummary(voucher),
            "Voucher dated March 05, 2024 to SMITH TITLE\r\nbecause survey\r\nfor $1,250.00");
  EXPECT_EQ(VoucherWarnings(voucher, Currency::FromCents(1250'00), " 24-0117"), "");
  EXPECT_EQ(VoucherWarnings(voucher, Currency(), ""), "");
  voucher.check_number = "10452";
  EXPECT_EQ(VoucherWarnings(voucher, Currency::FromCents(1250'01), "24-0118"),
            "Check amount is more than vouchered funds.  Voucher was posted for $1,250.00 .\r\n"
            "Voucher Number 31 is posted to file number 24-0117 .\r\n"
            "Voucher number 31 has already been reduced by check number 10452 .");
}

TEST(EntryProblemTest, WhatCannotBeStoredIsNamed) {
  const std::string e_acute = "\xC3\xA9";
  EXPECT_EQ(TextProblem("Payee", std::string(60, 'x').append("  "), 60), "");
  std::string accents;
  for (int i = 0; i < 60; ++i) accents += e_acute;  // 60 characters, 120 bytes here
  EXPECT_EQ(TextProblem("Payee", accents, 60), "");
  EXPECT_EQ(TextProblem("Payee", accents + "x", 60),
            "Payee is too long: 61 characters, and 60 fit.  Shorten it.");
  EXPECT_EQ(TextProblem("Payee", "A \r\nB", 60),
            "Payee has a line break or a tab in it behind \"A\".  Type it on one line.");
  EXPECT_EQ(TextProblem("Payee",
                        "\xC5\x81\xC3\xB3"
                        "d\xC5\xBA",
                        60),
            "Payee can not be stored with the character \"\xC5\x81\".  Type it without.");
  EXPECT_NE(TextProblem("Payee", "\xFF", 60), "");

  for (const char* good : {"", " ", "0", "1250", "$1,250.00", "999,999,999.99"}) {
    EXPECT_EQ(AmountProblem("Check Amount", good, 12), "") << good;
  }
  for (const char* bad : {"12x", "1,25", "-5", "(5)", "1.005", "1000000000", "999999999999999999999999"}) {
    EXPECT_NE(AmountProblem("Check Amount", bad, 12).find("Check Amount \"" + std::string(bad)),
              std::string::npos)
        << bad;
  }
  for (const char* good : {"", "3/15/2024", "031524", "2-29-2024"})
    EXPECT_EQ(DateProblem("Check Date", good), "");
  for (const char* bad : {"2/30/2024", "soon", "15/3/2024"})
    EXPECT_NE(DateProblem("Check Date", bad), "") << bad;
}

TEST(CheckEntryTest, FormsAfterLeaving) {
  struct Case {
    ControlKind kind;
    const char *typed, *shown;
  };
  const Case cases[] = {{ControlKind::kAmount, " $1250.5 ", "1,250.50"},
                        {ControlKind::kAmount, ".5", "0.50"},
                        {ControlKind::kAmount, "12x", "12x"},
                        {ControlKind::kDate, "3-5-24", "03/05/2024"},
                        {ControlKind::kDate, "soon", "soon"},
                        {ControlKind::kPeriod, "03/2024", "3-2024"},
                        {ControlKind::kPeriod, "3/15/24", "3/15/24"},
                        {ControlKind::kText, "  A B ", "A B"}};
  for (const Case& one : cases) EXPECT_EQ(FormattedEntry(one.kind, one.typed, 0), one.shown) << one.typed;
  EXPECT_EQ(FormattedEntry(ControlKind::kPeriod, "3/15/24", 1), "3-15-2024");
}

}  // namespace
}  // namespace tallwick
