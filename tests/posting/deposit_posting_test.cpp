// The deposit screen on the real engine, as a clerk works it.

#include "posting/deposit_posting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/posting/deposit_screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Seen;

class DepositPostingTest : public testing::DepositScreenTest {};

TEST_F(DepositPostingTest, ANewDepositIsPostedWholeAndTheNextOneBegun) {
  OpenOffice();
  EXPECT_EQ(form_->Caption(), "Post Deposits - First National Trust");
  EXPECT_EQ(Seen(*form_, "lblLastReconciled"), "Last Reconciled: 1-2024");
  EXPECT_EQ(Seen(*form_, "lblItemNumbers", 1), " 1");
  EXPECT_EQ(Seen(*form_, "lblItemNumbers", 15), "15");
  EXPECT_EQ(Seen(*form_, "txtDepositDated"), "03/15/2024");
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "1");
  EXPECT_EQ(Seen(*form_, "lblDepositStatus"), "Not Posted");
  SetRow(1, "24-0117", "1,250");
  SetRow(3, "24-0118", "$99.5", "LENDER ONE");  // a line is left out
  form_->SetCheck("chkWireIn", 1, 3);
  EXPECT_EQ(Seen(*form_, "lblDepositTotal"), "1,349.50");
  EXPECT_EQ(Seen(*form_, "lblItemCount"), "2 items");
  Post();

  DepositRecord expected;
  expected.dated = "20240315";
  expected.sequence = "1";
  expected.accounting = {3, 0, 2024};
  expected.item_count = 2;
  expected.items[0] = {"1", "24-0117", "SMITH", Currency::FromCents(1250'00), {}, "O"};
  expected.items[1] = {"2", "24-0118", "LENDER ONE", Currency::FromCents(99'50), {}, "O"};
  expected.spare = " X";
  EXPECT_EQ(Stored("20240315", "1"), expected);
  EXPECT_THAT(References(), ElementsAre("24-0117 20240315 1 1", "24-0118 20240315 1 2"));
  EXPECT_THAT(Log(), HasSubstr("[TX: Post Deposit][REFERENCE: 03-15-2024 / 1]"));
  EXPECT_THAT(Log(), HasSubstr("[ADD] 03-15-2024 / 1\r\n"));
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "2");
  EXPECT_EQ(Seen(*form_, "lblItemCount"), "0 items");
  form_->Enter("txtDepositDated");
  EXPECT_EQ(Seen(*form_, "lblEditMessage"), "\r\nLast Deposit was Posted Mar 15, 2024 / 1");
  RowSource& rows = *form_->Find("lstDepositDates")->source;
  EXPECT_THAT(rows.Row(0), ElementsAre("03-15-2024", "1", "2", "1,349.50", "3-2024", "Outstanding"));
}

TEST_F(DepositPostingTest, RefusesInOrderAndWritesNothing) {
  OpenOffice();
  // Everything is wrong at first; each step mends what was refused.
  SetRow(1, "24-0117", "10");
  SetRow(2, "24-0117", "20");
  SetRow(3, "", "30");
  SetRow(4, "24-0117", "");
  Set("txtDepositAcctPeriod", "13-2024");
  Set("txtDateSequence", "x");
  form_->Leave();
  const Step steps[] = {
      {"txtDepositDated", "___ _, ____", "Date Posted Required ...", "txtDepositDated"},
      {"txtDepositDated", "2/30/2024", "File Number required for deposit item 3 .", "txtFileNumbers", 0, 3},
      {"txtDateSequence", "", "Sequence Number Required ...", "txtDateSequence"},
      {"txtDateSequence", "x", "File Number required for deposit item 3 .", "txtFileNumbers", 0, 3},
      {"txtFileNumbers", "void", "File Number can not be \"VOID\" for deposit item 3 .", "txtFileNumbers", 3,
       3},
      {"txtFileNumbers", "24-0118", "Accounting Period is bad or missing.", "txtDepositAcctPeriod", 3},
      {"txtDepositAcctPeriod", "2-2024", "Date Posted \"2/30/2024\" is not a date.  Type it like 03/15/2024.",
       "txtDepositDated"},
      {"txtDepositDated", "2/28/2024", "Sequence Number \"x\" is not one of 1 to 99.", "txtDateSequence"},
      {"txtDateSequence", "7", "Amount missing for deposit item 4 .", "txtAmounts", 0, 4},
      {"txtAmounts", "12x", "Line 4 Amount \"12x\" is not an amount.  Type it like 1,250.00.", "txtAmounts",
       4, 4},
  };
  RefusesInOrder(steps);
  EXPECT_EQ(tables_->deposits.RecordCount(), 0);
  Set("txtAmounts", "40", 4);
  Post();
  EXPECT_EQ(DepositTotal(*Stored("20240228", "7")), Currency::FromCents(100'00));
}

TEST_F(DepositPostingTest, UnknownFilesAreSaidTogetherAndAReconciledPeriodIsRefused) {
  OpenOffice();
  SetRow(1, "24-0998", "1");
  SetRow(2, "24-0117", "2");
  SetRow(3, "24-0999", "3");
  Set("txtDepositAcctPeriod", "1/2024");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("1-2024 has been reconciled...",
                          "\r\n24-0998 is not on file for deposit item 1 .\r\n24-0999 is not on file for "
                          "deposit item 3 .",
                          "May NOT post deposits to the accounting period 1-2024 , it has been reconciled."));
  form_->Menu("mnuOptionsFileCheck");
  Set("txtDepositAcctPeriod", "2/2024");
  Post();
  EXPECT_THAT(References(),
              ElementsAre("24-0117 20240315 1 2", "24-0998 20240315 1 1", "24-0999 20240315 1 3"));
}

TEST_F(DepositPostingTest, SequencesRestartOnEachDateAndDatesAreTypedFreely) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  Post();
  Set("txtDepositDated", "3/14/24");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtDepositDated"), "03/14/2024");
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "1");
  Set("txtDepositDated", "12/30/2023");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Not current year..."));
  form_->Menu("mnuOptionsFreeFormatPostedDates");
  EXPECT_EQ(Seen(*form_, "txtDepositDated"), "Dec 30, 2023");
  Set("txtDepositDated", "march 15");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtDepositDated"), "Mar 15, 2024");
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "2");
  Set("txtDateSequence", "");
  Set("txtDepositDated", "march 14");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "1") << "one that was taken out is proposed anew";
  Set("txtDepositDated", "march 15");
  Set("txtDateSequence", "01");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "cmdOk"), "&Ok");
  form_->Menu("mnuEditUseTodaysDateandNextSequence");
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "2");
  EXPECT_EQ(Seen(*form_, "cmdOk"), "P&ost Deposit");

  const Date today{2024, 3, 15};
  struct Case {
    const char* typed;
    Date date;
  };
  const Case cases[] = {{"Mar 5, 2023", {2023, 3, 5}}, {"5 march 24", {2024, 3, 5}},
                        {"3/5", {2024, 3, 5}},         {"3-5-75", {1975, 3, 5}},
                        {"Septem 1", {2024, 9, 1}},    {"2026-11-20", {2026, 11, 20}}};
  for (const Case& one : cases) EXPECT_EQ(ParseFreeDate(one.typed, today), one.date) << one.typed;
  for (const char* typed : {"Foo 5", "2/30", "Mar", "5", "Feb 30 2024", "1 2 3 4", "March March",
                            "mar 5 20267", "jun 3 123", "mar 00035", "2024-13-01"}) {
    EXPECT_EQ(ParseFreeDate(typed, today), std::nullopt) << typed;
  }
}

