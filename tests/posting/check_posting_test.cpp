// The check screen on the real engine, as a clerk works it.

#include <gmock/gmock.h>

#include "shell/transactions_switch.h"
#include "tests/posting/check_screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Seen;

class CheckPostingTest : public testing::CheckScreenTest {
 protected:
  // A whole entry with the number that the screen proposes, or another.
  void Enter(const std::string& number = {}, const std::string& amount = "1250",
             const std::string& file = "24-0117") {
    if (!number.empty()) Set("txtCheckNumber", number);
    Set("txtCheckPayee", "SMITH TITLE CO");
    Set("txtCheckAmount", amount);
    Set("txtCheckFileNumber", file);
  }
  void Post(const std::string& number = {}, const std::string& amount = "1250",
            const std::string& file = "24-0117") {
    Enter(number, amount, file);
    form_->Click("cmdOk");
    ASSERT_THAT(office_.TakeTexts(), IsEmpty());
  }
};

TEST_F(CheckPostingTest, NothingIsPostedWhileTransactionsAreLocked) {
  OpenOffice();
  Enter();
  ASSERT_TRUE(SetTransactionsOpen(*office_.session, false));  // as from another workstation
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Transactions Locked..."));
  EXPECT_FALSE(IsStored("1"));
  ASSERT_TRUE(SetTransactionsOpen(*office_.session, true));
  form_->Click("cmdOk");
  EXPECT_TRUE(IsStored("1"));
}

TEST_F(CheckPostingTest, ANewCheckIsPostedWholeAndTheNextOneProposed) {
  OpenOffice();
  EXPECT_EQ(form_->Caption(), "Post Checks - First National Trust");
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "1");
  EXPECT_EQ(Seen(*form_, "txtCheckDated"), "03/15/2024");
  EXPECT_EQ(Seen(*form_, "txtCheckAcctPeriod"), "3-2024");
  EXPECT_EQ(Seen(*form_, "lblCheckStatus"), "Not Posted");
  EXPECT_EQ(Seen(*form_, "cmdOk"), "P&ost Check");
  Enter("10452", "$1250");
  Set("txtCheckAddr1", "12 Main Street");
  Set("txtTIN", "12-3456789");
  Set("txtCheckControl", "JD");
  Set("txtCheckDated", "3-14-24");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtCheckAmount"), "1,250.00");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());

  CheckRecord expected;
  expected.number = "10452";
  expected.dated = {2024, 3, 14};
  expected.payee = "SMITH TITLE CO";
  expected.address1 = "12 Main Street";
  expected.amount = Currency::FromCents(1250'00);
  expected.accounting = {3, 0, 2024};
  expected.status = "O";
  expected.control = "JD";
  expected.file_number = "24-0117";
  expected.tin = "12-3456789";
  EXPECT_EQ(Stored("10452"), expected);
  EXPECT_TRUE(HasXref("24-0117", "10452"));
  EXPECT_EQ(Log(),
            "[DATE: Mar 15, 2024 @ 09:30:00 AM][TX: Post Check][REFERENCE: 10452][LOGIN: jdoe][COMPUTER: "
            "FRONTDESK2]\r\n[ADD] 10452\r\n");
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "10453");
  EXPECT_EQ(Seen(*form_, "lblLastCheckNumber"), "Last Check Number: 10452");
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "");

  form_->SetCheck("chkHandwritten", 1);
  Post();
  EXPECT_EQ(Stored("10453").status, "H");
  EXPECT_EQ(form_->Find("chkHandwritten")->value, 0);
}

