// The wire screen on the real engine, as a clerk works it.

#include "posting/wire_posting.h"

#include <gmock/gmock.h>

#include "posting/post_wire.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::PostingScreenTest;
using testing::Seen;

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

}  // namespace
}  // namespace tallwick
