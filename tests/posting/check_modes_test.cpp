// The check screen beyond entry: other modes, renumbering and removal, payees, and printing.

#include <gmock/gmock.h>

#include "tests/posting/check_screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::Seen;
using Kind = CheckMode::Kind;

class CheckModesTest : public testing::CheckScreenTest {};

TEST_F(CheckModesTest, AVoidKeepsItsReasonAndFreesItsVoucher) {
  OpenOffice([](BankRecord& bank) { bank.positive_pay = true; });
  AddVoucher("31");
  PostCheckOf("10", "SMITH TITLE CO", "1250", "31");
  EXPECT_EQ(VoucherCheck("31"), "10");
  OpenIn(Kind::kVoiding);
  EXPECT_EQ(form_->Caption(), "Void Checks - First National Trust");
  Set("txtCheckNumber", "10");
  Set("txtCheckReason", "Lost in the mail");
  EXPECT_FALSE(form_->Find("txtCheckAmount")->enabled);
  EXPECT_EQ(Seen(*form_, "txtCheckStmtPeriod"), "3-2024") << "proposed";
  Set("txtCheckStmtPeriod", "2/2024");
  EXPECT_EQ(Refusal(),
            "Check posted to Accounting Period 3-2024 can not be voided in the Statement Period 2-2024");
  Set("txtCheckStmtPeriod", "3/2024");
  Post();
  EXPECT_EQ(Stored("10").status, "V");
  EXPECT_EQ(Stored("10").reason, "Lost in the mail");
  EXPECT_EQ(Stored("10").statement, (Period{3, 0, 2024}));
  EXPECT_TRUE(HasXref("24-0117", "10"));
  EXPECT_EQ(VoucherCheck("31"), "");
  EXPECT_THAT(Log(),
              HasSubstr("[TX: Void Check][REFERENCE: 10][LOGIN: jdoe][COMPUTER: FRONTDESK2]\r\n[VOID] 10"));
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "") << "ready for the next one";

  OpenIn(Kind::kPosting);
  Set("txtCheckNumber", "10");
  Set("txtCheckAcctPeriod", "4/2024");
  EXPECT_EQ(Refusal(),
            "Check posted to Accounting Period 4-2024 can not be voided in the Statement Period 3-2024");
  EXPECT_EQ(form_->Focus()->name, "txtCheckAcctPeriod");
  EXPECT_EQ(Stored("10").accounting, (Period{3, 0, 2024}));

  OpenIn(Kind::kVoiding);
  Set("txtCheckNumber", "10");
  form_->Leave();
  EXPECT_EQ(Refusal(), "Check 10 is marked \"Voided\" already.");
  form_->Click("cmdSetOutstanding");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  EXPECT_EQ(Stored("10").status, "O");
  EXPECT_TRUE(Stored("10").statement.IsEmpty());
  EXPECT_EQ(Stored("10").reason, "");
  EXPECT_EQ(VoucherCheck("31"), "10");
  EXPECT_THAT(Log(), HasSubstr("[TX: Set Outstanding][REFERENCE: 10]"));
  EXPECT_THAT(Log(), HasSubstr("[SET OUTSTANDING] 10\r\n"));
  EXPECT_THAT(positive_pay_.told, ElementsAre("issued 10", "voided 10", "issued 10"));
}

