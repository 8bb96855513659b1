// The main window: which commands are offered, the transactions switch, the figures and the file box.

#include "shell/main_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "shell/clsBranch.h"
#include "shell/clsSecurity.h"
#include "shell/rights.h"
#include "shell/transactions_switch.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using testing::Office;
using testing::Seen;

class MainWindowTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(office_.Open()); }
  bool Offers(Form& form, const char* command) { return form.Find(command)->enabled; }

  Office office_;
};

TEST_F(MainWindowTest, EachRightOpensItsCommands) {
  struct Case {
    int right;
    std::vector<const char*> commands;
  };
  const Case cases[] = {
      {kRightPostChecks, {"mnuEditChecksPost", "mnuEditPostChecks", "mnuEditVouchers"}},
      {kRightClearChecks, {"mnuEditChecksClear", "mnuEditClearChecks"}},
      {kRightVoidChecks, {"mnuEditVoidChecks", "mnuEditStopPaymentChecks", "mnuEditChecksVoid"}},
      {kRightPostDeposits, {"mnuEditPostDeposits"}},
      {kRightClearDeposits, {"mnuEditClearDeposits"}},
      {kRightWires, {"mnuEditWireTransfers"}},
      {kRightReconcile, {"mnuEditReconcileAccount"}},
      {kRightPurgeFiles, {"mnuFilePurge"}},
      {kRightEscrowOffice, {"mnuFilePack", "mnuFileLockTransactions"}}};
  FrmMainEscrowAccounting form(*office_.session, office_);
  form.Opened();
  EXPECT_TRUE(Offers(form, "mnuToolsUsers"));
  office_.suite.security = true;
  office_.session->ReloadUser();
  clsSecurity& user = office_.session->User();
  user.bLoggedIn = true;
  for (const Case& one : cases) {
    user.sSecurity = std::string(62, '1');
    user.sSecurity[static_cast<std::size_t>(one.right) - 1] = '0';
    office_.session->NotifyChanged(SessionChange::kUser);
    for (const Case& other : cases) {
      for (const char* command : other.commands) {
        EXPECT_EQ(Offers(form, command), one.right == other.right) << command << " with right " << one.right;
      }
    }
  }
  EXPECT_FALSE(Offers(form, "mnuToolsUsers"));
  user.sGroup = "Administrator";
  office_.session->NotifyChanged(SessionChange::kUser);
  EXPECT_TRUE(Offers(form, "mnuToolsUsers"));
}

TEST_F(MainWindowTest, ACommandWithoutItsScreenIsNotOffered) {
  office_.missing_screen = "frmCopyDatabases";
  FrmMainEscrowAccounting form(*office_.session, office_);
  form.Opened();
  EXPECT_FALSE(Offers(form, "mnuFileCopyDatabases"));
  EXPECT_TRUE(Offers(form, "mnuFileRestoreDatabases"));
  form.Menu("mnuFilePack");
  form.Menu("mnuEditChecksStopPayment");
  form.Menu("mnuFileCopyDatabases");
  EXPECT_THAT(office_.opened, ElementsAre("frmMaintenance Pack Databases", "frmEditChecksPost Stop Payment"));
}

