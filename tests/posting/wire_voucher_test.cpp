// The wire and the voucher screens on the real engine, as a clerk works them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "posting/post_check.h"
#include "posting/post_voucher.h"
#include "posting/post_wire.h"
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

// --- Wires ---

class WirePostingTest : public PostingScreenTest<FrmEditWiresPost> {
 protected:
  void Enter(const char* number, const char* statement = "3/2024") {
    Set("txtWireNumber", number);
    Set("txtWirePayee", "SMITH TITLE CO");
    Set("txtWireAmount", "1250");
    Set("txtWireFileNumber", "24-0117");
    Set("txtWireStmtPeriod", statement);
  }
  std::optional<WireRecord> Stored(std::string_view number) {
    if (!tables_->wires.SeekNumber(number)) return std::nullopt;
    return tables_->wires.Read();
  }
};

TEST_F(WirePostingTest, AWireIsPostedAndClearedInOneStep) {
  OpenOffice();
  EXPECT_EQ(form_->Caption(), "Post Wire Transfers - First National Trust");
  EXPECT_EQ(Seen(*form_, "lblWireStatus"), "Not Posted");
  EXPECT_EQ(Seen(*form_, "lblEditMessage"),
            "\r\nTransaction will be posted to and cleared in the period 3-2024 .");
  Enter("FED-0417");
  Set("txtWireControl", "JD");
  Post();
  WireRecord expected;
  expected.number = "FED-0417";
  expected.dated = {2024, 3, 15};
  expected.payee = "SMITH TITLE CO";
  expected.amount = Currency::FromCents(1250'00);
  expected.file_number = "24-0117";
  expected.control = "JD";
  expected.accounting = {3, 0, 2024};
  expected.statement = {3, 0, 2024};
  expected.status = "C";
  EXPECT_EQ(Stored("FED-0417"), expected);
  EXPECT_TRUE(Xrefs().SeekReference(WireXref("24-0117", "FNB", "FED-0417")));
  EXPECT_THAT(Log(), HasSubstr("[TX: Post Wire][REFERENCE: FED-0417]"));
  Enter("FED-0418", "");
  Post();
  EXPECT_EQ(Stored("FED-0418")->status, "O");
  EXPECT_TRUE(Stored("FED-0418")->statement.IsEmpty());
  // Changed: another file, and cleared.
  Set("txtWireNumber", "FED-0418");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "cmdOk"), "&Ok");
  Set("txtWireFileNumber", "24-0118");
  Set("txtWireStmtPeriod", "4-2024");
  Post();
  EXPECT_EQ(Stored("FED-0418")->status, "C");
  EXPECT_FALSE(Xrefs().SeekReference(WireXref("24-0117", "FNB", "FED-0418")));
  EXPECT_TRUE(Xrefs().SeekReference(WireXref("24-0118", "FNB", "FED-0418")));
  EXPECT_THAT(Log(), HasSubstr("[EDIT] txtWireFileNumber was: 24-0117 now: 24-0118\r\n"
                               "[EDIT] txtWireStmtPeriod was:  now: 4-2024\r\n"));
}

TEST_F(WirePostingTest, AWireIsSeenBeforeItIsPostedAnew) {
  OpenOffice();
  Enter("A");
  Post();
  Enter("B", "");
  Post();
  ChangeBank([](BankRecord& bank) { bank.reconciled = {3, 0, 2024}; });
  OpenForm();
  for (const auto& [number, focus] : {std::pair("A", "txtWireNumber"), std::pair("B", "txtWireStmtPeriod"),
                                      std::pair("C", "txtWireDated")}) {
    for (const char* key : {"Ctrl+Enter", "Enter"}) {
      Set("txtWireNumber", "Z");
      form_->Leave();
      Set("txtWireNumber", number);
      const bool used = form_->Key(key);
      EXPECT_EQ(used, *number != 'C' || std::string_view(key) == "Enter") << number << key;
      EXPECT_THAT(office_.TakeTexts(), IsEmpty());
      if (!used) continue;
      ASSERT_NE(form_->Focus(), nullptr) << number << " is closed: the cursor stays where it can be used";
      EXPECT_EQ(form_->Focus()->name, focus);
    }
  }
}