TEST_F(CheckModesTest, StopAndClearAreInTheTrailFieldByField) {
  OpenOffice();
  PostCheckOf("10");
  PostCheckOf("11");
  OpenIn(Kind::kStopPayment);
  Set("txtCheckNumber", "10");
  Set("txtCheckReason", "Stolen");
  Post();
  EXPECT_EQ(Stored("10").status, "S");
  EXPECT_THAT(Log(), HasSubstr("[EDIT] txtCheckStmtPeriod was:  now: 3-2024\r\n"
                               "[EDIT] txtCheckReason was:  now: Stolen\r\n"
                               "[EDIT] txtCheckStatus was: Outstanding now: Stopped Payment\r\n"));
  form_->Menu("mnuEditClearChecks");
  EXPECT_EQ(form_->Caption(), "Clear Checks - First National Trust");
  Set("txtCheckNumber", "11");
  form_->Leave();
  const std::pair<const char*, const char*> periods[] = {
      {"", "Statement Month is Missing."},
      {"1/2024", "Statement period 1-2024 has been reconciled.  Enter the period of a later statement."},
      {"2/2024",
       "Check posted to Accounting Period 3-2024 can not be cleared in the Statement Period 2-2024"},
      {"13/2024",
       "The escrow period 13/2024 is invalid.\rYou must specify the period as a month and year seperated by "
       "- / , . or a space."}};
  for (const auto& [period, message] : periods) {
    Set("txtCheckStmtPeriod", period);
    EXPECT_EQ(Refusal(), message);
    EXPECT_EQ(form_->Focus()->name, "txtCheckStmtPeriod");
  }
  EXPECT_EQ(Stored("11").status, "O");
  Set("txtCheckStmtPeriod", "3/2024");
  Post();
  EXPECT_EQ(Stored("11").status, "C");
  EXPECT_EQ(Stored("11").statement, (Period{3, 0, 2024}));
  Set("txtCheckNumber", "99");
  EXPECT_EQ(Refusal(), "Check Number 99 is NOT posted.");
}

// The number of another check was typed, and the key that posts is pressed: it shows that check.
TEST_F(CheckModesTest, ACheckIsSeenBeforeItChanges) {
  OpenOffice();
  for (const char* number : {"10", "11", "12"}) PostCheckOf(number, std::string("PAYEE ") + number);
  ASSERT_EQ(tables_->checks.SeekNumber("12"), true);
  CheckRecord reconciled = tables_->checks.Read();
  reconciled.accounting = {1, 0, 2024};
  ASSERT_EQ(tables_->checks.Update(reconciled), 0);
  struct Case {
    Kind mode;
    const char *number, *key, *payee, *focus;
  };
  const Case cases[] = {
      {Kind::kPosting, "10", "Enter", "PAYEE 10", "txtCheckDated"},
      {Kind::kPosting, "11", "Enter", "PAYEE 11", "txtCheckDated"},
      {Kind::kPosting, "10", "Ctrl+Enter", "PAYEE 10", "txtCheckDated"},
      {Kind::kPosting, "12", "Enter", "PAYEE 12", "txtCheckPayee"},
      {Kind::kPosting, "99", "Enter", "", "txtCheckDated"},
      {Kind::kViewing, "10", "Enter", "PAYEE 10", "txtCheckNumber"},
      {Kind::kClearing, "10", "Enter", "PAYEE 10", "txtCheckStmtPeriod"},
      {Kind::kVoiding, "11", "Ctrl+Enter", "PAYEE 11", "txtCheckStmtPeriod"},
  };
  for (const Case& one : cases) {
    if (mode_ != one.mode) OpenIn(one.mode);
    Set("txtCheckNumber", one.number);
    EXPECT_TRUE(form_->Key(one.key)) << one.number;
    EXPECT_THAT(office_.TakeTexts(), IsEmpty()) << one.number;
    EXPECT_EQ(Seen(*form_, "txtCheckPayee"), one.payee);
    ASSERT_NE(form_->Focus(), nullptr) << one.number;
    EXPECT_EQ(form_->Focus()->name, one.focus) << one.number;
  }
  EXPECT_EQ(Stored("11").status, "O");

  // A new check that is filled keeps its entry under another free number; Ctrl+Enter posts it, as elsewhere.
  OpenIn(Kind::kPosting);
  Set("txtCheckFileNumber", "24-0117");
  Set("txtCheckNumber", "77");
  EXPECT_TRUE(form_->Key("Enter"));
  EXPECT_EQ(Seen(*form_, "txtCheckFileNumber"), "24-0117");
  EXPECT_EQ(Stored("77").number, "");
  Set("txtCheckNumber", "78");
  EXPECT_FALSE(form_->Key("Ctrl+Enter"));
}

TEST_F(CheckModesTest, AnotherModeGoesOnWithTheCheckThatIsShown) {
  OpenOffice();
  PostCheckOf("10");
  const std::pair<const char*, const char*> modes[] = {{"mnuEditVoidChecks", "txtCheckStmtPeriod"},
                                                       {"mnuEditStopPaymentChecks", "txtCheckStmtPeriod"},
                                                       {"mnuEditClearChecks", "txtCheckStmtPeriod"},
                                                       {"mnuEditPostChecks", "txtCheckDated"}};
  Set("txtCheckNumber", "10");
  for (const auto& [command, focus] : modes) {
    form_->Menu(command);
    EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "SMITH TITLE CO");
    ASSERT_NE(form_->Focus(), nullptr) << command;
    EXPECT_EQ(form_->Focus()->name, focus) << command;
  }
}