TEST_F(MainWindowTest, TheSwitchLocksTransactionsForEverybody) {
  BankTable& banks = office_.session->Company().banks;
  ASSERT_TRUE(banks.SeekCode("FNB"));
  BankRecord bank = banks.Read();
  bank.auto_date = 1;
  ASSERT_EQ(banks.Update(bank), 0);
  office_.clock.now.date = {2024, 4, 2};

  FrmMainEscrowAccounting other(*office_.session, office_);  // as on another workstation
  EXPECT_TRUE(TransactionsOpen(*office_.session)) << "nobody has locked yet";
  ASSERT_TRUE(SystemFileSystem().CreateFolder(office_.folder.Held(kSwitchFile)));
  EXPECT_FALSE(TransactionsOpen(*office_.session)) << "a switch that cannot be read";
  ASSERT_TRUE(SystemFileSystem().RemoveFolder(office_.folder.Held(kSwitchFile)));
  for (const char* text : {"F", "", "t", "no"}) {
    office_.WriteFile(kSwitchFile, text);
    FrmMainEscrowAccounting form(*office_.session, office_);
    form.Opened();
    EXPECT_EQ(Seen(form, "BankName"), "Transactions Locked...") << text;
    for (const MainCommand& command : MainCommands()) {
      if (command.transactions) {
        EXPECT_FALSE(form.Find(command.control)->enabled) << command.control;
      }
    }
    EXPECT_TRUE(Offers(form, "mnuViewRefresh"));
    EXPECT_EQ(form.Find("mnuFileLockTransactions")->value, 1);
    EXPECT_THAT(office_.TakeTexts(), ElementsAre()) << "the date is not advanced";
  }
  FrmMainEscrowAccounting form(*office_.session, office_);
  form.Opened();
  form.Menu("mnuFileLockTransactions");
  EXPECT_EQ(Seen(form, "BankName"), "First National Trust");
  EXPECT_TRUE(Offers(form, "mnuEditChecksPost"));
  EXPECT_EQ(Seen(other, "BankName"), "First National Trust");
  // Locked elsewhere since the commands were shown: the command is refused all the same.
  office_.WriteFile(kSwitchFile, "F");
  form.Menu("mnuEditChecksPost");
  EXPECT_THAT(office_.opened, ElementsAre());
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Transactions Locked..."));
  EXPECT_FALSE(Offers(form, "mnuEditChecksPost"));
}

TEST_F(MainWindowTest, ALockOfAnEarlierBuildHoldsUntilItIsLifted) {
  office_.WriteFile("Transactions.dat", "F");
  FrmMainEscrowAccounting form(*office_.session, office_);
  form.Opened();
  EXPECT_EQ(Seen(form, "BankName"), "Transactions Locked...");
  form.Menu("mnuFileLockTransactions");
  EXPECT_EQ(Seen(form, "BankName"), "First National Trust");
  office_.WriteFile("Transactions.dat", "F");  // brought back by whatever
  EXPECT_TRUE(TransactionsOpen(*office_.session));
}