TEST_F(CheckPostingTest, RefusesInOrderAndWritesNothing) {
  OpenOffice();
  Set("txtCheckNumber", "");
  Set("txtCheckDated", "2/30/2024");
  Set("txtCheckPayee", std::string(61, 'x'));
  Set("txtCheckAmount", "12x");
  Set("txtCheckAcctPeriod", "");
  const Step steps[] = {
      {"txtCheckFileNumber", " ", "File Number is Required...", "txtCheckFileNumber"},
      {"txtCheckFileNumber", "Void", "File Number can NOT be \"Void\" ...", "txtCheckFileNumber"},
      {"txtCheckFileNumber", "24-0117", "Accounting Month is Missing.", "txtCheckAcctPeriod"},
      {"txtCheckAcctPeriod", "1/2024",
       "May NOT post checks to Accounting Period 1-2024 - It has been reconciled.", "txtCheckAcctPeriod"},
      {"txtCheckAcctPeriod", "13/2024",
       "The escrow period 13/2024 is invalid.\rYou must specify the period as a month and year seperated by "
       "- / , . or a space.",
       "txtCheckAcctPeriod"},
      {"txtCheckAcctPeriod", "2-2024", "Check Number is Required...", "txtCheckNumber"},
      {"txtCheckNumber", "7", "Check Date \"2/30/2024\" is not a date.  Type it like 03/15/2024.",
       "txtCheckDated"},
      {"txtCheckDated", "", "Payee is too long: 61 characters, and 60 fit.  Shorten it.", "txtCheckPayee"},
      {"txtCheckPayee", "SMITH", "Check Amount \"12x\" is not an amount.  Type it like 1,250.00.",
       "txtCheckAmount"},
      {"txtCheckAmount", "999999999.99", "Check Date is missing.  Type it like 03/15/2024.", "txtCheckDated"},
  };
  RefusesInOrder(steps);
  EXPECT_TRUE(form_->Focus()->refused);
  EXPECT_EQ(tables_->checks.RecordCount(), 0);
  EXPECT_EQ(Log(), "");
  Set("txtCheckDated", "3/14/2024");
  form_->Click("cmdOk");
  ASSERT_TRUE(IsStored("7"));
  EXPECT_EQ(Stored("7").amount, Currency::FromCents(999'999'999'99));
}

TEST_F(CheckPostingTest, AnUnknownFileOnlyInforms) {
  OpenOffice();
  Enter("1", "5", "24-0999");
  form_->Click("cmdOk");
  ASSERT_EQ(office_.boxes.shown.size(), 1u);
  EXPECT_EQ(office_.boxes.shown[0].icon, BoxIcon::kInformation);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("24-0999 is not on file..."));
  EXPECT_TRUE(IsStored("1"));
  Post("2", "5", "24-0999");  // now it is found by its first check
}

TEST_F(CheckPostingTest, ABlankPeriodIsFilledWhereTheUserWantsThat) {
  OpenOffice();
  form_->Menu("mnuOptionsDefaultPeriod");
  EXPECT_TRUE(office_.session->Run().default_period);
  Set("txtCheckAcctPeriod", "");
  Post("1");
  EXPECT_EQ(Stored("1").accounting, (Period{3, 0, 2024}));
  office_.session->Run().default_period = false;  // as at the next start
  OpenForm();
  EXPECT_TRUE(office_.session->Run().default_period) << "the user's choice is kept";
  office_.suite.login = "OFFICE\\asmith";
  office_.session->Run().default_period = false;
  OpenForm();
  EXPECT_FALSE(office_.session->Run().default_period) << "another user's is not";
}

TEST_F(CheckPostingTest, ARightWithdrawnMeanwhileKeepsTheEntry) {
  OpenOffice();
  Enter("1");
  office_.suite.security = true;  // nobody is known yet
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("You do not have the right to do this any more.")));
  EXPECT_FALSE(IsStored("1"));
  office_.suite.security = false;
  form_->Click("cmdOk");
  EXPECT_TRUE(IsStored("1"));
}

TEST_F(CheckPostingTest, LeadsToOtherScreensAndSaysWhatIsNotThere) {
  OpenOffice();
  Set("txtCheckFileNumber", "24-0117");
  form_->Menu("mnuViewFileLedgers");
  form_->Menu("mnuEditReconcileAccount");
  form_->Menu("mnuReportsVouchers");
  EXPECT_THAT(office_.opened,
              ElementsAre("frmViewFileLedgers 24-0117", "frmReconcileAccount ", "frmReports Vouchers"));
  office_.missing_screen = "frmCalculator";
  form_->Menu("mnuToolsCalculator");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("\"Calculator\" is not part of this version of the program."));
}