TEST_F(CheckModesTest, FilesAreLookedUp) {
  OpenOffice();
  const auto found = [&](const char* text) {
    Set("txtFindFile", text);
    std::vector<std::string> files;
    RowSource& rows = *form_->Find("lstFiles")->source;
    for (std::size_t row = 0; row < rows.RowCount(); ++row) files.push_back(rows.Row(row).front());
    return files;
  };
  office_.suite.files.reset();
  form_->Enter("txtCheckFileNumber");
  form_->Key("F4");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Type the file number.")));
  EXPECT_EQ(form_->Focus()->name, "txtCheckFileNumber");
  for (const char* file : {"24-0117", "23-0040", "VOID"}) {
    ASSERT_EQ(Xrefs().Add(CheckXref(file, "FNB", "9")), 0);
  }
  // Without a list of the suite's: the files with transactions, by their beginning.
  form_->Key("F4");
  EXPECT_EQ(form_->Focus()->name, "txtFindFile");
  EXPECT_THAT(found(""), ElementsAre("24-0117", "23-0040"));
  EXPECT_THAT(found("0117"), IsEmpty());
  EXPECT_THAT(found("23"), ElementsAre("23-0040"));
  form_->Key("Enter");
  EXPECT_EQ(Seen(*form_, "txtCheckFileNumber"), "23-0040");
  EXPECT_EQ(form_->Focus()->name, "txtCheckFileNumber");

  office_.suite.files = {"24-0117", "24-0118", "25-0001a"};
  Set("txtCheckFileNumber", "25");
  form_->Key("F4");
  EXPECT_THAT(form_->Find("lstFiles")->source->Row(0), ElementsAre("25-0001a", _))
      << "begins with what is typed";
  EXPECT_EQ(Seen(*form_, "txtFindFile"), "25");
  form_->Key("Esc");
  Set("txtCheckFileNumber", "nowhere");
  form_->Key("F4");
  EXPECT_EQ(Seen(*form_, "txtFindFile"), "");
  EXPECT_THAT(found(""), ElementsAre("25-0001a", "24-0118", "24-0117"));
  EXPECT_THAT(found("01A"), ElementsAre("25-0001a"));
  EXPECT_THAT(found("24"), ElementsAre("24-0118", "24-0117"));
  EXPECT_THAT(form_->Find("lstFiles")->source->Row(1), ElementsAre("24-0117", "1 check"));
  form_->Key("Down");
  form_->Key("Down");
  EXPECT_EQ(form_->Find("lstFiles")->selected, 2) << "the last row";
  form_->Key("Enter");
  EXPECT_EQ(Seen(*form_, "txtCheckFileNumber"), "24-0117");

  // Posted while the list is open: what was searched for is in no trail.
  form_->Key("F4");
  Set("txtFindFile", "24");
  Set("txtCheckPayee", "SMITH TITLE CO");
  Set("txtCheckAmount", "5");
  Post();
  Set("txtCheckNumber", "1");
  form_->Leave();
  form_->Enter("txtCheckFileNumber");
  form_->Key("F4");
  Set("txtFindFile", "24");
  Set("txtCheckAmount", "6");
  Post();
  EXPECT_THAT(Log(), HasSubstr("txtCheckAmount was: 5.00 now: 6.00"));
  EXPECT_THAT(Log(), Not(HasSubstr("txtFindFile")));
}

