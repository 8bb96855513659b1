// Choosing a bank, advancing its date, and the main window's view of it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/clsSecurity.h"
#include "shell/date_advance.h"
#include "shell/main_window.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using testing::Office;
using testing::Seen;

class BankSelectTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open([](BankRecord& bank) {
      bank.address1 = "12 Main Street";
      bank.city_state = "Lakeside";
    }));
    ASSERT_TRUE(office_.AddBank("SAV", "Savings", [](BankRecord& bank) { bank.accounting = {3, 15, 2024}; }));
    ASSERT_TRUE(office_.AddBank("B", "Savings"));
    office_.session->SetBank("", "");
  }

  std::vector<std::string> Lines() {
    FrmBankSelect form(*office_.session);
    form.Opened();
    return form.Find("lstBankNames")->rows;
  }

  Office office_;
};

TEST_F(BankSelectTest, OffersActiveBanksOfTheUserInNameOrder) {
  EXPECT_THAT(Lines(), ElementsAre("First National Trust   (FNB)", "Savings   (B)", "Savings   (SAV)"));
  office_.WriteFile("Inactive Banks.dat",
                    "\xEF\xBB\xBF"
                    "FNB\r\nSAV     \r\n");
  EXPECT_THAT(Lines(), ElementsAre("Savings   (B)")) << "a mark, and blanks as the table pads codes";
  office_.WriteFile("Inactive Banks.dat", "\r\nB\r\nfnb\r\n SAV\r\n");
  EXPECT_THAT(Lines(),
              ElementsAre("First National Trust   (FNB)", "Savings   (SAV)"));  // every character counts
  office_.suite.security = true;
  office_.session->ReloadUser();
  office_.session->User().sBankCodes = {"SAV", "B"};
  EXPECT_THAT(Lines(), ElementsAre("Savings   (SAV)"));
  EXPECT_FALSE(SelectBank(*office_.session, "B"));
  EXPECT_FALSE(SelectBank(*office_.session, "FNB"));
  EXPECT_EQ(office_.session->BankCode(), "");
  EXPECT_TRUE(SelectBank(*office_.session, " SAV"));
  office_.TakeTexts();
  office_.session->User().sBankCodes = {};
  EXPECT_THAT(Lines(), ElementsAre());
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("\rNo banks have been created for\r\"Lakeside Title\""));
  EXPECT_EQ(office_.session->BankCode(), "");
}

TEST_F(BankSelectTest, ShowsAndSelectsTheHighlightedBank) {
  office_.session->SetBank("SAV", "Savings");
  FrmBankSelect form(*office_.session);
  form.Opened();
  EXPECT_EQ(form.Find("lstBankNames")->selected, 3);
  form.Choose("lstBankNames", 1);
  EXPECT_EQ(Seen(form, "lblBankName"), "12 Main Street\rLakeside\rAccount No. 00123456");
  EXPECT_EQ(Seen(form, "lblAcctStmtDates"),
            "Last Reconciliation was January 2024\rCurrent Accounting Period is March 2024");
  ASSERT_TRUE(office_.session->Company().banks.SeekCode("SAV"));
  ASSERT_EQ(office_.session->Company().banks.Delete(), 0);
  form.Choose("lstBankNames", 3);
  EXPECT_EQ(office_.boxes.LastText(), "\"SAV\" is no longer a valid Bank ID Code...");
  EXPECT_FALSE(form.Find("cmdOk")->enabled);
  form.Choose("lstBankNames", 1);
  form.Click("cmdOk");
  EXPECT_FALSE(form.IsOpen());
  EXPECT_EQ(office_.session->BankName(), "First National Trust");
}

TEST_F(BankSelectTest, CancelKeepsThePreviousBank) {
  office_.session->SetBank("SAV", "Savings");
  FrmBankSelect form(*office_.session);
  form.Opened();
  form.Choose("lstBankNames", 1);
  form.Click("cmdCancel");
  EXPECT_FALSE(form.IsOpen());
  EXPECT_EQ(office_.session->BankCode(), "SAV");
}

TEST_F(BankSelectTest, AsksOnceToAdvanceTheDateAndWritesItOnYes) {
  BankTable& banks = office_.session->Company().banks;
  ASSERT_TRUE(banks.SeekCode("SAV"));
  BankRecord bank = banks.Read();
  bank.auto_date = 1;
  bank.date_type = 1;
  ASSERT_EQ(banks.Update(bank), 0);
  const std::string question = "Savings\rAdvance Accounting Date from March 15, 2024 to March 18, 2024 ?";
  ASSERT_TRUE(SelectBank(*office_.session, "SAV"));  // today is the accounting date: nothing to ask
  EXPECT_THAT(office_.TakeTexts(), ElementsAre());
  office_.clock.now.date = {2024, 3, 18};
  ASSERT_TRUE(SelectBank(*office_.session, "SAV"));
  EXPECT_EQ(office_.boxes.shown.at(0).title, "Automatic Date Advance");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question));
  ASSERT_TRUE(SelectBank(*office_.session, "SAV"));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre());
  EXPECT_EQ(banks.Find("SAV")->accounting, (Period{3, 15, 2024}));

  office_.clock.now.date = {2024, 3, 19};
  office_.boxes.answers = {BoxAnswer::kYes};
  ASSERT_TRUE(SelectBank(*office_.session, "SAV"));
  EXPECT_EQ(banks.Find("SAV")->accounting, (Period{3, 19, 2024}));

  bank.date_type = 0;  // month and year: the day falls away
  EXPECT_EQ(AdvanceQuestion(bank, {2024, 3, 31}), "");
  bank.accounting = {3, 0, 2024};
  EXPECT_EQ(AdvanceQuestion(bank, {2024, 4, 1}),
            "Savings\rAdvance Accounting Date from March 2024 to April 2024 ?");
}