TEST_F(WirePostingTest, RefusesInOrder) {
  OpenOffice();
  Set("txtWireAcctPeriod", "");
  Set("txtWireAmount", "");
  const Step steps[] = {
      {"txtWireNumber", " ", "Wire Confirmation is Required...", "txtWireNumber"},
      {"txtWireNumber", "1", "File Number is Required...", "txtWireFileNumber"},
      {"txtWireFileNumber", "VOID", "File Number can NOT be \"VOID\" ...", "txtWireFileNumber"},
      {"txtWireFileNumber", "24-0117", "Accounting Month is Missing...", "txtWireAcctPeriod"},
      {"txtWireAcctPeriod", "1-2024",
       "May NOT post Wires to Accounting Period 1-2024 - It has been reconciled...", "txtWireAcctPeriod"},
      {"txtWireAcctPeriod", "3-2024", "Amount missing...", "txtWireAmount"},
      {"txtWireStmtPeriod", "1-2024",
       "May NOT clear Wires in the Statement Period 1-2024 - It has been reconciled...", "txtWireStmtPeriod"},
      {"txtWireStmtPeriod", "2-2024",
       "Wire posted to Accounting Period 3-2024 can not be cleared in the Statement Period 2-2024",
       "txtWireStmtPeriod"},
      {"txtWireStmtPeriod", "3-2024", "Amount missing...", "txtWireAmount"},
      {"txtWireAmount", "1x", "Wire Amount \"1x\" is not an amount.  Type it like 1,250.00.",
       "txtWireAmount"},
  };
  RefusesInOrder(steps);
  Set("txtWireStmtPeriod", "13-2024");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("The escrow period 13-2024 is invalid.")));
  EXPECT_EQ(tables_->wires.RecordCount(), 0);
}

TEST_F(WirePostingTest, AReconciledWireIsClosedAndAForeignOneNotOverwritten) {
  OpenOffice();
  Enter("A");
  Post();
  Enter("B", "");
  // The bank gave the same confirmation to another workstation's wire, which was quicker.
  WireRecord other = *Stored("A");
  other.number = "B";
  ASSERT_TRUE(PostWire(*tables_, Xrefs(), "FNB", other).Done());
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Wire B was posted on another workstation")));
  EXPECT_EQ(Seen(*form_, "txtWirePayee"), "SMITH TITLE CO");
  // Typed again it is looked up, as the message says.
  Set("txtWireNumber", "");
  Set("txtWireNumber", "B");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Save Changes?"));
  EXPECT_EQ(Seen(*form_, "lblWireStatus"), "Not Posted");
  office_.boxes.answers = {BoxAnswer::kNo};
  Set("txtWireNumber", "B");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Save Changes?"));
  EXPECT_EQ(Seen(*form_, "lblWireStatus"), "Cleared ");
  Enter("C", "");
  Post();

  Set("txtWireNumber", "A");
  Set("txtWirePayee", "MINE");
  WireRecord theirs = *Stored("A");
  theirs.payee = "THEIRS";
  ASSERT_EQ(tables_->wires.Update(theirs), 0);
  office_.boxes.answers = {BoxAnswer::kCancel, BoxAnswer::kYes};
  form_->Click("cmdOk");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Payee: yours MINE, theirs THEIRS"),
                                               HasSubstr("Payee: yours MINE, theirs THEIRS")));
  EXPECT_EQ(Stored("A")->payee, "MINE");

  ChangeBank([](BankRecord& bank) { bank.reconciled = {3, 0, 2024}; });
  OpenForm();
  Set("txtWireNumber", "A");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "lblEditMessage"),
            "Statement period 3-2024 has been reconciled.\r\nChanges are restricted.");
  EXPECT_FALSE(form_->Find("txtWirePayee")->enabled);
  EXPECT_FALSE(form_->Find("cmdOk")->enabled);
  Set("txtWireNumber", "C");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "lblEditMessage"),
            "Accounting period 3-2024 has been reconciled.\r\nChanges are restricted.\r\n"
            "It can be cleared: type its statement period.");
}