TEST(CheckModeTest, WhatAStatusAllows) {
  BankRecord bank;
  bank.reconciled = {1, 0, 2024};
  const Period open{2, 0, 2024};
  const Period closed{1, 0, 2024};
  struct Case {
    const char* from;
    Period statement;
    const char *to, *refusal;
  };
  const char* stopped = "Check 10 is marked \"Stopped Payment\".  Set it outstanding first.";
  const char* cleared = "Check 10 is marked \"Cleared\".  Set it outstanding first.";
  const Case cases[] = {{"O", {}, "C", ""},
                        {"H", {}, "V", ""},
                        {"O", {}, "S", ""},
                        {"S", open, "V", ""},
                        {"S", open, "C", stopped},
                        {"C", open, "V", cleared},
                        {"C", open, "S", cleared},
                        {"V", open, "O", ""},
                        {"O", {}, "O", "Check 10 is outstanding already."},
                        {"C", closed, "O", "Cleared and reconciled.\r\nChanges are restricted."},
                        {"V", closed, "O", "Voided and reconciled.\r\nChanges are restricted."},
                        {"S", closed, "V", "Stop Payment and reconciled.\r\nChanges are restricted."}};
  for (const Case& one : cases) {
    CheckRecord check;
    check.number = "10";
    check.status = one.from;
    check.statement = one.statement;
    EXPECT_EQ(StatusRefusal(check, one.to, bank), one.refusal) << one.from << one.to;
  }
  CheckRecord spoiled;
  spoiled.status = "V";
  spoiled.file_number = "VOID";
  EXPECT_EQ(StatusRefusal(spoiled, "O", bank), "File Number can NOT be \"VOID\" ...");
}

TEST_F(CheckModesTest, SpoiledStockIsEnteredAsVoid) {
  OpenOffice();
  OpenIn(Kind::kVoiding);
  Set("txtCheckNumber", "77");
  Set("txtCheckReason", "Torn in the printer");
  EXPECT_EQ(Seen(*form_, "txtCheckFileNumber"), "VOID");
  EXPECT_EQ(Seen(*form_, "cmdOk"), "P&ost Check");
  Post();
  EXPECT_EQ(Stored("77").status, "V");
  EXPECT_EQ(Stored("77").file_number, "VOID");
  EXPECT_EQ(Stored("77").reason, "Torn in the printer");
  EXPECT_THAT(Log(), HasSubstr("[TX: Void Check][REFERENCE: 77][LOGIN: jdoe][COMPUTER: FRONTDESK2]\r\n"
                               "[ADD VOID] 77\r\n"));
}

TEST_F(CheckModesTest, ModesKeepTheCheckAndFollowTheRights) {
  OpenOffice();
  PostCheckOf("10");
  OpenIn(Kind::kViewing);
  Set("txtCheckNumber", "10");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "SMITH TITLE CO");
  for (std::string_view control : {"txtCheckPayee", "txtCheckReason", "chkHandwritten", "cmdOk"}) {
    EXPECT_FALSE(form_->Find(control)->enabled) << control;
  }
  form_->Menu("mnuEditVoidChecks");
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "10");
  EXPECT_EQ(form_->Find("mnuEditVoidChecks")->value, 1);
  form_->UseMode("Posting");
  EXPECT_EQ(form_->Caption(), "Post Checks - First National Trust");
  EXPECT_TRUE(form_->Find("txtCheckPayee")->enabled);
  form_->Menu("mnuEditVouchers");
  EXPECT_THAT(office_.opened, ElementsAre("frmEditVouchersPost Posting"));
  office_.suite.security = true;  // a login that is not among the users
  office_.session->ReloadUser();
  form_->UseMode("Voiding");
  EXPECT_EQ(form_->Caption(), "Post Checks - First National Trust");
}

