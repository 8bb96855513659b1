// Start-up: every way in which it ends, and what stands when it succeeds.

#include "shell/start_up.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "shell/clsSecurity.h"
#include "shell/rights.h"
#include "tables/users_table.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::Office;
using ::testing::StartsWith;

TEST(StartUpTest, WithoutSuiteNothingIsOpened) {
  Office office;
  const StartUpOutcome outcome = StartUp({office.boxes, SystemFileSystem(), office.clock, office.workstation},
                                         [] { return std::unique_ptr<Suite>(); });
  EXPECT_EQ(outcome.result, StartUpResult::kNoSuite);
  EXPECT_EQ(outcome.session, nullptr);
  ASSERT_EQ(office.boxes.shown.size(), 1u);
  EXPECT_EQ(office.boxes.shown[0].icon, BoxIcon::kCritical);
  EXPECT_THAT(office.boxes.shown[0].text, HasSubstr("Tallwick Escrow Accounting"));
}

TEST(StartUpTest, DataPathMustExist) {
  Office office;
  const std::string missing = office.folder.Held("gone");
  for (const std::string& path : {missing, missing + "\\", std::string()}) {
    office.suite.data_path = path;
    office.boxes.shown.clear();
    EXPECT_EQ(office.Start().result, StartUpResult::kNoDataPath) << path;
    const std::string shown = path.empty() ? "" : office.folder.Platform("gone");
    ASSERT_EQ(office.boxes.shown.size(), 1u);
    EXPECT_THAT(office.boxes.LastText(), StartsWith("Company Data Path error: "));
    EXPECT_THAT(office.boxes.LastText(), HasSubstr("\r(" + shown));
  }
}

TEST(StartUpTest, MakesCompanyTablesOnceAndRegisters) {
  Office office;
  StartUpOutcome first = office.Start();
  ASSERT_EQ(first.result, StartUpResult::kStarted);
  EXPECT_THAT(first.made_tables, ElementsAre("ESCROW_BANKS", "ESCROW_XRFS", "ESCROW_NOTES", "ESCROW_AGENT"));
  EXPECT_EQ(office.suite.registered, "Tallwick Escrow Accounting 4711");
  StartUpOutcome second = office.Start();  // a second workstation
  ASSERT_EQ(second.result, StartUpResult::kStarted);
  EXPECT_TRUE(second.made_tables.empty());
  EXPECT_TRUE(office.boxes.shown.empty());
}

TEST(StartUpTest, TurnedAwayWhileAnotherHoldsTheTables) {
  Office office;
  ASSERT_TRUE(office.Open());
  CompanyTables& company = office.session->Company();
  company.xrefs.Close();
  ASSERT_GT(company.xrefs.OpenExclusive(), 0);
  EXPECT_EQ(office.Start().result, StartUpResult::kExclusive);
  EXPECT_THAT(office.TakeTexts(),
              ElementsAre("Escrow Accounting is in Exclusive Access Mode - Try again later..."));
}

TEST(StartUpTest, MissingBankTableIsMadeWithANote) {
  Office office;
  ASSERT_TRUE(office.Open());
  for (const char* extension : {".DBF", ".CDX"}) {
    SystemFileSystem().Remove(office.folder.Held(std::string("ESCROW_WIRES_FNB") + extension));
  }
  BankTables tables(office.session->Home());
  EXPECT_TRUE(tables.Open("FNB"));
  EXPECT_EQ(office.ReadFile("Logs\\Tables.log"),
            "2024-03-15 09:30:00 FRONTDESK2: ESCROW_WIRES_FNB was missing and has been made, empty.\r\n");
}