// What was changed here goes over theirs, and nothing else of the entry does.
TEST_F(WirePostingTest, WhatWasClearedElsewhereStaysCleared) {
  OpenOffice();
  Enter("A", "");
  Post();
  Set("txtWireNumber", "A");
  Set("txtWireAmount", "7");
  WireRecord theirs = *Stored("A");
  theirs.statement = {4, 0, 2024};
  theirs.status = "C";
  ASSERT_EQ(tables_->wires.Update(theirs), 0);
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr(
                  "Amount: yours 7.00, theirs 1,250.00\r\nStatement Period: was blank, theirs 4-2024")));
  theirs.amount = Currency::FromCents(7'00);
  EXPECT_EQ(Stored("A"), theirs);
}

// What another program has stored as the status is no status of ours to set.
TEST_F(WirePostingTest, AnUnknownStatusStaysUnlessTheWireIsCleared) {
  OpenOffice();
  Enter("A", "");
  Post();
  WireRecord foreign = *Stored("A");
  foreign.status = "X";
  ASSERT_EQ(tables_->wires.Update(foreign), 0);
  Set("txtWireNumber", "A");
  form_->Leave();
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Wire A was not added or updated."));
  EXPECT_EQ(Stored("A")->status, "X");
  Set("txtWireStmtPeriod", "3/2024");
  Post();
  EXPECT_EQ(Stored("A")->status, "C");
}

TEST_F(WirePostingTest, AnOutstandingWireIsRemoved) {
  OpenOffice();
  Enter("A");
  Post();
  Set("txtWireNumber", "A");
  form_->Leave();
  form_->Menu("mnuEditRemoveWire");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Wire A has cleared the bank.  Take its statement period out first."));
  Set("txtWireStmtPeriod", "");
  Post();
  Set("txtWireNumber", "A");
  form_->Leave();
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditRemoveWire");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Remove Wire A to \"SMITH TITLE CO\" of 1,250.00 ?"));
  EXPECT_FALSE(Stored("A"));
  EXPECT_FALSE(Xrefs().SeekReference(WireXref("24-0117", "FNB", "A")));
  EXPECT_THAT(
      Log(), HasSubstr("[TX: Post Wire][REFERENCE: A][LOGIN: jdoe][COMPUTER: FRONTDESK2]\r\n[DELETE] A\r\n"));
  form_->Menu("mnuEditRemoveWire");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Look up the posted record")));
}

TEST_F(WirePostingTest, ADateIsAskedForAndOneStoredWithoutStays) {
  OpenOffice();
  Enter("A");
  for (const char* dated : {"", "3/15/1899"}) {
    Set("txtWireDated", dated);
    form_->Click("cmdOk");
    EXPECT_EQ(form_->Focus()->name, "txtWireDated");
  }
  EXPECT_THAT(
      office_.TakeTexts(),
      ElementsAre("Wire Date is missing.  Type it like 03/15/2024.",
                  "Wire Date \"03/15/1899\" is not in the years 1975 to 2095.  Type it like 03/15/2024."));
  Set("txtWireDated", "3/15/24");
  Post();
  WireRecord undated = *Stored("A");
  undated.dated = {};
  ASSERT_EQ(tables_->wires.Update(undated), 0);
  Set("txtWireNumber", "A");
  Set("txtWirePayee", "ANOTHER");
  Post();
  EXPECT_EQ(Stored("A")->payee, "ANOTHER");
}

TEST_F(WirePostingTest, EnterPassesTheStatementPeriodAndTheRegisterFinds) {
  OpenOffice();
  for (const char* number : {"A-1", "B-2", "A-3"}) {
    Enter(number, *number == 'A' ? "3/2024" : "");
    Post();
  }
  RowSource& rows = *form_->Find("lstWireNumbers")->source;
  ASSERT_EQ(rows.RowCount(), 3u);
  EXPECT_EQ(rows.Row(0).at(0), "B-2");
  EXPECT_EQ(rows.FindRow("A-3"), 1u);
  EXPECT_EQ(rows.FindRow("24-0117"), 2u);
  EXPECT_EQ(rows.FindRow("C"), std::nullopt);
  form_->Click("cmdListCleared");
  ASSERT_EQ(rows.RowCount(), 2u);
  EXPECT_EQ(rows.FindRow("A-1"), 1u);
  Enter("D-4");
  Post();
  EXPECT_EQ(rows.Row(0).at(0), "D-4");
  Enter("E-5", "");
  Post();
  EXPECT_EQ(rows.RowCount(), 3u);
  form_->Enter("txtWireFileNumber");
  for (const char* next : {"txtWireControl", "txtWireAcctPeriod", "txtWireStmtPeriod"}) {
    EXPECT_TRUE(form_->Key("Enter"));
    EXPECT_EQ(form_->Focus()->name, next);
  }
  EXPECT_FALSE(form_->Key("Enter"));  // the end of the entry: the face posts
}