// A mistyped sequence is seen, and its date still takes deposits.
TEST_F(DepositPostingTest, AGapIsShownAndTheSequencesDoNotEnd) {
  OpenOffice();
  for (const char* sequence : {"1", "99"}) {
    Set("txtDateSequence", sequence);
    SetRow(1, "24-0117", "1");
    form_->Leave();
    if (*sequence == '9') {
      EXPECT_EQ(
          Seen(*form_, "lblEditMessage"),
          "\r\nGreater than Last Sequence Number of 1 by 98\r\nLast Deposit was Posted Mar 15, 2024 / 1");
    }
    Post();
  }
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "2");
  SequencesUsed used;
  used.used.set();
  used.highest = kLastSequence;
  EXPECT_GT(used.Next(), kLastSequence);
  used.used.reset(42);
  EXPECT_EQ(used.Next(), 42);
}

TEST_F(DepositPostingTest, ADepositIsOfAYearThatPeriodsHave) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  Set("txtDepositDated", "3/15/1899");
  form_->Click("cmdOk");
  EXPECT_THAT(
      office_.TakeTexts(),
      ElementsAre("Not current year...",
                  "Date Posted \"03/15/1899\" is not in the years 1975 to 2095.  Type it like 03/15/2024."));
  EXPECT_EQ(tables_->deposits.RecordCount(), 0);
}