TEST_F(CheckModesTest, ARenumberedCheckTakesEverythingAlong) {
  OpenOffice();
  AddVoucher("31");
  PostCheckOf("10", "SMITH TITLE CO", "1250", "31");
  PostCheckOf("12");
  const CheckRecord before = Stored("10");
  form_->Menu("mnuEditRenumberCheck");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Look up the posted check")));
  Set("txtCheckNumber", "10");
  form_->Menu("mnuEditRenumberCheck");
  Set("txtCheckNumber", "12");
  EXPECT_EQ(Refusal(), "Check 12 is posted already.  Type a number that is free.");
  EXPECT_EQ(Stored("10"), before);
  EXPECT_TRUE(HasXref("24-0117", "10"));
  EXPECT_EQ(VoucherCheck("31"), "10");
  Set("txtCheckNumber", "11");
  Post();
  CheckRecord after = before;
  after.number = "11";
  EXPECT_EQ(Stored("11"), after);
  EXPECT_EQ(Stored("10"), CheckRecord{});
  EXPECT_FALSE(HasXref("24-0117", "10"));
  EXPECT_TRUE(HasXref("24-0117", "11"));
  EXPECT_EQ(VoucherCheck("31"), "11");
  for (const char* reference : {"[REFERENCE: 10]", "[REFERENCE: 11]"}) {
    EXPECT_THAT(
        Log(), HasSubstr(std::string(reference) +
                         "[LOGIN: jdoe][COMPUTER: FRONTDESK2]\r\n[EDIT] txtCheckNumber was: 10 now: 11\r\n"));
  }

  Set("txtCheckNumber", "11");
  form_->Menu("mnuEditRenumberCheck");
  Set("txtCheckPayee", "EDITED");
  form_->Enter("txtCheckNumber");
  form_->Change("txtCheckNumber", "15");
  form_->Key("Esc");  // the number as it was, and nothing else
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "11");
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "EDITED");
  EXPECT_EQ(Seen(*form_, "lblEditMessage"), "");
  EXPECT_EQ(Seen(*form_, "lblHighestCheckNumber"), "");
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Menu("mnuEditRemoveCheck");
  EXPECT_EQ(Stored("11"), after);
  form_->Menu("mnuEditRemoveCheck");
  EXPECT_EQ(Stored("11"), CheckRecord{});
  EXPECT_FALSE(HasXref("24-0117", "11"));
  EXPECT_EQ(VoucherCheck("31"), "");
  EXPECT_THAT(Log(), HasSubstr("[DELETE] 11\r\n"));

  office_.TakeTexts();
  ChangeBank([](BankRecord& bank) { bank.reconciled = {3, 0, 2024}; });
  OpenForm();
  Set("txtCheckNumber", "12");
  for (const char* command : {"mnuEditRenumberCheck", "mnuEditRemoveCheck"}) {
    form_->Menu(command);
    EXPECT_THAT(office_.TakeTexts(),
                ElementsAre("Accounting period 3-2024 has been reconciled.\r\nChanges are restricted."));
  }
}

TEST_F(CheckModesTest, RenumberingGoesOnAfterAChangeElsewhere) {
  OpenOffice();
  PostCheckOf("10");
  Set("txtCheckNumber", "10");
  form_->Menu("mnuEditRenumberCheck");
  Set("txtCheckNumber", "11");
  CheckRecord theirs = Stored("10");
  theirs.payee = "THEIRS";
  ASSERT_EQ(tables_->checks.Update(theirs), 0);
  office_.boxes.answers = {BoxAnswer::kCancel, BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_THAT(Seen(*form_, "lblEditMessage"), HasSubstr("Check 10 gets another number"));
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "11");
  form_->Click("cmdOk");
  EXPECT_EQ(Stored("11").payee, "THEIRS");
  EXPECT_EQ(Stored("10").number, "");
}

TEST_F(CheckModesTest, ANewNumberIsWarnedOfAsThatOfANewCheck) {
  OpenOffice([](BankRecord& bank) {
    bank.check_inventory = true;
    bank.lowest_check = "10";
    bank.highest_check = "300";
  });
  PostCheckOf("10");
  Set("txtCheckNumber", "10");
  form_->Menu("mnuEditRenumberCheck");
  Set("txtCheckNumber", "0400");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("WARNING - Check Number 400 is higher than inventory range of 10 thru 300 ..."));
  EXPECT_EQ(Seen(*form_, "lblHighestCheckNumber"), "Greater than Last Check Number of 10 by 390");
  Post();
  EXPECT_EQ(Stored("400").payee, "SMITH TITLE CO");
}

// The paper carries the number that another workstation has taken: it is not posted under another one.
TEST_F(CheckModesTest, APrintedCheckThatLostItsNumberIsPrintedAnew) {
  OpenOffice();
  Set("txtCheckPayee", "SMITH");
  Set("txtCheckAmount", "10");
  Set("txtCheckFileNumber", "24-0117");
  form_->Click("cmdPrint");
  CheckRecord other;
  other.number = "1";
  other.file_number = "24-0118";
  ASSERT_TRUE(PostCheck(*tables_, Xrefs(), "FNB", other).Done());
  form_->Click("cmdOk");
  const auto question = HasSubstr("the printed paper carries its number.\r\nDestroy the paper.");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question, "Failed to add check number 1\r\nError code = 20"));
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question));
  EXPECT_EQ(Stored("2"), CheckRecord{}) << "not on paper yet";
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "2");
  form_->Click("cmdPrint");
  EXPECT_THAT(printer_.printed.back(), HasSubstr("2 $10.00"));
  Post();
  EXPECT_EQ(Stored("2").payee, "SMITH");
}

