// The voucher screen on the real engine, as a clerk works it.

#include "posting/voucher_posting.h"

#include <gmock/gmock.h>

#include "posting/post_check.h"
#include "posting/post_voucher.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::PostingScreenTest;
using testing::Seen;

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