// Another program may leave an item's number and file blank: its money is out all the same.
TEST(DepositFactsTest, AnItemWithAnAmountAloneIsOutstanding) {
  DepositRecord deposit;
  deposit.items[0] = {"1", "24-0117", "BUYER", Currency::FromCents(100), {3, 0, 2024}, "C"};
  EXPECT_EQ(StateOf(deposit).text, "Cleared");
  deposit.items[1] = {"", "", "", Currency::FromCents(200), {}, "O"};
  EXPECT_EQ(StateOf(deposit).text, "Partly Cleared");
}

TEST_F(DepositPostingTest, AReconciledOrClearedDepositIsGuarded) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  SetRow(2, "24-0118", "2");
  Post();
  Clear("20240315", "1", 1, {2, 0, 2024});
  Show("3/15/2024", "1");
  Set("txtDepositAcctPeriod", "4-2024");
  form_->Leave();
  EXPECT_THAT(
      office_.TakeTexts(),
      ElementsAre("WARNING - Accounting period 4-2024 is after the cleared period 2-2024 on line 1 ..."));
  ChangeBank([](BankRecord& bank) { bank.reconciled = {3, 0, 2024}; });
  OpenForm();
  Show("3/15/2024", "1");
  EXPECT_EQ(Seen(*form_, "lblDepositStatus"), "Partly Cleared");
  EXPECT_EQ(Seen(*form_, "lblEditMessage"),
            "Accounting period 3-2024 has been reconciled.\r\nChanges are restricted.");
  EXPECT_FALSE(form_->Find("txtAmounts", 1)->enabled);
  Set("txtFileNumbers", "", 1);
  form_->Leave();
  form_->Menu("mnuEditCutLineItems");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Line 1 has cleared in 2-2024 and can not be deleted.  Set it outstanding first.",
                          "Line 1 has cleared and can not be cut.  Set it outstanding first."));
  Set("txtSources", "JONES", 2);
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  const std::string question = "WARNING - Accounting period 3-2024 has been reconciled.  Ok to make changes?";
  form_->Click("cmdOk");
  EXPECT_FALSE(form_->Find("txtDepositAcctPeriod")->enabled);
  EXPECT_EQ(Stored("20240315", "1")->items[1].source, "SMITH");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question, question));
  EXPECT_EQ(Stored("20240315", "1")->items[1].source, "JONES");
}

TEST_F(DepositPostingTest, NoDepositMovesIntoAReconciledPeriod) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  Post();
  Show("3/15/2024", "1");
  Set("txtDepositAcctPeriod", "1/2024");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("1-2024 has been reconciled...",
                          "May NOT post deposits to the accounting period 1-2024 , it has been reconciled."));
  EXPECT_EQ(Stored("20240315", "1")->accounting, (Period{3, 0, 2024}));
}

TEST_F(DepositPostingTest, ADateWithoutAFreeSequenceSaysSo) {
  OpenOffice();
  DepositRecord deposit;
  deposit.dated = "20240315";
  for (int sequence = 1; sequence <= kLastSequence; ++sequence) {
    deposit.sequence = std::to_string(sequence);
    ASSERT_EQ(tables_->deposits.Add(deposit), 0);
  }
  OpenForm();
  SetRow(1, "24-0117", "1");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("All 99 sequence numbers of 03-15-2024 are used.  Type another date."));
  EXPECT_EQ(form_->Focus()->name, "txtDepositDated");
}