TEST_F(CheckPostingTest, ACheckChangedElsewhereIsShownBeforeItIsRemoved) {
  OpenOffice();
  Post("1");
  Set("txtCheckNumber", "1");
  form_->Leave();
  CheckRecord check = Stored("1");
  check.payee = "ANOTHER";
  ASSERT_EQ(tables_->checks.Update(check), 0);
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditRemoveCheck");
  const std::vector<std::string> texts = office_.TakeTexts();
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_THAT(texts[1], HasSubstr("Nothing was removed: look at what is shown now.\r\n\r\nPayee: was SMITH "
                                  "TITLE CO, theirs ANOTHER"));
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "ANOTHER");
  EXPECT_TRUE(IsStored("1"));
}

TEST_F(CheckPostingTest, NumbersFollowTheHighestAndTheSetting) {
  OpenOffice([](BankRecord& bank) {
    bank.check_inventory = true;
    bank.lowest_check = "100";
    bank.highest_check = "300";
  });
  const std::string low = "WARNING - Check Number 9 is lower than inventory range of 100 thru 300 ...";
  Enter("9");
  EXPECT_EQ(office_.TakeTexts(), std::vector<std::string>{low});
  EXPECT_EQ(Seen(*form_, "lblHighestCheckNumber"), "Greater than Last Check Number of 0 by 9");
  form_->Click("cmdOk");
  EXPECT_TRUE(IsStored("9"));
  Post("101");
  CheckRecord lettered;  // of another program: letters stand behind every number and do not count
  lettered.number = "A7";
  ASSERT_EQ(tables_->checks.Add(lettered), 0);
  OpenForm();
  form_->Enter("txtCheckNumber");
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "102");
  office_.WriteFile("MICR_Print_FNB.dat", "Offset=3\r\n nextchecknumber = 250 \r\n");
  form_->Menu("mnuEditUseNextHigherCheckNumber");
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "250");
  EXPECT_EQ(Seen(*form_, "lblLastCheckNumber"), "Next Check Number: 250");
  form_->Menu("mnuOptionsWarnHigherNumber");
  Set("txtCheckNumber", "299");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "lblHighestCheckNumber"), "");
  Post();
  Post("300");
  // The proposal has left the stock: said once, also when the number is never entered.
  Enter();
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("WARNING - Check Number 301 is higher than inventory range of 100 thru 300 ..."));
  EXPECT_TRUE(IsStored("301"));
}

TEST_F(CheckPostingTest, ATakenNumberIsReportedAndTheEntryKept) {
  OpenOffice();
  Enter("5");
  form_->Leave();
  CheckRecord other;  // another workstation is quicker
  other.number = "5";
  other.file_number = "24-0118";
  ASSERT_TRUE(PostCheck(*tables_, office_.session->Company().xrefs, "FNB", other).Done());
  form_->Click("cmdOk");
  const char* failed = "Failed to add check number 5\r\nError code = 20";
  const char* next = "Check 5 was posted on another workstation in the meantime.\r\nPost this one as 6 ?";
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(next, failed));
  EXPECT_EQ(form_->Focus()->name, "txtCheckNumber");
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "SMITH TITLE CO");
  EXPECT_EQ(Stored("5").file_number, "24-0118");
  EXPECT_FALSE(HasXref("24-0117", "5"));
  EXPECT_EQ(Log(), "");
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(next));
  EXPECT_EQ(Stored("6").payee, "SMITH TITLE CO");
  EXPECT_TRUE(HasXref("24-0117", "6"));
}

