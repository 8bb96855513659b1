// The lines of a deposit: moved, cut and pasted, with both cross-references.

#include <gmock/gmock.h>

#include "tests/posting/deposit_screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Seen;

class DepositLinesTest : public testing::DepositScreenTest {};

TEST_F(DepositLinesTest, ChangesMoveBothCrossReferences) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  SetRow(2, "24-0118", "2");
  SetRow(3, "24-0117", "3");
  form_->SetCheck("chkWireIn", 1, 3);
  Post();
  Show("3/15/2024", "1");
  EXPECT_EQ(Seen(*form_, "lblItemStatus", 3), "Outstanding");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Deposit 03-15-2024 / 1 was not added or updated."));
  // The second line goes, the third takes its place; the first moves to another file.
  Set("txtFileNumbers", "", 2);
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtFileNumbers", 2), "24-0118");  // the safe answer
  office_.boxes.answers = {BoxAnswer::kYes};
  Set("txtFileNumbers", "", 2);
  Set("txtFileNumbers", "24-0118", 1);
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Delete Line 2 ?", "Delete Line 2 ?"));
  Post();
  EXPECT_THAT(References(), ElementsAre("24-0117 20240315 1 2", "24-0118 20240315 1 1"));
  EXPECT_EQ(Stored("20240315", "1")->item_count, 2);
  EXPECT_EQ(Stored("20240315", "1")->spare, " X");
  EXPECT_THAT(Log(), HasSubstr("[EDIT] txtFileNumbers (1) was: 24-0117 now: 24-0118\r\n"));
  EXPECT_THAT(Log(), HasSubstr("[EDIT] chkWireIn (2) was: Unchecked now: Checked\r\n"));
  // Without lines the deposit goes, and what pointed to it.
  Show("3/15/2024", "1");
  office_.boxes.answers = {BoxAnswer::kYes, BoxAnswer::kYes, BoxAnswer::kYes};
  Set("txtFileNumbers", "", 1);
  Set("txtFileNumbers", "", 2);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Delete Line 1 ?", "Delete Line 2 ?",
                                               "No line is left in this deposit.  Remove it?"));
  EXPECT_FALSE(Stored("20240315", "1"));
  EXPECT_THAT(References(), IsEmpty());
  EXPECT_THAT(Log(), HasSubstr("[DELETE] 03-15-2024 / 1\r\n"));

  // Below the screen: another date and sequence take the references along.
  DepositRecord before;
  before.dated = "20240301";
  before.sequence = "1";
  before.item_count = 1;
  before.items[0] = {"1", "24-0117", "SMITH", Currency::FromCents(1), {}, "O"};
  ASSERT_TRUE(PostDeposit(*tables_, Xrefs(), "FNB", before).Done());
  DepositRecord after = before;
  after.dated = "20240302";
  after.sequence = "2";
  ASSERT_TRUE(RewriteDeposit(*tables_, Xrefs(), "FNB", before, after).Done());
  EXPECT_THAT(References(), ElementsAre("24-0117 20240302 2 1"));
}

TEST_F(DepositLinesTest, LinesAreCutAndPastedIntoAnotherDeposit) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  SetRow(2, "24-0118", "2");
  form_->SetCheck("chkWireIn", 1, 2);
  Post();
  SetRow(1, "24-0117", "9");
  Post();
  Show("3/15/2024", "1");
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditCutLineItems");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("\"Cut Line Items\" will remove transactions from this deposit.   It is used to "
                          "quickly clear all lines and in preparation for a \"Paste\" operation to a "
                          "different date and sequence number.  Proceed?"));
  EXPECT_FALSE(Stored("20240315", "1"));
  EXPECT_THAT(References(), ElementsAre("24-0117 20240315 2 1"));
  Show("3/15/2024", "2");
  form_->Menu("mnuEditPasteLineItems");
  EXPECT_THAT(
      office_.TakeTexts(),
      ElementsAre("Can not \"Paste\" to a date and sequence that has transactions already posted..."));
  const std::string lost =
      "\"Clear Paste Buffers\" means data from last \"Cut Line Items\" will be lost.  Proceed?";
  EXPECT_FALSE(form_->Close());  // what was cut is nowhere else
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(lost));
  Show("3/14/2024", "1");
  form_->Menu("mnuEditPasteLineItems");
  EXPECT_EQ(Seen(*form_, "lblDepositTotal"), "3.00");
  Post();
  EXPECT_THAT(References(),
              ElementsAre("24-0117 20240314 1 1", "24-0117 20240315 2 1", "24-0118 20240314 1 2"));
  EXPECT_TRUE(IsWireIn(*Stored("20240314", "1"), 2));
  EXPECT_FALSE(form_->Find("mnuEditPasteLineItems")->enabled);  // posted once, they are given up
  EXPECT_TRUE(form_->Close());
}