TEST_F(BankSelectTest, MainWindowFollowsTheBankAndTheRights) {
  FrmMainEscrowAccounting form(*office_.session, office_);
  form.Opened();
  EXPECT_EQ(form.Caption(), "Tallwick Escrow Accounting - Lakeside Title (12)");
  EXPECT_EQ(Seen(form, "Version"), "Version: 1.00.0001");
  EXPECT_FALSE(form.Find("mnuEditChecksPost")->enabled);
  EXPECT_FALSE(form.Find("mnuFileClose")->enabled);
  ASSERT_TRUE(SelectBank(*office_.session, "FNB"));
  EXPECT_EQ(Seen(form, "BankName"), "First National Trust");
  form.Menu("mnuEditChecksPost");
  form.Menu("mnuFileOpen");
  EXPECT_THAT(office_.opened, ElementsAre("frmEditChecksPost Posting", "frmBankSelect "));

  office_.suite.security = true;  // nobody is logged in
  office_.session->ReloadUser();
  EXPECT_FALSE(form.Find("mnuEditChecksPost")->enabled);
  form.Menu("mnuFileClose");
  EXPECT_EQ(Seen(form, "BankName"), "");
  EXPECT_EQ(Seen(form, "lblAcctPeriod"), "");
}

TEST_F(BankSelectTest, MainWindowAddsUpTheBank) {
  BankTable& banks = office_.session->Company().banks;
  ASSERT_TRUE(banks.SeekCode("FNB"));
  BankRecord bank = banks.Read();
  bank.beginning_balance = Currency::FromCents(1'000'00);
  ASSERT_EQ(banks.Update(bank), 0);
  BankTables tables(office_.session->Home());
  ASSERT_TRUE(tables.Open("FNB"));
  const auto post = [&](const char* number, std::int64_t cents, Period accounting, const char* status,
                        Period statement) {
    CheckRecord check;
    check.number = number;
    check.file_number = "24-0117";
    check.payee = "SMITH";
    check.dated = {2024, 3, 1};
    check.amount = Currency::FromCents(cents);
    check.accounting = accounting;
    check.status = status;
    check.statement = statement;
    ASSERT_EQ(tables.checks.Add(check), 0);
  };
  post("1", 1'00, {1, 0, 2024}, "O", {});            // in the reconciled balance already
  post("2", 2'00, {1, 0, 2024}, "V", {1, 0, 2024});  // so is its return
  post("3", 4'00, {1, 0, 2024}, "V", {2, 0, 2024});  // returned since
  post("4", 8'00, {2, 0, 2024}, "H", {});
  post("5", 16'00, {2, 0, 2024}, "C", {2, 0, 2024});
  post("6", 32'00, {3, 0, 2024}, "S", {3, 0, 2024});  // written and stopped since
  post("7", 64'00, {3, 0, 2024}, "O", {});
  ASSERT_TRUE(tables.checks.SeekNumber("7"));
  ASSERT_EQ(tables.checks.Delete(), 0);
  DepositRecord deposit;
  deposit.dated = "20240310";
  deposit.sequence = "1";
  deposit.accounting = {3, 0, 2024};
  deposit.item_count = 2;
  deposit.items[0] = {"1", "24-0117", "BUYER", Currency::FromCents(100'00), {}, "O"};
  deposit.items[1] = {"2", "24-0118", "LENDER", Currency::FromCents(200'00), {3, 0, 2024}, "C"};
  ASSERT_EQ(tables.deposits.Add(deposit), 0);
  WireRecord wire;
  wire.number = "W1";
  wire.accounting = {3, 0, 2024};
  wire.amount = Currency::FromCents(50'00);
  wire.status = "C";
  ASSERT_EQ(tables.wires.Add(wire), 0);

  FrmMainEscrowAccounting form(*office_.session, office_);
  ASSERT_TRUE(SelectBank(*office_.session, "FNB"));
  EXPECT_EQ(Seen(form, "lblBookBalance"), "1,230.00");  // 1000 + 4 - 8 - 16 + 300 - 50
  EXPECT_EQ(Seen(form, "lblOutstandingChecks"), "9.00 (2)");
  EXPECT_EQ(Seen(form, "lblOutstandingDeposits"), "100.00 (1)");
  RowSource& latest = *form.Find("grdLatestPostings")->source;
  ASSERT_EQ(latest.RowCount(), 8u);
  EXPECT_THAT(latest.Row(0),
              ElementsAre("03/10/2024", "Deposit", "1", "2 files", "BUYER", "300.00", "Partly Cleared"));
  EXPECT_THAT(latest.Row(1),
              ElementsAre("03/01/2024", "Check", "6", "24-0117", "SMITH", "32.00", "Stopped Payment "));
  EXPECT_EQ(latest.RowStyle(1), "stopped");
}

}  // namespace
}  // namespace tallwick
