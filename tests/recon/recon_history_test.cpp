// What is kept of past reconciliations, and what counts of it after a crash between the file and the bank
// record.
#include "recon/recon_history.h"

#include <gtest/gtest.h>

#include "recon/statement_date.h"
#include "tests/support/memory_file_system.h"

namespace tallwick::testing {
namespace {

class ReconHistoryTest : public ::testing::Test {
 protected:
  // Reconciles `bank_` to the month, as far as the file goes; the bank record follows unless the program
  // dies.
  PastReconciliation Make(int month, bool bank_written = true) {
    PastReconciliation made;
    made.entries.statement_balance = Currency::FromCents(month * 100 + 5);
    made.before = BankState::Of(bank_);
    made.after = made.before;
    made.after.reconciled = {month, 0, 2024};
    made.after.ending_balance = made.after.beginning_balance = Currency::FromCents(-month * 1000);
    made.made = "2024-03-31 09:30:00 jos\u00e9 FRONTDESK2";
    EXPECT_TRUE(History().Add(bank_, made));
    if (bank_written) made.after.PutInto(&bank_);
    return made;
  }
  ReconHistory History() { return ReconHistory(files_, "\\data\\", "FNB  "); }

  MemoryFiles disk_;
  MemoryFileSystem files_{disk_};
  BankRecord bank_;
};

TEST_F(ReconHistoryTest, KeepsEveryFigure) {
  const PastReconciliation first = Make(1);
  const PastReconciliation second = Make(2);
  EXPECT_EQ(History().All(), (std::vector{first, second}));
  EXPECT_EQ(History().Last(bank_), second);
}

TEST_F(ReconHistoryTest, WhatTheBankRecordDoesNotBearOutNeverWas) {
  const PastReconciliation first = Make(1);
  Make(2, false);  // died before the bank record was written
  EXPECT_EQ(History().Last(bank_), first);
  const PastReconciliation again = Make(2);
  EXPECT_EQ(History().All(), (std::vector{first, again}));
  // Died after the bank record was put back, before the note was written.
  again.before.PutInto(&bank_);
  EXPECT_EQ(History().Last(bank_), first);
  bank_.beginning_balance = Currency::FromCents(1);  // changed by hand
  EXPECT_EQ(History().Last(bank_), std::nullopt);
}

TEST_F(ReconHistoryTest, OneThatWasTakenBackStaysOnRecord) {
  const PastReconciliation first = Make(1);
  PastReconciliation second = Make(2);
  second.before.PutInto(&bank_);
  ASSERT_TRUE(History().MarkTakenBack(second, "2024-04-01 10:00:00 jdoe DESK wrong=statement"));
  EXPECT_EQ(History().Last(bank_), first);
  const PastReconciliation third = Make(2);
  second.taken_back = "2024-04-01 10:00:00 jdoe DESK wrong=statement";
  EXPECT_EQ(History().All(), (std::vector{first, second, third}));
}

TEST_F(ReconHistoryTest, ADamagedPieceIsLeftOut) {
  Make(1);
  const PastReconciliation second = Make(2);
  std::string text = *files_.Read("\\data\\Reconciliations_FNB.dat");
  text.replace(text.find("BeforeBeginning="), 17, "BeforeBeginning=x");
  ASSERT_TRUE(files_.Write("\\data\\Reconciliations_FNB.dat", text));
  EXPECT_EQ(History().All(), std::vector{second});
}

TEST(StatementDate, MayFollowTheLastByTwoMonths) {
  const struct {
    Period statement, last;
    const char* problem;
  } kCases[] = {
      {{3, 0, 2024}, {}, ""},
      {{12, 31, 2095}, {}, ""},
      {{3, 0, 2024}, {3, 0, 2024}, "3-2024 is prior or the same as the last reconciliation 3-2024"},
      {{12, 0, 2023}, {1, 0, 2024}, "12-2023 is prior or the same as the last reconciliation 1-2024"},
      {{3, 0, 2024}, {1, 0, 2024}, ""},
      {{1, 0, 2024}, {11, 0, 2023}, ""},
      {{4, 0, 2024},
       {1, 0, 2024},
       "4-2024 is too far in the future from the last reconciliation done 1-2024"},
      {{3, 16, 2024}, {3, 15, 2024}, ""},
      {{5, 16, 2024}, {3, 15, 2024}, ""},
      {{5, 17, 2024},
       {3, 15, 2024},
       "5-17-2024 is too far in the future from the last reconciliation done 3-15-2024"},
      {{4, 30, 2024}, {2, 0, 2024}, ""},  // the bank has changed its form of dates
  };
  for (const auto& one : kCases) EXPECT_EQ(StatementDateProblem(one.statement, one.last), one.problem);
}

}  // namespace
}  // namespace tallwick::testing