// An empty table in the place of a lost one would hide money.
TEST(StartUpTest, LostTableIsMadeOnlyWhenWanted) {
  const struct {
    std::string table;
    std::string also;  // a file that speaks for it, made by the test
    std::string why;   // "" for a table that may be made
  } cases[] = {{"ESCROW_BANKS", "", "the folder holds tables of bank accounts"},
               {"ESCROW_XRFS", "", "the folder holds tables of bank accounts"},
               {"ESCROW_CHECKS_FNB", "", "ESCROW_XRFS names transactions of it"},
               {"ESCROW_NOTES", "DBFCOPYS\\ESCROW_NOTES.DBF", "the last copy holds it"},
               {"ESCROW_NOTES", "ESCROW_NOTES.FPT", "its memo file is there"},
               {"ESCROW_WIRES_FNB", "Escrow_Control.txt", "Escrow_Control.txt lists it"},
               {"ESCROW_VOUCHERS_FNB", "", ""},
               {"ESCROW_AGENT", "", ""}};
  for (const auto& one : cases) {
    Office office;
    ASSERT_TRUE(office.Open());
    ASSERT_TRUE(BankTables(office.session->Home()).Open("FNB"));
    ASSERT_EQ(office.session->Company().xrefs.Add(CheckXref("24-1", "FNB", "101")), 0);
    office.session.reset();
    SystemFileSystem().CreateFolder(office.folder.Held("DBFCOPYS"));
    if (!one.also.empty())
      office.WriteFile(one.also, "Version=1\r\n" + one.table + "=1\r\n" + std::string(600, ' '));
    SystemFileSystem().Remove(office.folder.Held(one.table + ".DBF"));
    for (const BoxAnswer answer : {BoxAnswer::kNo, BoxAnswer::kYes}) {
      office.boxes.shown.clear();
      office.boxes.answers = {answer};
      const StartUpOutcome outcome = office.Start();
      const bool opens = outcome.session && BankTables(outcome.session->Home()).Open("FNB");
      EXPECT_EQ(opens, one.why.empty() || answer == BoxAnswer::kYes) << one.table;
      if (answer == BoxAnswer::kYes && one.why.empty()) continue;  // the first start has made it
      ASSERT_EQ(office.boxes.shown.size(), one.why.empty() ? 0u : 1u) << one.table;
      if (one.why.empty()) continue;
      EXPECT_THAT(office.boxes.LastText(), HasSubstr("it was there: " + one.why));
    }
    EXPECT_EQ(office.ReadFile("ESCROW_NOTES.LOST.FPT").empty(), !one.also.ends_with(".FPT"));
  }
}

TEST(StartUpTest, WhatCanNotBeToldIsAsked) {
  Office office;
  ASSERT_TRUE(office.Open());
  ASSERT_TRUE(BankTables(office.session->Home()).Open("FNB"));
  SystemFileSystem().Remove(office.folder.Held("ESCROW_WIRES_FNB.DBF"));
  StartUpOutcome other = office.Start();
  ASSERT_TRUE(other.session);
  office.session->Company().xrefs.Close();
  other.session->Company().xrefs.Close();
  ASSERT_GT(other.session->Company().xrefs.OpenExclusive(), 0);
  office.boxes.shown.clear();
  office.boxes.answers = {BoxAnswer::kNo};
  EXPECT_FALSE(BankTables(office.session->Home()).Open("FNB"));
  ASSERT_FALSE(office.boxes.shown.empty());
  EXPECT_THAT(office.boxes.shown[0].text,
              HasSubstr("whether it was there can not be told: ESCROW_XRFS can not be read (-61)"));
  EXPECT_EQ(office.ReadFile("ESCROW_WIRES_FNB.DBF"), "");
}

TEST(StartUpTest, DamagedTableNamesTheWayOut) {
  Office office;
  ASSERT_TRUE(office.Open());
  office.session.reset();
  office.WriteFile("ESCROW_UNITS.JNL",
                   "A letter that someone saved under a wrong name, and longer than a head.");
  EXPECT_EQ(office.Start().result, StartUpResult::kTablesRefused);
  EXPECT_THAT(office.boxes.LastText(), HasSubstr("verify\" says what is wrong"));
}