TEST_F(CheckPostingTest, ATakenNumberThatIsTypedAgainIsLookedUp) {
  OpenOffice();
  Enter("5");
  form_->Leave();
  CheckRecord other;
  other.number = "5";
  other.file_number = "24-0118";
  ASSERT_TRUE(PostCheck(*tables_, Xrefs(), "FNB", other).Done());
  form_->Click("cmdOk");
  office_.TakeTexts();
  Set("txtCheckNumber", "");
  Set("txtCheckNumber", "5");
  office_.boxes.answers = {BoxAnswer::kNo};
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Save Changes?"));
  EXPECT_EQ(Seen(*form_, "txtCheckFileNumber"), "24-0118");
}

TEST_F(CheckPostingTest, AnUnknownStatusStaysUnlessTheMarkIsChanged) {
  OpenOffice();
  Post("10");
  CheckRecord foreign = Stored("10");
  foreign.status = "X";
  ASSERT_EQ(tables_->checks.Update(foreign), 0);
  Set("txtCheckNumber", "10");
  form_->Leave();
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Check 10 was not added or updated."));
  EXPECT_EQ(Stored("10"), foreign);
  form_->SetCheck("chkHandwritten", 1);
  form_->Click("cmdOk");
  EXPECT_EQ(Stored("10").status, "H");
}

// The bank and the numbering read "020005" as 20005; what another program has stored keeps its zeros.
TEST_F(CheckPostingTest, NumbersThatDifferInZerosAreOneCheck) {
  OpenOffice();
  Post("00020005");
  EXPECT_TRUE(HasXref("24-0117", "20005"));
  Set("txtCheckNumber", "020005");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "20005");
  EXPECT_EQ(Seen(*form_, "lblCheckStatus"), "Outstanding");
  CheckRecord foreign = Stored("20005");
  foreign.number = "00077";
  ASSERT_TRUE(PostCheck(*tables_, Xrefs(), "FNB", foreign).Done());
  for (const char* typed : {"77", "00077", "000077"}) {
    Set("txtCheckNumber", "20005");
    Set("txtCheckNumber", typed);
    Set("txtCheckControl", typed);
    Post();
    EXPECT_EQ(Stored("00077").control, typed);
  }
  EXPECT_EQ(tables_->checks.RecordCount(), 2);
  for (const char* typed : {"-1", "12 34", "12-34", "7x"}) {
    Enter(typed);
    form_->Click("cmdOk");
    EXPECT_THAT(office_.TakeTexts(),
                ElementsAre(HasSubstr(std::string("Check Number \"") + typed + "\" is not a number.")));
  }
  EXPECT_EQ(tables_->checks.RecordCount(), 2);
}

TEST_F(CheckPostingTest, APeriodThatNoPostAcceptsIsNotProposed) {
  OpenOffice([](BankRecord& bank) {
    bank.accounting = {2, 29, 2024};
    bank.reconciled = {1, 31, 2024};
  });
  EXPECT_EQ(Seen(*form_, "txtCheckAcctPeriod"), "2-28-2024");
  Post();
}

TEST_F(CheckPostingTest, AVoucherFillsWarnsAndIsConsumed) {
  OpenOffice();
  AddVoucher("31", 100'00, "24-0118");
  Set("txtCheckVoucherNumber", "99");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Voucher Number 99 is NOT posted."));
  Set("txtCheckVoucherNumber", "31");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtCheckAmount"), "100.00");
  EXPECT_THAT(Seen(*form_, "lblVoucherInformation"), HasSubstr("for $100.00"));
  Enter("1", "150");
  Set("txtCheckVoucherNumber", "");
  Set("txtCheckPayee", "SMITH");
  Set("txtCheckVoucherNumber", "31");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Check amount is more than vouchered funds.  Voucher was posted for $100.00 .\r\n"
                          "Voucher Number 31 is posted to file number 24-0118 ."));
  EXPECT_EQ(VoucherCheck("31"), "1");
  // A second check may name it too; the voucher remembers the first.
  Enter("2", "50", "24-0118");
  Set("txtCheckVoucherNumber", "31");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Voucher number 31 has already been reduced by check number 1 ."));
  EXPECT_EQ(VoucherCheck("31"), "1");
}