// --- Vouchers ---

class VoucherPostingTest : public PostingScreenTest<FrmEditVouchersPost> {
 protected:
  void Enter(const char* file = "24-0117") {
    Set("txtVCHRFileNumber", file);
    Set("txtVCHRPayee", "SMITH TITLE CO");
    Set("txtVCHRReason", "PAYOFF");
    Set("txtVCHRAmount", "1250");
  }
  std::optional<VoucherRecord> Stored(std::string_view number) {
    if (!tables_->vouchers.SeekNumber(number)) return std::nullopt;
    return tables_->vouchers.Read();
  }
};

TEST_F(VoucherPostingTest, NumbersComeFromTheCounterWhichEndsAtTheHighest) {
  OpenOffice();
  EXPECT_EQ(form_->Caption(), "Post Vouchers - First National Trust");
  EXPECT_EQ(Seen(*form_, "txtVCHRNumber"), "1");
  EXPECT_EQ(Seen(*form_, "cmdOk"), "&Add");
  EXPECT_EQ(Seen(*form_, "lblEditMessage"),
            "\r\nTransaction will be posted to the Accounting Period 3-2024 .");
  Enter();
  Post();
  VoucherRecord expected;
  expected.number = "1";
  expected.file_number = "24-0117";
  expected.dated = {2024, 3, 15};
  expected.payee = "SMITH TITLE CO";
  expected.reason = "PAYOFF";
  expected.amount = Currency::FromCents(1250'00);
  expected.accounting = {3, 0, 2024};
  expected.status = "O";
  EXPECT_EQ(Stored("1"), expected);
  EXPECT_TRUE(Xrefs().SeekReference(VoucherXref("24-0117", "FNB", "1")));
  EXPECT_EQ(Bank().last_voucher, 1);
  Set("txtVCHRNumber", "40");
  Enter();
  form_->SetCheck("chkVCHRCleared", 1);
  Post();
  EXPECT_EQ(Stored("40")->status, "C");
  EXPECT_EQ(Bank().last_voucher, 40);
  Set("txtVCHRNumber", "7");  // below the counter, which stays
  Enter();
  Post();
  EXPECT_EQ(Bank().last_voucher, 40);
  Set("txtVCHRNumber", "A9");
  Enter();
  form_->Click("cmdNextVCHRNumber");
  EXPECT_EQ(Seen(*form_, "txtVCHRNumber"), "41");
  EXPECT_EQ(Seen(*form_, "txtVCHRPayee"), "SMITH TITLE CO");
  // A counter that lags behind the table proposes a free number all the same.
  ChangeBank([](BankRecord& bank) { bank.last_voucher = 6; });
  form_->Click("cmdNextVCHRNumber");
  EXPECT_EQ(Seen(*form_, "txtVCHRNumber"), "8");
  Post();
  EXPECT_THAT(Log(), IsEmpty());  // the trail knows no transaction for vouchers
}

TEST_F(VoucherPostingTest, RefusesInOrder) {
  OpenOffice();
  Set("txtVCHRNumber", "");
  Set("txtVCHRAcctPeriod", "");
  const Step steps[] = {
      {"txtVCHRFileNumber", "", "File Number is Required.", "txtVCHRFileNumber"},
      {"txtVCHRFileNumber", "void", "File Number can NOT be \"void\" .", "txtVCHRFileNumber"},
      {"txtVCHRFileNumber", "24-0117", "Accounting Month is Missing.", "txtVCHRAcctPeriod"},
      {"txtVCHRAcctPeriod", "1-2024",
       "May NOT post Vouchers to Accounting Period 1-2024 - It has been reconciled.", "txtVCHRAcctPeriod"},
      {"txtVCHRAcctPeriod", "2-2024", "Voucher Number is Required.", "txtVCHRNumber"},
  };
  RefusesInOrder(steps);
  EXPECT_EQ(tables_->vouchers.RecordCount(), 0);
  Set("txtVCHRNumber", "5");
  Set("txtVCHRFileNumber", "24-0999");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("24-0999 is not on file."));
  EXPECT_TRUE(Stored("5"));
}

