// Keeping bank records: what the audit trail says of a change, and who may make it.

#include "maintenance/bank_maintenance.h"

#include <gtest/gtest.h>

#include "shell/clsSecurity.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using testing::Office;

class BankMaintenanceTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(office_.Open()); }

  std::string Change(std::vector<FieldAssignment> values, std::string_view code = "FNB") {
    return ChangeBankAccount(*office_.session, code, values);
  }
  // What the trail has got since the last call.
  std::string NewLines(const std::string& code = "FNB") {
    const std::string log = office_.ReadFile("Logs\\" + code + "\\Audit_Trail.log");
    std::string fresh = log.substr(read_);
    read_ = log.size();
    return fresh;
  }
  void AddUser(const std::string& login, const std::string& group, std::vector<std::string> banks,
               const std::string& rights = "") {
    clsSecurity user;
    user.osLogin = login;
    user.sGroup = group;
    user.sBankCodes = std::move(banks);
    user.sSecurity = rights;
    ASSERT_EQ(user.SaveUserSecurity(office_.session->Home(), office_.clock.Now()), 0);
  }
  void Login(const std::string& login) {
    office_.suite.security = true;
    office_.suite.login = login;
    office_.session->ReloadUser();
  }

  Office office_;
  std::size_t read_ = 0;
};

const std::string kHeader =
    "[DATE: Mar 15, 2024 @ 09:30:00 AM][TX: Account Edit][REFERENCE: FNB][LOGIN: jdoe][COMPUTER: "
    "FRONTDESK2]\r\n";

TEST_F(BankMaintenanceTest, ABankWithoutItsTablesIsAddedAllTheSame) {
  SystemFileSystem().CreateFolder(office_.folder.Held("ESCROW_WIRES_SND.CDX\\"));
  EXPECT_EQ(AddBankAccount(*office_.session, "SND", {}).find("The bank was added, but its tables"), 0U);
  EXPECT_TRUE(office_.session->Company().banks.SeekCode("SND"));
  SystemFileSystem().RemoveFolder(office_.folder.Held("ESCROW_WIRES_SND.CDX\\"));
  EXPECT_TRUE(SelectBank(*office_.session, "SND"));
}

// Whoever switches the trail off or on must stand in it.
TEST_F(BankMaintenanceTest, ChangesStandInTheTrailAndSoDoesItsSwitch) {
  ASSERT_EQ(Change({{"BANKNAME", "Erie Trust"}, {"BANKACCTMO", "4"}, {"PPUSEPP", "T"}}, "fnb"), "");
  EXPECT_EQ(NewLines(), kHeader +
                            "[EDIT] txtBANKNAME was: First National Trust now: Erie Trust\r\n"
                            "[EDIT] txtBANKACCTMO was: 3 now: 4\r\n"
                            "[EDIT] chkPPUSEPP was: Unchecked now: Checked\r\n");
  ASSERT_EQ(Change({{"BANKNAME", "Erie Trust"}}), "");
  EXPECT_EQ(NewLines(), "") << "nothing was changed";
  ASSERT_NE(Change({{"BANKNAME", "Kept"}, {"BANKRECOMO", "13"}}), "");
  EXPECT_EQ(NewLines(), "") << "the change was refused";
  ASSERT_EQ(Change({{"AUDITTRAIL", "F"}}), "");
  EXPECT_EQ(NewLines(),
            std::string("\r\n") + kHeader + "[EDIT] chkGenAuditTrail was: Checked now: Unchecked\r\n");
  ASSERT_EQ(Change({{"BANKNAME", "Unseen"}}), "");
  EXPECT_EQ(NewLines(), "") << "the trail is off";
  ASSERT_EQ(Change({{"AUDITTRAIL", "T"}}), "");
  EXPECT_EQ(NewLines(),
            std::string("\r\n") + kHeader + "[EDIT] chkGenAuditTrail was: Unchecked now: Checked\r\n");
}

// What a restore has left of a bank must not become another one's money without a word.
TEST_F(BankMaintenanceTest, ABankFindsTransactionsOnlyWhenThatIsWanted) {
  {
    BankTables left(office_.session->Home());
    ASSERT_TRUE(left.Open("NEW"));
    ASSERT_EQ(AddBankAccount(*office_.session, "EMPTY", {}), "");
    CheckRecord check;
    check.number = "100";
    ASSERT_EQ(left.checks.Add(check), 0);
  }
  office_.boxes.shown.clear();
  for (const BoxAnswer answer : {BoxAnswer::kNo, BoxAnswer::kYes}) {
    office_.boxes.answers = {answer};
    EXPECT_EQ(AddBankAccount(*office_.session, "new", {}).empty(), answer == BoxAnswer::kYes);
    EXPECT_NE(office_.boxes.LastText().find("ESCROW_CHECKS_NEW (1 record)"), std::string::npos);
    EXPECT_EQ(office_.boxes.shown.back().preset, BoxAnswer::kNo);
    EXPECT_EQ(office_.session->Company().banks.SeekCode("NEW"), answer == BoxAnswer::kYes);
  }
}