// The user of the test must not be one who may write everywhere.
class CommonUser {
 public:
  CommonUser() {
    if (geteuid() == 0 && seteuid(kNobody) != 0) std::abort();
  }
  ~CommonUser() {
    if (getuid() == 0 && seteuid(0) != 0) std::abort();
  }
  CommonUser(const CommonUser&) = delete;
  CommonUser& operator=(const CommonUser&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
};

constexpr const char* kJournal = "ESCROW_UNITS.JNL";

// A folder in which no file can be made, with what stands in it as told.
void Protect(const Office& office, unsigned tables, unsigned journal) {
  const std::filesystem::path folder = office.folder.Platform("");
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    const bool is_journal = file.path().filename() == kJournal;
    std::filesystem::permissions(file.path(), std::filesystem::perms(is_journal ? journal : tables));
  }
  std::filesystem::permissions(folder, std::filesystem::perms(0555));
}

// Writing needs more than the tables: where one thing is protected everything is.
TEST(StartUpTest, WriteProtectedDataCanBeLookedAt) {
  const struct {
    unsigned tables, journal;
    bool has_journal;
  } cases[] = {{0444, 0444, true}, {0666, 0444, true}, {0666, 0666, false}};
  for (const auto& one : cases) {
    Office office;
    ASSERT_TRUE(office.Open([](BankRecord& bank) { bank.auto_date = 1; }));
    office.session.reset();
    if (!one.has_journal) SystemFileSystem().Remove(office.folder.Held(kJournal));
    Protect(office, one.tables, one.journal);
    {
      const CommonUser user;
      const StartUpOutcome outcome = office.Start();
      ASSERT_TRUE(outcome.session);
      EXPECT_THAT(office.TakeTexts(), ElementsAre(HasSubstr("can be looked at here, but not changed")));
      EXPECT_TRUE(SelectBank(*outcome.session, "FNB"));
      EXPECT_THAT(office.TakeTexts(), ::testing::IsEmpty()) << "no date is to be advanced";
      BankTable& banks = outcome.session->Company().banks;
      std::optional<BankRecord> bank = banks.Find("FNB");
      ASSERT_TRUE(bank);
      bank->name = "Second National Trust";
      EXPECT_EQ(banks.Update(*bank), engine::kErrorReadOnly);
    }
    std::filesystem::permissions(office.folder.Platform(""), std::filesystem::perms(0755));
  }
}

// To list the names in a folder and to reach its files are two rights, and both are needed.
TEST(StartUpTest, DataPathMustBeReadable) {
  for (const unsigned rights : {0000U, 0444U, 0111U}) {
    Office office;
    ASSERT_TRUE(office.Open());
    office.session.reset();
    const std::filesystem::path folder = office.folder.Platform("");
    std::filesystem::permissions(folder, std::filesystem::perms(rights));
    StartUpResult result = StartUpResult::kStarted;
    {
      const CommonUser user;
      result = office.Start().result;
    }
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    EXPECT_EQ(result, StartUpResult::kNoDataPath) << rights;
    EXPECT_THAT(office.TakeTexts(),
                ElementsAre(StartsWith("Company Data Path error: The folder cannot be read.")));
  }
}

TEST(StartUpTest, PostsThatWaitBehindAWriteProtectionNeedSomebodyWhoMayWrite) {
  Office office;
  ASSERT_TRUE(office.Open());
  std::string journal = office.ReadFile(kJournal);
  office.session.reset();
  ASSERT_GE(journal.size(), 96U);
  journal.replace(88, 8, journal.substr(16, 8));  // a unit's writer ended on its way to the tables
  office.WriteFile(kJournal, journal);
  Protect(office, 0444, 0444);
  {
    const CommonUser user;
    EXPECT_EQ(office.Start().result, StartUpResult::kTablesRefused);
    EXPECT_THAT(office.boxes.LastText(), HasSubstr("Have somebody start Escrow Accounting who may write"));
  }
  std::filesystem::permissions(office.folder.Platform(""), std::filesystem::perms(0755));
}

class UsersTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open());
    ASSERT_TRUE(AddUsers());
    ASSERT_TRUE(AddUserBanks());
  }

  bool AddUsers() {
    UserRecord jdoe;
    jdoe.id = 7;
    jdoe.login = "jdoe";
    jdoe.name = "Jane Doe";
    jdoe.group = clsSecurity::Digest("Power User");
    jdoe.security = std::string(50, '0') + "1" + std::string(11, '0');
    UserRecord other = jdoe;
    other.id = 8;
    other.login = "jdo";
    other.group = "no digest";
    other.security = "1";
    UsersTable users(office_.session->Home());
    return users.Create() == 0 && users.Open() > 0 && users.Add(jdoe) == 0 && users.Add(other) == 0;
  }
  bool AddUserBanks() {
    UserBanksTable user_banks(office_.session->Home());
    return user_banks.Create() == 0 && user_banks.Open() > 0 && user_banks.Add({7, "SAV"}) == 0 &&
           user_banks.Add({7, "FNB"}) == 0 && user_banks.Add({70, "XYZ"}) == 0;
  }

  Office office_;
};

TEST_F(UsersTest, LoadsUserBanksAndRights) {
  clsSecurity user;
  ASSERT_TRUE(user.LoadUserSecurity(office_.session->Home(), "jdoe"));
  EXPECT_EQ(user.sUserName, "Jane Doe");
  EXPECT_EQ(user.sGroup, "Power User");
  EXPECT_EQ(user.iBankCount, 2);
  EXPECT_TRUE(user.MayUseBank("FNB"));
  EXPECT_FALSE(user.MayUseBank("XYZ"));
  for (const Right& right : RightsCatalogue()) {
    EXPECT_EQ(user.IsSecurityOff(right.number), right.number != 51) << right.caption;
  }
  for (int outside : {0, -1, 63, 500}) EXPECT_TRUE(user.IsSecurityOff(outside)) << outside;

  ASSERT_TRUE(user.LoadUserSecurity(office_.session->Home(), "jdo"));
  EXPECT_EQ(user.sGroup, "User");
  EXPECT_EQ(user.iBankCount, 0);
  EXPECT_FALSE(user.IsSecurityOff(1));
  EXPECT_TRUE(user.IsSecurityOff(2));
  EXPECT_FALSE(user.LoadUserSecurity(office_.session->Home(), "nobody"));
  EXPECT_FALSE(user.bLoggedIn);
}

TEST_F(UsersTest, RightsCountOnlyWhileSecurityIsOn) {
  Session& session = *office_.session;
  EXPECT_TRUE(session.MayUse(51));
  office_.suite.security = true;
  session.ReloadUser();
  EXPECT_FALSE(session.MayUse(51));
  EXPECT_TRUE(session.MayUse(kRightPostChecks));
  office_.suite.login = "stranger";
  session.ReloadUser();
  EXPECT_FALSE(session.MayUse(kRightPostChecks));
}

TEST(RightsTest, CatalogueKeepsItsNumbers) {
  const auto catalogue = RightsCatalogue();
  ASSERT_EQ(catalogue.size(), 60u);
  EXPECT_EQ(RightKey(catalogue[0]), "P1");
  EXPECT_EQ(RightKey(catalogue[1]), "C2");
  std::set<int> numbers;
  for (const Right& right : catalogue) numbers.insert(right.number);
  EXPECT_EQ(numbers.size(), 60u);
  EXPECT_FALSE(numbers.contains(17) || numbers.contains(18));
  EXPECT_EQ(catalogue[55].caption, "Escrow Reports");
  EXPECT_EQ(catalogue[55].number, 60);
  EXPECT_EQ(clsSecurity::Digest(""), "E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855");
}

}  // namespace
}  // namespace tallwick