TEST_F(CheckPostingTest, APostedCheckIsShownChangedAndMoved) {
  OpenOffice();
  AddVoucher("31", 1250'00, "24-0117");
  AddVoucher("32", 1250'00, "24-0118");
  Enter("10");
  Set("txtCheckVoucherNumber", "31");
  form_->Click("cmdOk");
  Set("txtCheckNumber", "10");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "lblCheckStatus"), "Outstanding");
  EXPECT_EQ(Seen(*form_, "cmdOk"), "&Ok");
  EXPECT_EQ(Seen(*form_, "txtCheckAmount"), "1,250.00");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Check 10 was not added or updated."));
  Set("txtCheckPayee", "SMITH & SONS");
  Set("txtCheckFileNumber", "24-0118");
  Set("txtCheckVoucherNumber", "32");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  EXPECT_EQ(Stored("10").payee, "SMITH & SONS");
  EXPECT_FALSE(HasXref("24-0117", "10"));
  EXPECT_TRUE(HasXref("24-0118", "10"));
  EXPECT_EQ(VoucherCheck("31"), "");
  EXPECT_EQ(VoucherCheck("32"), "10");
  EXPECT_THAT(Log(), HasSubstr("[EDIT] txtCheckPayee was: SMITH TITLE CO now: SMITH & SONS\r\n"
                               "[EDIT] txtCheckFileNumber was: 24-0117 now: 24-0118\r\n"
                               "[EDIT] txtCheckVoucherNumber was: 31 now: 32\r\n"));
}

TEST_F(CheckPostingTest, AChangeElsewhereIsNeverOverwritten) {
  OpenOffice();
  Post("10");
  Set("txtCheckNumber", "10");
  Set("txtCheckPayee", "MINE");
  CheckRecord theirs = Stored("10");
  theirs.amount = Currency::FromCents(1);
  ASSERT_EQ(tables_->checks.Update(theirs), 0);
  const auto question =
      HasSubstr("\r\nPayee: yours MINE, theirs SMITH TITLE CO\r\nAmount: was 1,250.00, theirs 0.01");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question));
  EXPECT_EQ(Stored("10"), theirs);
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "MINE");
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "SMITH TITLE CO");
  EXPECT_EQ(Stored("10"), theirs);
  theirs.control = "JD";
  ASSERT_EQ(tables_->checks.Update(theirs), 0);
  Set("txtCheckPayee", "MINE");
  form_->Click("cmdOk");
  EXPECT_EQ(Stored("10").payee, "MINE");
  EXPECT_EQ(Stored("10").control, "JD") << "was not changed here";
}

TEST_F(CheckPostingTest, AReconciledPeriodRestrictsChanges) {
  OpenOffice();
  Post("10");
  Post("11");
  CheckRecord cleared = Stored("11");
  cleared.status = "C";
  cleared.statement = {3, 0, 2024};
  ASSERT_EQ(tables_->checks.Update(cleared), 0);
  BankTable& banks = office_.session->Company().banks;
  ASSERT_TRUE(banks.SeekCode("FNB"));
  BankRecord bank = banks.Read();
  bank.reconciled = {3, 0, 2024};
  ASSERT_EQ(banks.Update(bank), 0);
  OpenForm();
  Set("txtCheckNumber", "11");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "lblEditMessage"), "Cleared and reconciled.\r\nChanges are restricted.");
  Set("txtCheckNumber", "10");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "lblEditMessage"),
            "Accounting period 3-2024 has been reconciled.\r\nChanges are restricted.");
  Set("txtCheckAmount", "1");
  Set("txtCheckAddr1", "12 Main Street");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  EXPECT_EQ(Stored("10").address1, "12 Main Street");
  EXPECT_EQ(Stored("10").amount, Currency::FromCents(1250'00));
  Enter("12");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("May NOT post checks to Accounting Period 3-2024 - It has been reconciled."));
}