// Posts, changes and deletions at random by this workstation and another: the figures that followed them are
// those that a fresh pass over the tables gives.
TEST_F(MainWindowTest, FiguresFollowEveryChange) {
  StartUpOutcome second = office_.Start();
  ASSERT_TRUE(second.session);
  BankTables ours(office_.session->Home());
  BankTables theirs(second.session->Home());
  ASSERT_TRUE(ours.Open("FNB") && theirs.Open("FNB"));
  BankFigures figures(*office_.session);
  BankFigures sliced(*office_.session);  // reads on for a moment after every step, and begins anew at times
  std::mt19937 random(7);
  const auto draw = [&random](int below) {
    return static_cast<int>(random() % static_cast<unsigned>(below));
  };
  int number = 0;
  int partial = 0;
  for (int step = 0; step < 300; ++step) {
    CheckRecord check;
    check.number = std::to_string(++number);
    check.file_number = "24-" + std::to_string(draw(9));
    check.amount = Currency::FromCents(draw(10'000));
    check.accounting = {1 + draw(4), 0, 2024};
    check.status = std::string(1, "OHCVS"[draw(5)]);
    switch (draw(5)) {
      case 0:
        ASSERT_EQ(theirs.checks.Add(check), 0);
        break;
      case 1:
      case 2:
        ASSERT_EQ(ours.checks.Add(check), 0);
        break;
      case 3: {
        DepositRecord deposit;
        deposit.dated = "20240310";
        deposit.sequence = std::to_string(number % 100);
        deposit.accounting = check.accounting;
        deposit.items[0] = {"1", check.file_number, "BUYER", check.amount, {}, "O"};
        deposit.items[1] = {"2", "24-" + std::to_string(draw(9)), "LENDER", check.amount, {}, "C"};
        if (ours.deposits.SeekDeposit(deposit.dated, deposit.sequence)) break;
        ASSERT_EQ(ours.deposits.Add(deposit), 0);
        break;
      }
      default:
        if (!ours.checks.GoTo(1 + draw(number)) || ours.checks.Data().IsRecordDeleted(ours.checks.Handle()))
          break;
        check.number = ours.checks.Read().number;
        ASSERT_EQ(draw(4) == 0 ? ours.checks.Delete() : ours.checks.Update(check), 0);
    }
    if (step % 50 == 44) sliced.Forget();
    BankOverview in_part = sliced.Read(std::chrono::milliseconds(0));
    partial += in_part.percent_read < 100 ? 1 : 0;
    if (step % 10 != 9) continue;
    while (in_part.percent_read < 100) in_part = sliced.Read(std::chrono::milliseconds(0));
    const BankOverview followed = figures.Read();
    BankFigures fresh(*office_.session);
    const BankOverview read = fresh.Read();
    ASSERT_EQ(followed.book_balance, read.book_balance) << step;
    ASSERT_EQ(followed.outstanding_checks.sum, read.outstanding_checks.sum) << step;
    ASSERT_EQ(followed.outstanding_checks.count, read.outstanding_checks.count) << step;
    ASSERT_EQ(followed.outstanding_deposits.count, read.outstanding_deposits.count) << step;
    ASSERT_EQ(followed.files_overdrawn, read.files_overdrawn) << step;
    ASSERT_EQ(in_part.book_balance, read.book_balance) << step;
    ASSERT_EQ(in_part.outstanding_checks.count, read.outstanding_checks.count) << step;
    ASSERT_EQ(in_part.files_overdrawn, read.files_overdrawn) << step;
  }
  EXPECT_GT(partial, 5);
}

// Maintenance closes the company's tables while it has them for itself.
TEST_F(MainWindowTest, FiguresStayWhileTheTablesAreAway) {
  FrmMainEscrowAccounting form(*office_.session, office_);
  form.Opened();
  const std::string balance = Seen(form, "lblBookBalance");
  ASSERT_NE(balance, "");
  office_.session->Company().banks.Close();
  office_.session->NotifyChanged(SessionChange::kPosted);
  form.Key("F5");
  EXPECT_FALSE(form.WorkOn(std::chrono::milliseconds(1)));
  EXPECT_EQ(Seen(form, "lblBankName"), "First National Trust");
  EXPECT_EQ(Seen(form, "lblBookBalance"), balance);
}

TEST_F(MainWindowTest, FindsAFileAndRemembersIt) {
  office_.suite.branch = "Main";
  ASSERT_EQ(office_.session->Company().xrefs.Add(CheckXref("24-0117", "FNB", "10452")), 0);
  FrmMainEscrowAccounting form(*office_.session, office_);
  form.Opened();
  form.Change("txtFindFile", " 24-0118");
  form.Click("cmdFindFile");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("24-0118 does NOT have any transactions posted."));
  form.Change("txtFindFile", "24-0117");
  form.Key("Enter");
  EXPECT_THAT(office_.opened, ElementsAre("frmViewFileLedgers 24-0117"));
  EXPECT_THAT(form.Find("txtFindFile")->rows, ElementsAre("24-0117"));
  EXPECT_EQ(BranchFile(SystemFileSystem(), office_.folder.Held()).Load("Main").Files[1], "24-0117");
  office_.missing_screen = "frmViewFileLedgers";
  form.Click("cmdFindFile");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("24-0117 has 1 check, 0 deposit items, 0 wires and 0 vouchers in 1 bank account."));
}

}  // namespace
}  // namespace tallwick