TEST_F(DepositPostingTest, AnotherWorkstationIsNeverOverwritten) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  Post();
  // The next sequence is taken in the meantime.
  SetRow(1, "24-0118", "5");
  DepositRecord other = *Stored("20240315", "1");
  other.sequence = "2";
  ASSERT_TRUE(PostDeposit(*tables_, Xrefs(), "FNB", other).Done());
  form_->Click("cmdOk");
  EXPECT_EQ(Seen(*form_, "txtFileNumbers", 1), "24-0118");
  // Typed again, it is looked up.
  Set("txtDateSequence", "");
  Set("txtDateSequence", "2");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Post this one as 3 ?"), "Save Changes?"));
  EXPECT_EQ(Seen(*form_, "cmdOk"), "P&ost Deposit");
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Click("cmdOk");
  const std::string taken =
      "Deposit 03-15-2024 / 2 was posted on another workstation in the meantime.\r\nPost this one as 3 ?";
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(taken));
  EXPECT_EQ(DepositTotal(*Stored("20240315", "3")), Currency::FromCents(5'00));
  // A sequence that nobody chose gives way without a question.
  SetRow(1, "24-0118", "7");
  other.sequence = "4";
  ASSERT_TRUE(PostDeposit(*tables_, Xrefs(), "FNB", other).Done());
  form_->TakeAnyNumber();
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre());
  EXPECT_EQ(DepositTotal(*Stored("20240315", "5")), Currency::FromCents(7'00));

  // A change since it was loaded is shown beside one's own, and each answer does what it says.
  struct Case {
    BoxAnswer answer;
    const char *source, *shown;
  };
  const Case cases[] = {{BoxAnswer::kCancel, "THEIRS0", "MINE"},
                        {BoxAnswer::kNo, "THEIRS1", "THEIRS1"},
                        {BoxAnswer::kYes, "MINE", ""}};
  int round = 0;
  for (const Case& one : cases) {
    form_->Menu("mnuEditUseTodaysDateandNextSequence");
    Show("3/15/2024", "1");
    Set("txtSources", "MINE", 1);
    DepositRecord theirs = *Stored("20240315", "1");
    theirs.items[0].source = "THEIRS" + std::to_string(round++);
    ASSERT_EQ(tables_->deposits.Update(theirs), 0);
    office_.TakeTexts();
    office_.boxes.answers = {one.answer, BoxAnswer::kNo};
    form_->Click("cmdOk");
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Line 1 Source: yours MINE, theirs THEIRS")));
    EXPECT_EQ(Stored("20240315", "1")->items[0].source, one.source);
    EXPECT_EQ(Seen(*form_, "txtSources", 1), one.shown);
  }
  EXPECT_THAT(Log(), HasSubstr("[EDIT] txtSources (1) was: THEIRS2 now: MINE\r\n"));

  // A line that has moved here would come over another one.
  DepositRecord three = *Stored("20240315", "1");
  three.item_count = 2;
  three.items[1] = {"2", "24-0118", "SECOND", Currency::FromCents(2'00), {}, "O"};
  ASSERT_EQ(tables_->deposits.Update(three), 0);
  Show("3/15/2024", "1");
  office_.boxes.answers = {BoxAnswer::kYes, BoxAnswer::kYes};
  Set("txtFileNumbers", "", 1);
  form_->Leave();
  DepositRecord changed = three;
  changed.items[0].source = "FIRST";
  ASSERT_EQ(tables_->deposits.Update(changed), 0);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Delete Line 1 ?", HasSubstr("Your lines have moved up")));
  EXPECT_EQ(*Stored("20240315", "1"), changed);
  three.item_count = 1;
  three.items[1] = {};
  ASSERT_EQ(tables_->deposits.Update(three), 0);
  form_->Menu("mnuEditUseTodaysDateandNextSequence");

  // A line that has cleared there, or come to stand elsewhere, takes none of mine.
  Show("3/15/2024", "1");
  Set("txtSources", "OVER", 1);
  DepositRecord cleared = *Stored("20240315", "1");
  cleared.items[0].status = "C";
  cleared.items[0].statement = Period{3, 15, 2024};
  ASSERT_EQ(tables_->deposits.Update(cleared), 0);
  office_.TakeTexts();
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_EQ(Seen(*form_, "txtSources", 1), "OVER");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("can not be saved over them"), HasSubstr("OVER")));
  EXPECT_EQ(Seen(*form_, "txtSources", 1), "MINE");
  EXPECT_EQ(*Stored("20240315", "1"), cleared);
  cleared.items[0].status = "O";
  cleared.items[0].statement = {};
  ASSERT_EQ(tables_->deposits.Update(cleared), 0);

  office_.boxes.answers.clear();
  Show("3/15/2024", "1");
  Set("txtSources", "AGAIN", 1);
  ASSERT_TRUE(RemoveDeposit(*tables_, Xrefs(), "FNB", *Stored("20240315", "1")).Done());
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("was removed on another workstation")));
  Post();
  EXPECT_EQ(Stored("20240315", "1")->items[0].source, "AGAIN");
}

