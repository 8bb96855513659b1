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
    EXPECT_EQ(History().Add(bank_, made), "");
    if (bank_written) made.after.PutInto(&bank_);
    return made;
  }
  ReconHistory History() { return ReconHistory(files_, "\\data\\", "FNB  "); }
  std::vector<PastReconciliation> All() { return History().Read().all; }
  std::optional<PastReconciliation> Last() { return LastStanding(History().Read(), bank_); }
  std::string File() { return *files_.Read("\\data\\Reconciliations_FNB.dat"); }

  MemoryFiles disk_;
  MemoryFileSystem files_{disk_};
  BankRecord bank_;
};

TEST_F(ReconHistoryTest, KeepsEveryFigure) {
  const PastReconciliation first = Make(1);
  const PastReconciliation second = Make(2);
  EXPECT_EQ(All(), (std::vector{first, second}));
  EXPECT_EQ(Last(), second);
}

TEST_F(ReconHistoryTest, WhatTheBankRecordDoesNotBearOutNeverWas) {
  const PastReconciliation first = Make(1);
  Make(2, false);  // died before the bank record was written
  EXPECT_EQ(Last(), first);
  const PastReconciliation again = Make(2);
  EXPECT_EQ(All(), (std::vector{first, again}));
  // Died after the bank record was put back, before the note was written.
  again.before.PutInto(&bank_);
  EXPECT_EQ(Last(), first);
  bank_.beginning_balance = Currency::FromCents(1);  // changed by hand
  EXPECT_EQ(Last(), std::nullopt);
}

TEST_F(ReconHistoryTest, OneThatWasTakenBackStaysOnRecord) {
  const PastReconciliation first = Make(1);
  PastReconciliation second = Make(2);
  second.before.PutInto(&bank_);
  ASSERT_EQ(History().MarkTakenBack(second, "2024-04-01 10:00:00 jdoe DESK wrong=\nstatement"), "");
  EXPECT_EQ(Last(), first);
  const PastReconciliation third = Make(2);
  second.taken_back = "2024-04-01 10:00:00 jdoe DESK wrong= statement";
  EXPECT_EQ(All(), (std::vector{first, second, third}));
}

// Died after the mark was written, before the bank record was put back.
TEST_F(ReconHistoryTest, AMarkCountsOnceTheBankRecordBearsItOut) {
  const PastReconciliation first = Make(1);
  const PastReconciliation second = Make(2);
  const std::string unmarked = File();
  ASSERT_EQ(History().MarkTakenBack(second, "a slip"), "");
  EXPECT_EQ(Last()->after, second.after) << "it stands";
  ASSERT_EQ(History().MarkTakenBack(second, "once more"), "");
  EXPECT_EQ(Last()->taken_back, "once more");
  const PastReconciliation third = Make(3);
  EXPECT_EQ(All(), (std::vector{first, second, third})) << "it was never taken back";
  ASSERT_EQ(History().MarkTakenBack(third, "refused"), "");
  ASSERT_EQ(History().DropMark(third), "");
  EXPECT_EQ(All(), (std::vector{first, second, third}));
  EXPECT_EQ(File().substr(0, unmarked.size()), unmarked);
  PastReconciliation unknown = third;
  unknown.made = "somebody";
  EXPECT_NE(History().MarkTakenBack(unknown, "lost"), "");
}

// A slip with an editor, or what a later version writes.
TEST_F(ReconHistoryTest, WhatIsNotUnderstoodStaysInTheFile) {
  Make(1);
  const PastReconciliation second = Make(2);
  std::string text = File();
  text.replace(text.find("BeforeBeginning="), 17, "BeforeBeginning=x");
  text += "Branch=Main";
  ASSERT_TRUE(files_.Write("\\data\\Reconciliations_FNB.dat", text));
  EXPECT_EQ(All(), std::vector{second});
  const PastReconciliation third = Make(3);
  EXPECT_EQ(File().substr(0, text.size()), text);
  ASSERT_EQ(History().MarkTakenBack(third, "wrong"), "");
  EXPECT_EQ(File().substr(0, text.size()), text);
  EXPECT_EQ(All().size(), 2U);
  EXPECT_EQ(All().back().taken_back, "wrong");
}

TEST_F(ReconHistoryTest, OneThatWasRefusedGoesAgain) {
  const PastReconciliation first = Make(1);
  const std::string before = File();
  const PastReconciliation refused = Make(2, false);
  ASSERT_EQ(History().Drop(refused), "");
  EXPECT_EQ(File(), before);
  ASSERT_EQ(History().Drop(refused), "");
  EXPECT_EQ(All(), std::vector{first});
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

TEST(StatementDate, ADayToComeIsTold) {
  const Date today{2024, 3, 15};
  for (const Period& past : {Period{3, 15, 2024}, Period{3, 0, 2024}, Period{12, 31, 2023}})
    EXPECT_EQ(StatementDateNote(past, today), "");
  for (const Period& later : {Period{3, 16, 2024}, Period{4, 0, 2024}, Period{1, 1, 2025}})
    EXPECT_NE(StatementDateNote(later, today), "");
}

}  // namespace
}  // namespace tallwick::testing