TEST_F(CheckModesTest, AnAddressChangedElsewhereIsTheOneThatIsUsed) {
  OpenOffice();
  PayeeBook theirs(office_.session->Company().agent);
  const Payee old{"SMITH TITLE CO", "1 Old Street", "", ""};
  theirs.Keep(old);
  OpenForm();
  theirs.Keep({old.name, "2 New Street", "", ""});
  form_->Click("cmdRolodex");
  EXPECT_THAT(form_->Find("lstPayees")->source->Row(0), ElementsAre("SMITH TITLE CO", "2 New Street", ""));
  theirs.Keep({old.name, "3 Newer Street", "", ""});
  form_->Click("cmdUsePayee");
  EXPECT_EQ(Seen(*form_, "txtCheckAddr1"), "3 Newer Street");
  theirs.Keep({old.name, "4 Newest Street", "", ""});
  Set("txtCheckPayee", "smi");
  form_->Choose("txtCheckPayee", 1);
  EXPECT_EQ(Seen(*form_, "txtCheckAddr1"), "4 Newest Street");
}

TEST_F(CheckModesTest, AnotherPayeeDoesNotKeepTheAddressThatWasLookedUp) {
  OpenOffice();
  PayeeBook book(office_.session->Company().agent);
  book.Keep({"LAKESIDE TITLE", "1 Lake Street", "", ""});
  book.Keep({"LUCAS COUNTY", "2 Court House", "", ""});
  const struct {
    const char *typed, *address, *expected;  // the address is typed over the one looked up, unless null
  } cases[] = {{"Smith", nullptr, ""},
               {"Lucas County", nullptr, "2 Court House"},
               {"Lakeside Title ", nullptr, "1 Lake Street"},
               {"Smith", "3 Own Road", "3 Own Road"}};
  for (const auto& one : cases) {
    OpenForm();
    Set("txtCheckPayee", "lake");
    form_->Choose("txtCheckPayee", 1);
    if (one.address != nullptr) Set("txtCheckAddr1", one.address);
    Set("txtCheckPayee", one.typed);
    form_->Leave();
    EXPECT_EQ(Seen(*form_, "txtCheckAddr1"), one.expected) << one.typed;
  }
}

TEST_F(CheckModesTest, PayeesAreFoundByTheirNamesFirst) {
  OpenOffice();
  PayeeBook book(office_.session->Company().agent);
  const Payee address{"ADAMS", "5 Lake Street", "", ""};
  const Payee within{"GREAT LAKES BANK", "", "", "Toledo"};
  const Payee begins{"LAKESIDE TITLE", "", "", ""};
  for (const Payee& payee : {address, within, begins}) book.Keep(payee);
  EXPECT_THAT(book.Search("lake"), ElementsAre(begins, within, address));
}

TEST_F(CheckModesTest, PayeesAreKeptOnceAndFoundAgain) {
  OpenOffice();
  AgentTable& agents = office_.session->Company().agent;
  const Payee smith{"SMITH TITLE CO", "12 Main Street", "", "Toledo, OH 43604"};
  Set("txtCheckAddr1", smith.address1);
  Set("txtCheckCityState", smith.city_state);
  PostCheckOf("1");
  PostCheckOf("2", "Smith Title Co");
  PostCheckOf("3", "Lucas County");
  EXPECT_EQ(agents.RecordCount(), 2);
  EXPECT_EQ(agents.Load(), AgentRecord()) << "payees are not the agent";
  AgentRecord agent;
  agent.name = "Lakeside Title";
  ASSERT_EQ(agents.Save(agent), 0);
  EXPECT_EQ(agents.Load().name, "Lakeside Title");
  PayeeBook book(agents);
  book.Refresh();
  EXPECT_EQ(*book.Find("smith title co "), smith);
  EXPECT_THAT(book.Search("toledo"), ElementsAre(smith));
  EXPECT_EQ(book.Search("").size(), 2u);

  OpenForm();
  Set("txtCheckPayee", "smi");
  EXPECT_THAT(form_->Find("txtCheckPayee")->rows, ElementsAre("SMITH TITLE CO"));
  form_->Choose("txtCheckPayee", 1);
  EXPECT_EQ(Seen(*form_, "txtCheckAddr1"), "12 Main Street");
  form_->Click("cmdRolodex");
  EXPECT_EQ(form_->Focus()->name, "txtFindPayee");
  Set("txtFindPayee", "county");
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Key("Enter");
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "SMITH TITLE CO");
  form_->Click("cmdUsePayee");
  const char* question = "Replace payee \"SMITH TITLE CO\" with \"Lucas County\" ?";
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question, question));
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "Lucas County");
  EXPECT_EQ(Seen(*form_, "txtCheckAddr1"), "");
  EXPECT_FALSE(form_->Find("lstPayees")->visible);
  Set("txtCheckAddr1", "1 Court House");
  PostCheckOf("4", "Lucas County");
  PayeeBook again(agents);
  again.Refresh();
  EXPECT_EQ(again.Find("Lucas County")->address1, "1 Court House");
  EXPECT_EQ(agents.RecordCount(), 3);
}