// What is cut is what the table holds: what was typed over it is saved or dropped before.
TEST_F(DepositLinesTest, ACutTakesWhatIsStored) {
  OpenOffice();
  SetRow(1, "24-0117", "1");
  SetRow(2, "24-0118", "2");
  Post();
  Show("3/15/2024", "1");
  const std::string save = "Save Changes to 03/15/2024 ?";
  Set("txtAmounts", "abc", 1);
  form_->Menu("mnuEditCutLineItems");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(save)) << "Cancel is the safe answer";
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Menu("mnuEditCutLineItems");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(save, HasSubstr("will remove transactions")));
  EXPECT_FALSE(Stored("20240315", "1"));
  form_->Menu("mnuEditPasteLineItems");
  EXPECT_EQ(Seen(*form_, "lblDepositTotal"), "3.00");
}

TEST_F(DepositLinesTest, WhatIsNotPostedOfACutStaysInTheBuffer) {
  OpenOffice();
  for (int row = 1; row <= 3; ++row) SetRow(row, "24-0117", std::to_string(row).c_str());
  Post();
  Show("3/15/2024", "1");
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditCutLineItems");
  office_.TakeTexts();
  Show("3/14/2024", "1");
  form_->Menu("mnuEditPasteLineItems");
  SetRow(2, "", "", "");
  Set("txtSources", "JONES", 1);  // changed, but posted
  Post();
  EXPECT_EQ(DepositTotal(*Stored("20240314", "1")), Currency::FromCents(4'00));
  EXPECT_EQ(Seen(*form_, "lblPasteBuffer"), "1 line cut: paste into another date and sequence.");
  form_->Menu("mnuEditPasteLineItems");
  EXPECT_EQ(Seen(*form_, "lblDepositTotal"), "2.00");
  Post();
  EXPECT_EQ(Seen(*form_, "lblPasteBuffer"), "");
}

TEST_F(DepositLinesTest, ARefusedCutKeepsTheBufferAndOneQuestionIsEnough) {
  OpenOffice();
  for (const char* amount : {"1", "2"}) {
    SetRow(1, "24-0117", amount);
    Post();
  }
  Show("3/15/2024", "1");
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditCutLineItems");
  office_.TakeTexts();
  ChangeBank([](BankRecord& bank) { bank.reconciled = {3, 0, 2024}; });
  const auto reconciled =
      HasSubstr("WARNING - Accounting period 3-2024 has been reconciled.  Ok to make changes?");
  Show("3/15/2024", "2");
  office_.boxes.answers = {BoxAnswer::kYes, BoxAnswer::kYes, BoxAnswer::kNo};
  form_->Menu("mnuEditCutLineItems");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("will remove"), HasSubstr("will be lost"), reconciled));
  EXPECT_EQ(Seen(*form_, "lblPasteBuffer"), "1 line cut: paste into another date and sequence.");
  office_.boxes.answers = {BoxAnswer::kYes, BoxAnswer::kYes, BoxAnswer::kYes};
  Set("txtFileNumbers", "", 1);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Delete Line 1 ?", reconciled, "No line is left in this deposit.  Remove it?"));
  EXPECT_FALSE(Stored("20240315", "2"));
}

}  // namespace
}  // namespace tallwick
