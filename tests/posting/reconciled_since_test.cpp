// A bank that is reconciled on another workstation while a posted record stands on the screen: what was open
// when it was loaded is closed when it is written, whichever way the entries got there.

#include <gmock/gmock.h>

#include "posting/check_posting.h"
#include "posting/deposit_posting.h"
#include "posting/voucher_posting.h"
#include "posting/wire_posting.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::PostingScreenTest;
using testing::Seen;

constexpr Period kFebruary{2, 0, 2024};
constexpr Period kMarch{3, 0, 2024};
constexpr const char* kMarchIsClosed =
    "Accounting period 3-2024 has been reconciled.\r\nChanges are restricted.";

// --- Checks ---

class CheckReconciledTest : public PostingScreenTest<FrmEditChecksPost> {
 protected:
  // Check 10 is posted to March and stands on the screen with another amount, in April.
  void ChangeOnScreen() {
    OpenOffice();
    Set("txtCheckPayee", "SMITH TITLE CO");
    Set("txtCheckAmount", "1250");
    Set("txtCheckFileNumber", "24-0117");
    Set("txtCheckNumber", "10");
    Post();
    Set("txtCheckNumber", "10");
    Set("txtCheckAmount", "999.99");
    Set("txtCheckAcctPeriod", "4/2024");
    Set("txtCheckControl", "JD");
    form_->Leave();
    before_ = Stored();
  }
  CheckRecord Stored() { return tables_->checks.SeekNumber("10") ? tables_->checks.Read() : CheckRecord{}; }
  CheckRecord ClearElsewhere() {
    CheckRecord check = Stored();
    check.status = "C";
    check.statement = kFebruary;
    EXPECT_EQ(tables_->checks.Update(check), 0);
    return check;
  }
  // What is posted is refused with both states, and the other one is shown.
  void NothingIsOffered() {
    const CheckRecord theirs = ClearElsewhere();
    Reconcile(kFebruary);
    office_.boxes.answers = {BoxAnswer::kYes};
    form_->Click("cmdOk");
    EXPECT_THAT(office_.TakeTexts(),
                ElementsAre(::testing::AllOf(
                    HasSubstr("Status: was Outstanding, theirs Cleared"),
                    HasSubstr("Cleared and reconciled.\r\nChanges are restricted.  Yes shows theirs, No goes "
                              "back to your entry."))));
    EXPECT_EQ(Stored(), theirs);
    EXPECT_EQ(Seen(*form_, "txtCheckAmount"), "1,250.00");
  }

  CheckRecord before_;
};

TEST_F(CheckReconciledTest, WhatIsClosedNowIsPutBackAndTheRestIsSaved) {
  ChangeOnScreen();
  Reconcile(kMarch);
  form_->Click("cmdOk");
  EXPECT_THAT(
      office_.TakeTexts(),
      ElementsAre(std::string(kMarchIsClosed) +
                  "\r\n\r\nNothing was saved: look at what is shown now.\r\n\r\nAmount: yours 999.99, "
                  "stored 1,250.00\r\nAccounting Period: yours 4-2024, stored 3-2024"));
  EXPECT_EQ(Stored(), before_);
  EXPECT_EQ(Seen(*form_, "txtCheckAmount"), "1,250.00");
  EXPECT_EQ(Seen(*form_, "lblEditMessage"), kMarchIsClosed);
  EXPECT_FALSE(form_->Find("txtCheckAmount")->enabled);
  Post();
  before_.control = "JD";
  EXPECT_EQ(Stored(), before_);
}

// What was cleared and reconciled elsewhere is not saved over, nor given another number.
TEST_F(CheckReconciledTest, NothingIsOfferedOverAReconciledCheck) {
  ChangeOnScreen();
  NothingIsOffered();
}

TEST_F(CheckReconciledTest, AReconciledCheckIsNotRenumbered) {
  ChangeOnScreen();
  form_->Menu("mnuEditRenumberCheck");
  Set("txtCheckNumber", "11");
  NothingIsOffered();
  EXPECT_FALSE(tables_->checks.SeekNumber("11"));
}

// The account is reconciled while the question whether the file is on file waits for its answer.
TEST_F(CheckReconciledTest, TheTestsAreMadeAgainWhereABoxStoodInBetween) {
  OpenOffice();
  Set("txtCheckAmount", "1250");
  Set("txtCheckFileNumber", "24-0999");
  meanwhile_ = [this] { Reconcile(kMarch); };
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("24-0999 is not on file...", "24-0999 is not on file...",
                          "May NOT post checks to Accounting Period 3-2024 - It has been reconciled."));
  EXPECT_EQ(tables_->checks.RecordCount(), 0);
}

TEST_F(CheckReconciledTest, ARemovalIsRefusedWhereABoxStoodInBetween) {
  ChangeOnScreen();
  meanwhile_ = [this] { Reconcile(kMarch); };
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditRemoveCheck");
  const std::vector<std::string> texts = office_.TakeTexts();
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_THAT(texts.back(), HasSubstr("the account was reconciled on another workstation"));
  EXPECT_EQ(Stored(), before_);
}

// --- Wires ---

class WireReconciledTest : public PostingScreenTest<FrmEditWiresPost> {
 protected:
  void ChangeOnScreen() {
    OpenOffice();
    Set("txtWireNumber", "FED-1");
    Set("txtWirePayee", "SMITH TITLE CO");
    Set("txtWireAmount", "1250");
    Set("txtWireFileNumber", "24-0117");
    Post();
    Set("txtWireNumber", "FED-1");
    Set("txtWireAmount", "1");
    Set("txtWireAcctPeriod", "4/2024");
    form_->Leave();
  }
  WireRecord Stored() { return tables_->wires.SeekNumber("FED-1") ? tables_->wires.Read() : WireRecord{}; }
};