TEST_F(VoucherPostingTest, ALostRaceOffersTheNextNumber) {
  OpenOffice();
  Enter();
  VoucherRecord other;
  other.number = "1";
  other.file_number = "24-0118";
  BankTable& banks = office_.session->Company().banks;
  ASSERT_TRUE(PostVoucher(*tables_, banks, Xrefs(), "FNB", other).Done());
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Voucher 1 was posted on another workstation in the meantime.\r\nPost this "
                          "one as 2 ?"));
  EXPECT_EQ(Stored("2")->payee, "SMITH TITLE CO");
  EXPECT_EQ(Bank().last_voucher, 2);
}

// Whoever types a number far beyond the last one is asked, and the numbers never end for that.
TEST_F(VoucherPostingTest, AFarNumberIsAskedForAndTheNextOneAlwaysFits) {
  OpenOffice();
  Enter();
  Post();
  Set("txtVCHRNumber", "14");
  form_->Leave();
  EXPECT_THAT(Seen(*form_, "lblEditMessage"), HasSubstr("Greater than Last Voucher Number of 1 by 13"));
  Enter();
  Set("txtVCHRNumber", "999999999999");
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_FALSE(Stored("999999999999"));
  EXPECT_EQ(form_->Focus()->name, "txtVCHRNumber");
  form_->Click("cmdOk");
  const auto question = HasSubstr("Greater than Last Voucher Number of 1 by 999,999,999,998.");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question, question));
  EXPECT_EQ(Bank().last_voucher, 999'999'999'999);
  for (const char* next : {"2", "3"}) {
    EXPECT_EQ(Seen(*form_, "txtVCHRNumber"), next);
    Enter();
    Post();
  }
}

TEST_F(VoucherPostingTest, NumbersOfDigitsHaveNoLeadingZeros) {
  OpenOffice();
  Set("txtVCHRNumber", "000500");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtVCHRNumber"), "500");
  Enter();
  Post();
  Set("txtVCHRNumber", "0500");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "lblVCHRStatus"), "Outstanding");
  for (const char* typed : {"12 34", "12-34", "7x"}) {
    Set("txtVCHRNumber", typed);
    Enter();
    form_->Click("cmdOk");
    EXPECT_THAT(office_.TakeTexts(),
                ElementsAre("Voucher Number \"" + std::string(typed) +
                            "\" is not a number.  Type digits, without letters, blanks or "
                            "signs."));
  }
  EXPECT_EQ(tables_->vouchers.RecordCount(), 1);
}

TEST_F(VoucherPostingTest, AnUnusedVoucherIsRemovedAndItsNumberNotIssuedAgain) {
  OpenOffice();
  Enter();
  Post();
  Set("txtVCHRNumber", "1");
  form_->Leave();
  const VoucherRecord posted = *Stored("1");
  struct Case {
    std::function<void(VoucherRecord&)> change;
    const char* refusal;
  };
  const Case cases[] = {
      {[](VoucherRecord& voucher) { voucher.check_number = "77"; }, "Voucher 1 was used by check 77."},
      {[](VoucherRecord& voucher) { voucher.status = "C"; },
       "Voucher 1 is marked cleared.  Take the mark off first."},
      {[](VoucherRecord& voucher) {
         voucher.accounting = {1, 0, 2024};
       },
       "Accounting period 1-2024 has been reconciled.\r\nChanges are restricted."}};
  for (const Case& one : cases) {
    VoucherRecord voucher = posted;
    one.change(voucher);
    ASSERT_TRUE(tables_->vouchers.SeekNumber("1"));
    ASSERT_EQ(tables_->vouchers.Update(voucher), 0);
    form_->Choose("lstVCHRNumbers", 1);
    form_->Menu("mnuEditRemoveVoucher");
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(one.refusal));
  }
  // Used while the question waits for its answer.
  ASSERT_TRUE(tables_->vouchers.SeekNumber("1"));
  ASSERT_EQ(tables_->vouchers.Update(posted), 0);
  form_->Choose("lstVCHRNumbers", 1);
  meanwhile_ = [&] {
    VoucherRecord used = posted;
    used.check_number = "78";
    ASSERT_TRUE(tables_->vouchers.SeekNumber("1"));
    ASSERT_EQ(tables_->vouchers.Update(used), 0);
  };
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditRemoveVoucher");
  EXPECT_THAT(office_.TakeTexts().back(), HasSubstr("Check Number: was blank, theirs 78"));
  Set("txtVCHRCheckNumber", "");
  Post();
  Set("txtVCHRNumber", "1");
  form_->Leave();
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Menu("mnuEditRemoveVoucher");
  EXPECT_TRUE(Stored("1"));
  form_->Menu("mnuEditRemoveVoucher");
  EXPECT_FALSE(Stored("1"));
  EXPECT_FALSE(Xrefs().SeekReference(VoucherXref("24-0117", "FNB", "1")));
  EXPECT_EQ(Bank().last_voucher, 1);
  EXPECT_EQ(Seen(*form_, "txtVCHRNumber"), "2");
}