TEST_F(DepositPostingTest, UnsavedChangesAreAskedForAndSlipsPrinted) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  EXPECT_FALSE(form_->Close());
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Post Deposit?"));
  Post();
  Show("3/15/2024", "1");
  form_->Click("cmdDepositSlip");
  ASSERT_EQ(slips_.ways.size(), 1u);
  EXPECT_EQ(slips_.ways[0], "preview Deposit FNB 2024-03-15 1");
  const std::vector<PrintRow>& rows = slips_.last.sections.back().rows;
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_THAT(rows[0].cells, ElementsAre("1", "24-0117", "SMITH", "1.00", ""));
  EXPECT_THAT(rows[1].cells, ElementsAre("", "", "Total, 1 item", "1.00", ""));
  Set("txtSources", "JONES", 1);
  form_->Click("cmdDepositSlip");
  EXPECT_EQ(slips_.ways.size(), 1u);
  office_.TakeTexts();
  office_.boxes.answers = {BoxAnswer::kCancel, BoxAnswer::kYes};
  Show("3/15/2024", "2");
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "1");
  EXPECT_EQ(Seen(*form_, "txtSources", 1), "JONES");
  Set("txtDateSequence", "7");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "7");  // what was asked for, after the save
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Save Changes to 03/15/2024 ?", "Save Changes to 03/15/2024 ?"));
  EXPECT_EQ(Stored("20240315", "1")->items[0].source, "JONES");
  EXPECT_EQ(Seen(*form_, "cmdOk"), "P&ost Deposit");
}

TEST_F(DepositPostingTest, TheRegisterListsDepositsAndItemsAndFindsThem) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  SetRow(2, "24-0118", "2", "LENDER");
  Post();
  Show("3/14/2024", "1");
  SetRow(1, "24-0118", "3");
  Post();
  Clear("20240315", "1", 1, {3, 0, 2024});
  const auto rows = [&] { return form_->Find("lstDepositDates")->source; };
  EXPECT_EQ(rows()->Row(1).at(0), "03-14-2024");
  EXPECT_EQ(rows()->FindRow("3/14/2024"), 1u);
  EXPECT_EQ(rows()->FindRow("24-0117"), 0u);
  EXPECT_EQ(rows()->FindRow("25-"), std::nullopt);
  form_->Click("cmdListCleared");
  ASSERT_EQ(rows()->RowCount(), 1u);
  EXPECT_THAT(rows()->Row(0), ElementsAre("03-15-2024", "1", "1", "24-0117", "SMITH", "1.00", "", "Cleared"));
  form_->Click("cmdListOutstanding");
  EXPECT_EQ(rows()->RowCount(), 2u);
  EXPECT_EQ(rows()->Row(0).at(4), "LENDER");
  form_->Choose("lstDepositDates", 2);
  EXPECT_EQ(Seen(*form_, "txtDepositDated"), "03/14/2024");
  form_->Click("cmdListAll");
  EXPECT_EQ(rows()->RowCount(), 3u);
  form_->Menu("mnuEditUseTodaysDateandNextSequence");
  SetRow(1, "24-0117", "7");
  Post();
  EXPECT_EQ(rows()->RowCount(), 4u);
  form_->Click("cmdListDeposits");
  EXPECT_EQ(rows()->RowCount(), 3u);
}

TEST_F(DepositPostingTest, WhoOnlyLooksChangesNothing) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  Post();
  FrmEditDepositsPost viewing(*office_.session, &office_, DepositMode::kViewing);
  ASSERT_TRUE(viewing.OpenTables());
  viewing.Opened();
  EXPECT_EQ(viewing.Caption(), "View Deposits - First National Trust");
  EXPECT_EQ(Seen(viewing, "txtSources", 1), "SMITH");
  viewing.Change("txtSources", "JONES", 1);
  viewing.Click("cmdOk");
  viewing.Menu("mnuEditCutLineItems");
  EXPECT_TRUE(viewing.Close());
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  EXPECT_EQ(Stored("20240315", "1")->items[0].source, "SMITH");
}

}  // namespace
}  // namespace tallwick