// The reconciliation carries an outstanding wire on, so a later statement clears it; once that is reconciled
// too, it is closed wholly.
TEST_F(WireReconciledTest, AnOutstandingWireCanOnlyBeCleared) {
  ChangeOnScreen();
  WireRecord expected = Stored();
  Reconcile(kMarch);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Amount: yours 1.00, stored 1,250.00")));
  EXPECT_EQ(Stored(), expected);
  for (std::string_view closed : {"txtWireAmount", "txtWirePayee", "txtWireAcctPeriod", "cmdRolodex"})
    EXPECT_FALSE(form_->Find(closed)->enabled) << closed;
  Set("txtWireStmtPeriod", "4/2024");
  Post();
  expected.statement = {4, 0, 2024};
  expected.status = "C";
  EXPECT_EQ(Stored(), expected);
  const auto show = [this] {
    Set("txtWireNumber", "FED-1");
    form_->Leave();
    EXPECT_FALSE(form_->Find("txtWireAmount")->enabled);
  };
  // A mistyped period is put right, and taken out, for as long.
  for (const Period& statement : {Period{5, 0, 2024}, Period{}}) {
    show();
    EXPECT_THAT(Seen(*form_, "lblEditMessage"), HasSubstr("Its statement period can be changed"));
    Set("txtWireStmtPeriod", ShownValue(statement));
    Post();
    expected.statement = statement;
    expected.status = statement.IsEmpty() ? "O" : "C";
    EXPECT_EQ(Stored(), expected);
  }
  show();
  Set("txtWireStmtPeriod", "4/2024");
  Post();
  Reconcile({4, 0, 2024});
  OpenForm();
  show();
  for (std::string_view closed : {"txtWireStmtPeriod", "cmdOk"})
    EXPECT_FALSE(form_->Find(closed)->enabled) << closed;
  EXPECT_TRUE(form_->Close());
}

TEST_F(WireReconciledTest, AWireMovedIntoAReconciledPeriodIsNotSavedOver) {
  ChangeOnScreen();
  WireRecord theirs = Stored();
  theirs.accounting = kFebruary;
  ASSERT_EQ(tables_->wires.Update(theirs), 0);
  Reconcile(kFebruary);
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_EQ(Seen(*form_, "txtWireAmount"), "1.00") << "back to the entry";
  form_->Click("cmdOk");
  const auto question = HasSubstr("Accounting period 2-2024 has been reconciled.\r\nChanges are restricted.");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question, question));
  EXPECT_EQ(Seen(*form_, "txtWireAmount"), "1,250.00");
  EXPECT_EQ(Stored(), theirs);
}

// --- Vouchers ---

class VoucherReconciledTest : public PostingScreenTest<FrmEditVouchersPost> {};

TEST_F(VoucherReconciledTest, AmountPayeeAndPeriodAreClosed) {
  OpenOffice();
  Set("txtVCHRFileNumber", "24-0117");
  Set("txtVCHRAmount", "1250");
  Post();
  ASSERT_TRUE(tables_->vouchers.SeekNumber("1"));
  const VoucherRecord before = tables_->vouchers.Read();
  Set("txtVCHRNumber", "1");
  Set("txtVCHRAmount", "1");
  Set("txtVCHRPayee", "ANOTHER");
  Set("txtVCHRAcctPeriod", "4/2024");
  Reconcile(kMarch);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Payee: yours ANOTHER, stored blank")));
  ASSERT_TRUE(tables_->vouchers.SeekNumber("1"));
  EXPECT_EQ(tables_->vouchers.Read(), before);
}

// --- Deposits ---

class DepositReconciledTest : public PostingScreenTest<FrmEditDepositsPost> {};

TEST_F(DepositReconciledTest, TheQuestionComesForABankReconciledInBetween) {
  OpenOffice();
  Set("txtFileNumbers", "24-0117", 1);
  Set("txtAmounts", "10", 1);
  Post();
  form_->Choose("lstDepositDates", 1);
  Set("txtFileNumbers", "24-0999", 1);
  meanwhile_ = [this] { Reconcile(kMarch); };
  form_->Click("cmdOk");
  const char* unknown = "\r\n24-0999 is not on file for deposit item 1 .";
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(unknown, unknown,
                          "WARNING - Accounting period 3-2024 has been reconciled.  Ok to make changes?"));
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(tables_->deposits.Read().items[0].file_number, "24-0117");
}

TEST_F(DepositReconciledTest, ADepositStaysInItsReconciledPeriod) {
  OpenOffice();
  Set("txtFileNumbers", "24-0117", 1);
  Set("txtAmounts", "10", 1);
  Post();
  form_->Choose("lstDepositDates", 1);
  Set("txtDepositAcctPeriod", "4-2024");
  Reconcile(kMarch);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(std::string(kMarchIsClosed) +
                                               "\r\n\r\nNothing was saved: look at what is shown now."));
  EXPECT_EQ(Seen(*form_, "txtDepositAcctPeriod"), "3-2024");
  EXPECT_FALSE(form_->Find("txtDepositAcctPeriod")->enabled);
}

}  // namespace
}  // namespace tallwick