// Open items in the old form would be in no period any more, and a reconciled month would not close its days.
TEST_F(BankMaintenanceTest, TheFormOfPeriodsStaysWhileItemsAreOpen) {
  BankTables tables(office_.session->Home());
  ASSERT_TRUE(tables.Open("FNB"));
  ASSERT_EQ(Change({{"BANKACCTDA", "15"}}), "");
  ASSERT_EQ(Change({{"BANKDTETYP", "1"}}), "");
  ASSERT_EQ(Change({{"BANKDTETYP", "0"}, {"BANKACCTDA", "0"}}), "") << "without items as one likes";
  CheckRecord check;
  check.number = "10";
  check.accounting = {3, 0, 2024};
  check.status = "C";
  check.statement = {4, 0, 2024};
  ASSERT_EQ(tables.checks.Add(check), 0);
  DepositRecord deposit;
  deposit.accounting = {2, 0, 2024};
  deposit.items[0] = {"1", "24-0117", "SMITH", Currency::FromCents(10'00), {5, 0, 2024}, "C"};
  ASSERT_EQ(tables.deposits.Add(deposit), 0);
  tables.Close();
  const struct {
    const char* reconciled;  // month of 2024
    std::vector<FieldAssignment> change;
    const char* refusal;
  } cases[] = {
      {"2", {{"BANKACCTDA", "15"}, {"BANKDTETYP", "1"}}, "record 1 of ESCROW_CHECKS_FNB"},
      {"2", {{"BANKACCTDA", "15"}}, "record 1 of ESCROW_CHECKS_FNB"},
      {"2", {{"BANKDTETYP", "1"}}, ""},
      {"2", {{"BANKDTETYP", "0"}}, ""},
      {"3", {{"BANKACCTDA", "15"}}, "record 1 of ESCROW_CHECKS_FNB"},
      {"4", {{"BANKACCTDA", "15"}}, "record 1 of ESCROW_DEPOSITS_FNB"},
      {"2", {{"BANKACCTMO", "4"}}, ""},
      {"5", {{"BANKACCTDA", "15"}}, "BANKRECODA is 0"},
      {"5", {{"BANKACCTDA", "15"}, {"BANKRECODA", "31"}}, ""},
  };
  for (const auto& one : cases) {
    ASSERT_EQ(Change({{"BANKRECOMO", one.reconciled}}), "");
    const std::optional<BankRecord> before = office_.session->Company().banks.Find("FNB");
    const std::string told = Change(one.change);
    const std::string wanted = one.refusal;
    EXPECT_EQ(told.empty(), wanted.empty()) << told;
    EXPECT_NE(told.find(wanted), std::string::npos) << told;
    EXPECT_EQ(before == office_.session->Company().banks.Find("FNB"), !wanted.empty());
  }
  // A form that was changed by mistake can be put right: what is open has the form to come.
  ASSERT_EQ(Change({{"BANKACCTDA", "0"}}), "");
  ASSERT_TRUE(tables.Open("FNB"));
  check.number = "11";
  check.accounting = {6, 10, 2024};
  check.statement = {};
  ASSERT_EQ(tables.checks.Add(check), 0);
  tables.Close();
  EXPECT_EQ(Change({{"BANKACCTDA", "30"}}), "");
  EXPECT_NE(Change({{"BANKACCTDA", "0"}}), "");
}

TEST_F(BankMaintenanceTest, AsksForTheRightAndTheBank) {
  ASSERT_TRUE(office_.AddBank("SAV", "Savings"));
  AddUser("keeper", "User", {"SAV"});
  AddUser("clerk", "User", {"SAV"}, "0000000000000000000001");
  AddUser("boss", "Administrator", {});
  const struct {
    const char* login;
    const char* code;
    bool reads;
    const char* refusal;  // of a change; "" where it is made
  } cases[] = {
      {"keeper", "sav", true, ""},
      {"keeper", "FNB", false, "There is no bank \"FNB\" that this user may work with"},
      {"keeper", "XYZ", false, "There is no bank \"XYZ\" that this user may work with"},
      {"clerk", "SAV", true, "You do not have the right"},
      {"clerk", "FNB", false, "You do not have the right"},
      {"boss", "FNB", true, ""},
      {"stranger", "SAV", false, "You do not have the right"},
  };
  for (const auto& one : cases) {
    Login(one.login);
    EXPECT_EQ(SeekBankAccount(*office_.session, one.code), one.reads) << one.login << one.code;
    const std::string told = Change({{"BANKPHONE", std::string("555 ") + one.login}}, one.code);
    const std::string wanted = one.refusal;
    EXPECT_TRUE(wanted.empty() ? told.empty() : told.starts_with(wanted)) << one.login << ": " << told;
    const std::optional<BankRecord> bank = office_.session->Company().banks.Find(one.code);
    EXPECT_EQ(bank && bank->phone == std::string("555 ") + one.login, wanted.empty()) << one.login;
  }
}

}  // namespace
}  // namespace tallwick