// Paper says what the books say: neither what was only typed, nor what another workstation has changed.
TEST_F(CheckModesTest, APostedCheckIsPrintedAsItIsPosted) {
  OpenOffice();
  PostCheckOf("10");
  Set("txtCheckNumber", "10");
  Set("txtCheckAmount", "9999");
  EXPECT_EQ(Refusal("cmdPrint"), "The check has changes that are not posted.  Post it, then print it.");
  Set("txtCheckAmount", "1250");
  Set("txtRemittanceAdvice", "Deed");
  form_->Leave();
  form_->Click("cmdPrint");
  EXPECT_EQ(printer_.printed.size(), 1u);
  CheckRecord voided = Stored("10");
  voided.status = "V";
  ASSERT_EQ(tables_->checks.Update(voided), 0);
  EXPECT_THAT(Refusal("cmdPrint"),
              HasSubstr("Nothing was printed: look at what is shown now.\r\n\r\nStatus: was Outstanding, "
                        "theirs Voided"));
  EXPECT_EQ(printer_.printed.size(), 1u);
}

TEST_F(CheckModesTest, APrintedCheckIsNotForgotten) {
  OpenOffice();
  const char* forgotten = "WARNING - Printed a Check but have NOT posted it.\r\nPost the Check Now?";
  Set("txtCheckFileNumber", "24-0117");
  office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  form_->Click("cmdPrint");
  EXPECT_THAT(printer_.printed, IsEmpty());
  form_->Click("cmdPrint");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Check Amount is Zero...  Print ?", "Check Amount is Zero...  Print ?",
                          "WARNING - Payee name is blank..."));
  Set("txtCheckPayee", "SMITH");
  Set("txtCheckAmount", "1234.56");
  form_->Menu("mnuOptionsUsePrintPreview");
  form_->Key("Ctrl+P");
  EXPECT_EQ(printer_.printed.back(),
            "1 $1,234.56 **One Thousand Two Hundred Thirty Four dollars & Fifty Six cents ** preview");
  office_.boxes.answers = {BoxAnswer::kYes};
  EXPECT_TRUE(form_->Close());
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(forgotten));
  EXPECT_EQ(Stored("1").payee, "SMITH");
  printer_.why_not = "MICR Fonts not installed - Printing Checks disabled...";
  OpenForm();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(printer_.why_not));
  EXPECT_FALSE(form_->Find("cmdPrint")->enabled);
}

TEST_F(CheckModesTest, UnusedVouchersOfTheFileAreOfferedInTurn) {
  OpenOffice();
  for (const char* number : {"31", "32", "33"}) AddVoucher(number);
  PostCheckOf("1", "SMITH TITLE CO", "1250", "32");
  form_->Enter("txtCheckVoucherNumber");
  form_->Key("F4");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Enter the file number first")));
  Set("txtCheckFileNumber", "24-0117");
  form_->Enter("txtCheckVoucherNumber");
  for (const char* offered : {"31", "33", "31"}) {
    form_->Key("F4");
    EXPECT_EQ(Seen(*form_, "txtCheckVoucherNumber"), offered);
  }
  EXPECT_EQ(Seen(*form_, "txtCheckAmount"), "1,250.00");
}

}  // namespace
}  // namespace tallwick