// The bank has paid what the check says, to whom it says; the TIN is often asked for later.
TEST_F(CheckPostingTest, APaidCheckStays) {
  OpenOffice();
  Post("10");
  CheckRecord check = Stored("10");
  check.status = "C";
  for (const Period& statement : {Period{3, 0, 2024}, Period{1, 0, 2024}}) {
    check.statement = statement;
    ASSERT_TRUE(tables_->checks.SeekNumber("10"));
    ASSERT_EQ(tables_->checks.Update(check), 0);
    form_->Menu("mnuEditUseNextHigherCheckNumber");
    Set("txtCheckNumber", "10");
    form_->Leave();
    for (const char* closed : {"txtCheckPayee", "txtCheckAddr1", "txtCheckAddr2", "txtCheckCityState",
                               "cmdRolodex", "txtCheckDated", "txtCheckAmount", "txtCheckFileNumber",
                               "txtCheckAcctPeriod", "txtCheckVoucherNumber"})
      EXPECT_FALSE(form_->Find(closed)->enabled) << closed;
    EXPECT_TRUE(form_->Find("txtTIN")->enabled);
    EXPECT_NE(Seen(*form_, "lblEditMessage"), "");
  }
}

TEST_F(CheckPostingTest, NumberZeroIsOfferedForRemoval) {
  OpenOffice();
  Post("0", "75");
  Set("txtCheckNumber", "0");
  form_->Leave();
  const std::string question =
      "Check Number '0' (zero) posted in error...\r\n\r\nFile Number: 24-0117\r\nAmount: 75.00\r\n\r\nData "
      "will be removed.";
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question));
  EXPECT_TRUE(IsStored("0"));
  Set("txtCheckNumber", "1");
  form_->Leave();
  office_.boxes.answers = {BoxAnswer::kOk};
  Set("txtCheckNumber", "0");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question));
  EXPECT_FALSE(IsStored("0"));
  EXPECT_FALSE(HasXref("24-0117", "0"));
  EXPECT_THAT(Log(), HasSubstr("[DELETE] 0\r\n"));

  Post("0", "75");
  CheckRecord cleared = Stored("0");
  cleared.status = "C";
  cleared.statement = {3, 0, 2024};
  ASSERT_EQ(tables_->checks.Update(cleared), 0);
  Set("txtCheckNumber", "0");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Check 0 has cleared the bank.  Set it outstanding first."));
  EXPECT_TRUE(IsStored("0"));
}

TEST_F(CheckPostingTest, UnsavedChangesAreAskedFor) {
  OpenOffice();
  Post("10");
  Enter();
  office_.boxes.answers = {BoxAnswer::kCancel, BoxAnswer::kCancel, BoxAnswer::kYes};
  form_->Key("Esc");
  EXPECT_TRUE(form_->IsOpen());
  Set("txtCheckNumber", "10");  // another check would take the entry's place
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "11");
  form_->Click("cmdDone");
  EXPECT_FALSE(form_->IsOpen());
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Save Changes?", "Save Changes?", "Save Changes?"));
  EXPECT_TRUE(IsStored("11"));
  OpenForm();
  Set("txtCheckNumber", "11");
  Set("txtRemittanceAdvice", "Lot 4");  // for the stub: a posted check has nothing of it to save
  EXPECT_TRUE(form_->Close());
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
}

TEST_F(CheckPostingTest, ASaveRefusedOnTheWayToAnotherCheckKeepsTheCursor) {
  OpenOffice();
  Post("10");
  Enter();
  Set("txtCheckFileNumber", "");
  office_.boxes.answers = {BoxAnswer::kYes};
  Set("txtCheckNumber", "10");
  form_->Enter("txtCheckDated");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Save Changes?", "File Number is Required..."));
  EXPECT_EQ(form_->Focus()->name, "txtCheckFileNumber");
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "11");
}

TEST_F(CheckPostingTest, ABankThatIsGoneIsSaid) {
  OpenOffice();
  Enter("1");
  ASSERT_TRUE(office_.session->Company().banks.SeekCode("FNB"));
  ASSERT_EQ(office_.session->Company().banks.Delete(), 0);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Bank ID Code no longer valid..."));
  EXPECT_FALSE(IsStored("1"));
}

}  // namespace
}  // namespace tallwick