TEST_F(VoucherPostingTest, AUsedVoucherIsNotListedAsOutstanding) {
  OpenOffice();
  for (const char* check : {"77", ""}) {
    Enter();
    Set("txtVCHRCheckNumber", check);
    Post();
  }
  RowSource& rows = *form_->Find("lstVCHRNumbers")->source;
  form_->Click("cmdListOutstanding");
  ASSERT_EQ(rows.RowCount(), 1U);
  EXPECT_EQ(rows.Row(0).at(0), "2");
  form_->Click("cmdListCleared");
  ASSERT_EQ(rows.RowCount(), 1U);
  EXPECT_THAT(rows.Row(0),
              ElementsAre("1", "03/15/2024", "SMITH TITLE CO", "1,250.00", "24-0117", "Used", "77"));
}

// The check that uses it is a matter of posting, while that stands.
TEST_F(VoucherPostingTest, TheCheckThatUsesAVoucherIsClosed) {
  OpenOffice();
  Enter();
  Post();
  CheckRecord check;
  check.number = "10";
  check.file_number = "24-0117";
  check.voucher_number = "1";
  check.status = "O";
  ASSERT_TRUE(PostCheck(*tables_, Xrefs(), "FNB", check).Done());
  for (const char* status : {"O", "V"}) {
    check.status = status;
    ASSERT_TRUE(tables_->checks.SeekNumber("10"));
    ASSERT_EQ(tables_->checks.Update(check), 0);
    form_->Choose("lstVCHRNumbers", 1);
    const bool uses = check.status == "O";
    EXPECT_EQ(Seen(*form_, "lblEditMessage"), uses ? "Check 10 uses this voucher." : "");
    EXPECT_EQ(form_->Find("txtVCHRCheckNumber")->enabled, !uses);
  }
}

// A post of an unchanged voucher leaves what another program has stored as its status.
TEST_F(VoucherPostingTest, AnUnknownStatusStays) {
  OpenOffice();
  Enter();
  Post();
  VoucherRecord foreign = *Stored("1");
  foreign.status = "X";
  ASSERT_EQ(tables_->vouchers.Update(foreign), 0);
  form_->Choose("lstVCHRNumbers", 1);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Voucher 1 was not added or updated."));
  EXPECT_EQ(Stored("1"), foreign);
}

TEST_F(VoucherPostingTest, AReconciledPeriodRestrictsChangesAndUnsavedOnesAreAskedFor) {
  OpenOffice();
  Enter();
  Post();
  ChangeBank([](BankRecord& bank) { bank.reconciled = {3, 0, 2024}; });
  OpenForm();
  form_->Choose("lstVCHRNumbers", 1);
  EXPECT_EQ(Seen(*form_, "lblVCHRStatus"), "Outstanding");
  EXPECT_EQ(Seen(*form_, "lblEditMessage"),
            "Accounting period 3-2024 has been reconciled.\r\nChanges are restricted.");
  EXPECT_FALSE(form_->Find("txtVCHRAmount")->enabled);
  form_->SetCheck("chkVCHRCleared", 1);
  Post();
  EXPECT_EQ(Stored("1")->status, "C");
  Enter();
  EXPECT_FALSE(form_->Close());
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Save Changes?"));
  ASSERT_TRUE(office_.session->Company().banks.SeekCode("FNB"));
  ASSERT_EQ(office_.session->Company().banks.Delete(), 0);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Bank ID Code no longer valid."));
}

}  // namespace
}  // namespace tallwick
