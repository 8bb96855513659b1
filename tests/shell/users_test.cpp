// Users, rights and banks: the records and the screen that maintains them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "shell/clsSecurity.h"
#include "shell/edit_users.h"
#include "shell/main_commands.h"
#include "shell/main_window.h"
#include "shell/rights.h"
#include "tables/users_table.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Office;
using testing::Seen;

constexpr DateTime kNow{{2024, 3, 4}, 14, 7, 31};

class UserMaintenanceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open());
    ASSERT_TRUE(office_.AddBank("SAV", "Savings"));
  }
  const TableHome& Home() { return office_.session->Home(); }
  int Save(const std::string& login, const std::string& rights = "", std::vector<std::string> banks = {},
           const std::string& group = "User") {
    clsSecurity user;
    user.osLogin = login;
    user.sUserName = "Name of " + login;
    user.sGroup = group;
    user.sSecurity = rights;
    user.sBankCodes = std::move(banks);
    return user.SaveUserSecurity(Home(), kNow);
  }
  clsSecurity Get(const std::string& login) {
    return clsSecurity::GetUserSecurity(Home(), login).value_or(clsSecurity());
  }
  std::int32_t IdOf(const std::string& login) {
    UsersTable users(Home());
    return users.Open() > 0 && users.SeekLogin(login) ? users.Read().id : -1;
  }

  Office office_;
};

TEST_F(UserMaintenanceTest, SavesNumbersAndReadsBack) {
  ASSERT_EQ(Save("ann", std::string(10, '1'), {"SAV", "FNB"}, " Power User "), 0);
  ASSERT_EQ(Save("bob"), 0);
  EXPECT_EQ(IdOf("ann"), 1);
  EXPECT_EQ(IdOf("bob"), 2);
  const clsSecurity ann = Get("ANN");
  EXPECT_EQ(ann.sSecurity, std::string(10, '1') + std::string(90, '0'));
  EXPECT_EQ(ann.sGroup, "Power User");
  EXPECT_EQ(ann.sLastUpdated, "03/04/2024 @ 2:07:31 PM");
  EXPECT_THAT(ann.sBankCodes, ElementsAre("SAV", "FNB"));
  EXPECT_EQ(ann.iBankCount, 2);
  EXPECT_EQ(Get("bob").iBankCount, 0);
  EXPECT_FALSE(Get("carl").bLoggedIn);
  // A second save changes the record and replaces the banks; the password is not touched.
  UsersTable users(Home());
  ASSERT_GT(users.Open(), 0);
  ASSERT_TRUE(users.SeekLogin("ann"));
  UserRecord record = users.Read();
  record.password = " secret";
  record.group = "unknown digest";
  ASSERT_EQ(users.Update(record), 0);
  users.Close();
  clsSecurity again = Get("ann");
  EXPECT_EQ(again.sGroup, "User");
  again.sBankCodes = {"FNB"};
  ASSERT_EQ(again.SaveUserSecurity(Home(), kNow), 0);
  EXPECT_EQ(Get("ann").sPassword, " secret");
  EXPECT_THAT(Get("ann").sBankCodes, ElementsAre("FNB"));
  EXPECT_EQ(IdOf("ann"), 1);
  EXPECT_FALSE(clsSecurity::IsLoginUnique(Home(), "Ann", 0));
  EXPECT_TRUE(clsSecurity::IsLoginUnique(Home(), "ann", 1));
  EXPECT_TRUE(clsSecurity::IsLoginUnique(Home(), "carl", 0));
}

TEST_F(UserMaintenanceTest, RightsOfAnyLength) {
  // Only a denied right beyond the field is more than its absence.
  EXPECT_EQ(Save("long", std::string(150, '0')), 0);
  EXPECT_EQ(Save("toolong", std::string(149, '0') + "1"), engine::kErrorFieldValue);
  EXPECT_FALSE(Get("toolong").bLoggedIn);
  ASSERT_EQ(Save("one", std::string(50, '0') + "x"), 0);
  for (int right = -1; right <= 120; ++right)
    EXPECT_EQ(Get("one").IsSecurityOff(right), right != 51) << right;
  clsSecurity user;
  user.SetRight(3, false);
  EXPECT_EQ(user.sSecurity, "001");
  user.SetRight(9, true);  // granted already
  user.SetRight(3, true);
  EXPECT_EQ(user.sSecurity, "000");
}

// The suite makes the table, with widths, an order and fields of its own.
TEST_F(UserMaintenanceTest, RecordsOfOtherWidths) {
  constexpr FieldLayout kFields[] = {{"EXTRA", 'C', 3},       {"LOGIN", 'C', 10},     {"ID", 'N', 4},
                                     {"USERNAME", 'C', 14},   {"GROUP", 'C', 64},     {"PASSWORD", 'C', 8},
                                     {"LASTUPDATE", 'C', 24}, {"LASTLOGIN", 'C', 24}, {"MUSTCHANGE", 'N', 1},
                                     {"DISABLED", 'N', 1},    {"SECURITY", 'C', 62}};
  clsKVRData& data = office_.session->Data();
  const DataHandle made = data.CreateDatabase(office_.folder.Held("USERS.DBF"), kFields, kUsersLayout.tags);
  ASSERT_GT(made, 0);
  data.CloseDatabase(made);
  ASSERT_EQ(Save("ann", "01", {"FNB"}), 0);
  EXPECT_EQ(Get("ann").sSecurity, "01" + std::string(60, '0'));
  EXPECT_EQ(Save("ann", std::string(62, '0') + "1"), engine::kErrorFieldValue);  // no place for that denial
  EXPECT_EQ(Save("bartholomew"), engine::kErrorFieldValue);
  EXPECT_THAT(data.LastFieldProblem().text, HasSubstr("LOGIN"));
  EXPECT_EQ(Get("ann").sSecurity, "01" + std::string(60, '0'));
  EXPECT_THAT(Get("ann").sBankCodes, ElementsAre("FNB"));
}

TEST_F(UserMaintenanceTest, DeletesWithTheBanksButNotOneself) {
  ASSERT_EQ(Save("ann", "", {"SAV"}), 0);
  ASSERT_EQ(Save("bob", "", {"SAV", "FNB"}), 0);
  EXPECT_EQ(clsSecurity::DeleteUserSecurity(Home(), "ann", "ANN "), kOwnAccount);
  ASSERT_EQ(office_.boxes.shown.size(), 1U);
  EXPECT_EQ(office_.boxes.shown[0].title, "User Delete");
  EXPECT_EQ(office_.boxes.shown[0].text, "You cannot delete your own account.");
  EXPECT_EQ(clsSecurity::DeleteUserSecurity(Home(), "carl", "ann"), engine::kNoRecord);
  EXPECT_EQ(clsSecurity::DeleteUserSecurity(Home(), "bob", "ann"), 0);
  EXPECT_FALSE(Get("bob").bLoggedIn);
  EXPECT_THAT(Get("ann").sBankCodes, ElementsAre("SAV"));
  ASSERT_EQ(Save("new"), 0);
  EXPECT_EQ(IdOf("new"), 2);
  EXPECT_THAT(Get("new").sBankCodes, IsEmpty());
  int count = 0;
  EXPECT_EQ(clsSecurity::ForcePasswordResets(Home(), &count), 0);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(Get("ann").iMustChange, 1);
}

// Users out of reach must not look like no users, nor be replaced by new ones.
TEST_F(UserMaintenanceTest, UsersOutOfReachAreTold) {
  EXPECT_EQ(clsSecurity::UsersProblem(Home()), "") << "nobody has made the tables yet";
  ASSERT_EQ(Save("ann", "", {"FNB"}), 0);
  EXPECT_EQ(clsSecurity::UsersProblem(Home()), "");
  for (const char* table : {"USERS", "USERSESC"}) {
    const std::string file = std::string(table) + ".DBF";
    const std::string whole = office_.ReadFile(file);
    std::string without_index = whole;
    without_index[28] = 0;
    for (const std::string& spoiled : {std::string("no table"), without_index}) {
      office_.WriteFile(file, spoiled);
      EXPECT_THAT(clsSecurity::UsersProblem(Home()), HasSubstr(std::string(table) + " could not be opened"));
      office_.boxes.shown.clear();
      EXPECT_FALSE(FrmEditUsers(*office_.session).OpenTables());
      EXPECT_THAT(office_.boxes.LastText(), HasSubstr(table));
      EXPECT_EQ(office_.boxes.shown.size(), 1U) << "once is enough";
      EXPECT_NE(Save("bob"), 0);
    }
    office_.WriteFile(file, whole);
  }
  SystemFileSystem().Remove(office_.folder.Held("USERS.DBF"));
  EXPECT_THAT(clsSecurity::UsersProblem(Home()), HasSubstr("USERS is missing, but it was there"));
  office_.boxes.shown.clear();
  EXPECT_NE(Save("bob"), 0);
  EXPECT_THAT(office_.boxes.LastText(), HasSubstr("Make an empty one?"));
  EXPECT_EQ(office_.ReadFile("USERS.DBF"), "");
  office_.boxes.answers = {BoxAnswer::kYes};
  EXPECT_EQ(Save("bob"), 0);
}

TEST(DigestTest, IsTheStandardOne) {
  EXPECT_EQ(clsSecurity::Digest(""), "E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855");
  EXPECT_EQ(clsSecurity::Digest("abc"), "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD");
  EXPECT_NE(clsSecurity::Digest("\xC3\xA9"), clsSecurity::Digest("e"));
}

TEST(PasswordGeneratorTest, DrawsCapitalsAndDigits) {
  std::vector<double> draws = {0.0, 0.0, 0.34, 0.999, 0.67, 0.999, 0.999, 0.0};
  std::size_t next = 0;
  EXPECT_EQ(PasswordGenerator(4, [&] { return draws[next++]; }), "AZ90");
  EXPECT_EQ(PasswordGenerator(1, [] { return 1.0; }), std::nullopt);
  testing::FakeClock clock;
  const std::string password = PasswordGenerator(200, clock);
  EXPECT_EQ(password.size(), 200U);
  EXPECT_EQ(password.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"), std::string::npos);
}

TEST(RightsCatalogueTest, KeepsItsNumbersAndGaps) {
  std::set<int> numbers;
  std::string keys;
  for (const Right& right : RightsCatalogue()) {
    EXPECT_TRUE(numbers.insert(right.number).second) << right.number;
    keys += RightKey(right) + " ";
  }
  EXPECT_EQ(numbers.size(), 60U);
  EXPECT_FALSE(numbers.contains(17) || numbers.contains(18));
  EXPECT_THAT(keys, HasSubstr("P1 C2 "));
  EXPECT_THAT(keys, HasSubstr("C57 C60 P58 C59 P61 C62 "));
}

TEST_F(UserMaintenanceTest, TheScreenEditsRightsBanksAndAccount) {
  ASSERT_EQ(Save("ann", std::string(50, '0') + "x", {"GONE"}), 0);
  FrmEditUsers form(*office_.session);
  form.Opened();
  EXPECT_EQ(Seen(form, "txtLogin"), "ann");
  EXPECT_FALSE(form.Find("txtLogin")->enabled);
  EXPECT_THAT(form.Find("lstBanks")->rows, ElementsAre("First National Trust   (FNB)", "Savings   (SAV)",
                                                       "No longer among the banks   (GONE)"));
  const auto row_of = [&](std::string_view caption) {
    const std::vector<std::string>& rows = form.Find("lstRights")->rows;
    return static_cast<int>(std::find(rows.begin(), rows.end(), caption) - rows.begin()) + 1;
  };
  const auto is_checked = [&](std::string_view caption) {
    return static_cast<bool>(form.Find("lstRights")->marks[static_cast<std::size_t>(row_of(caption)) - 1]);
  };
  EXPECT_FALSE(is_checked("Escrow Office"));
  // A heading takes its commands with it, and nothing else; a command brings its heading back.
  form.Mark("lstRights", row_of("Activity Tracking"), false);
  EXPECT_FALSE(is_checked("Editing"));
  EXPECT_TRUE(is_checked("Escrow Reports"));
  form.Mark("lstRights", row_of("Editing"), true);
  EXPECT_TRUE(is_checked("Activity Tracking"));
  form.Mark("lstRights", row_of("Purge Files"), false);
  form.Mark("lstBanks", 2, true);
  form.Change("txtUserName", "Ann Clerk");
  form.Change("cboGroup", "power user");
  form.Click("cmdSave");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  // What no check mark has changed stays as it was, the odd character too.
  EXPECT_EQ(Get("ann").sSecurity, std::string(50, '0') + "x001" + std::string(46, '0'));
  EXPECT_EQ(Get("ann").sGroup, "Power User");
  EXPECT_THAT(Get("ann").sBankCodes, ElementsAre("GONE", "SAV"));
  EXPECT_EQ(Seen(form, "lblStatus"), "\"ann\" is saved.");
  // What is as it was is not written anew.
  const std::string saved = Get("ann").sLastUpdated;
  office_.clock.now.minute += 1;
  form.Click("cmdSave");
  EXPECT_EQ(Get("ann").sLastUpdated, saved);
}

TEST_F(UserMaintenanceTest, TheScreenRefusesAndAsks) {
  ASSERT_EQ(Save("jdoe", "", {}, "Administrator"), 0);
  ASSERT_EQ(Save("zoe"), 0);
  office_.suite.security = true;
  office_.session->ReloadUser();
  FrmEditUsers form(*office_.session);
  form.Opened();
  const auto refused = [&](const char* control, const char* text) {
    form.Click("cmdSave");
    EXPECT_TRUE(form.Find(control)->refused) << control;
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr(text)));
  };
  form.SetCheck("chkDisabled", 1);
  refused("chkDisabled", "cannot disable your own account");
  form.SetCheck("chkDisabled", 0);
  form.Change("cboGroup", "User");
  refused("cboGroup", "from your own account");
  // An entry that was not saved is given up only on a question, here answered No.
  form.Choose("lstUsers", 2);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("are not saved.  Drop them?")));
  EXPECT_EQ(form.Find("lstUsers")->selected, 1);
  EXPECT_FALSE(form.Close());
  office_.boxes.answers = {BoxAnswer::kYes};
  form.Click("cmdNew");
  office_.TakeTexts();
  refused("txtLogin", "login name is missing");
  form.Change("txtLogin", "ZOE");
  refused("txtLogin", "Another user has this login name");
  form.Change("txtLogin", "\xE2\x98\x83");
  refused("txtUserName", "full name is missing");
  form.Change("txtUserName", "Snow");
  form.Click("cmdSave");
  EXPECT_TRUE(form.Find("txtLogin")->refused);
  office_.TakeTexts();
  form.Change("txtLogin", "new");
  form.Click("cmdSave");
  EXPECT_EQ(Get("new").iMustChange, 1);
  EXPECT_EQ(Get("new").sPassword, "");

  form.Choose("lstUsers", 1);
  form.Click("cmdDelete");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("You cannot delete your own account."));
  form.Choose("lstUsers", 3);
  office_.boxes.answers = {BoxAnswer::kYes, BoxAnswer::kYes};
  form.Click("cmdDelete");
  EXPECT_EQ(Seen(form, "lblStatus"), "\"zoe\" is deleted.");
  form.Click("cmdForceResets");
  EXPECT_EQ(Get("jdoe").iMustChange, 1);
}

// What the suite or another workstation has written since a user was loaded stays, and is shown.
TEST_F(UserMaintenanceTest, WhatChangedElsewhereIsNotWrittenOver) {
  const struct {
    void (*change)(clsSecurity&);
    const char* told;
  } kCases[] = {{[](clsSecurity& user) { user.iDisabled = 1; }, "The account is disabled"},
                {[](clsSecurity& user) { user.iMustChange = 1; }, "A new password must be chosen"},
                {[](clsSecurity& user) { user.sBankCodes.clear(); }, "Banks: none"},
                {[](clsSecurity& user) { user.sSecurity = std::string(100, '1'); }, "The rights are others"},
                {[](clsSecurity& user) { user.sGroup = "Power User"; }, "Group: Power User"},
                {[](clsSecurity& user) { user.sUserName = "Theirs"; }, "Full name: Theirs"}};
  ASSERT_EQ(Save("ann", "", {"FNB", "SAV"}), 0);
  FrmEditUsers form(*office_.session);
  form.Opened();
  for (const auto& one : kCases) {
    clsSecurity theirs = Get("ann");
    one.change(theirs);
    ASSERT_EQ(theirs.SaveUserSecurity(Home(), kNow), 0);
    form.Change("txtUserName", "Mine");
    form.Click("cmdSave");
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr(one.told)));
    EXPECT_TRUE(Get("ann").SameSettings(theirs)) << one.told;
    EXPECT_EQ(Seen(form, "txtUserName"), theirs.sUserName);
  }
  // The password and the last login are the suite's alone.
  clsSecurity theirs = Get("ann");
  theirs.sPassword = "new";
  theirs.sLastLogin = "today";
  ASSERT_EQ(theirs.SaveUserSecurity(Home(), kNow), 0);
  form.Change("txtUserName", "Mine");
  form.Click("cmdSave");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  EXPECT_EQ(Get("ann").sUserName, "Mine");
  EXPECT_EQ(Get("ann").sPassword + " " + Get("ann").sLastLogin, "new today");

  ASSERT_EQ(clsSecurity::DeleteUserSecurity(Home(), "ann", ""), 0);
  form.Change("txtUserName", "Back");
  form.Click("cmdSave");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("deleted elsewhere")));
  EXPECT_FALSE(Get("ann").bLoggedIn);
  const clsSecurity fresh = clsSecurity::NewUser();
  ASSERT_EQ(Save("ann"), 0);
  clsSecurity same_login = fresh;
  same_login.osLogin = "ANN";
  EXPECT_EQ(same_login.SaveUserSecurity(Home(), kNow, &fresh), kUserChanged);
}

// Whoever the suite logs in while the program runs has the own rights and banks, and not those of who was
// here before.
TEST_F(UserMaintenanceTest, AnotherLoginBringsItsOwnRights) {
  ASSERT_EQ(Save("jdoe", "", {"FNB", "SAV"}, "Administrator"), 0);
  ASSERT_EQ(Save("rita", "", {"SAV"}), 0);
  FrmMainEscrowAccounting main(*office_.session, office_);
  main.Opened();
  office_.suite.security = true;  // nobody has been loaded yet
  EXPECT_TRUE(office_.session->MayUse(kAdministrator));
  EXPECT_EQ(office_.session->BankCode(), "FNB");
  FrmEditUsers users(*office_.session);
  users.Opened();

  office_.suite.login = "rita";
  office_.session->NotifyChanged(SessionChange::kSwitch);  // as every few seconds
  EXPECT_FALSE(main.Find("mnuToolsUsers")->enabled);
  EXPECT_EQ(office_.session->BankCode(), "");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  for (const char* command : {"cmdSave", "cmdDelete", "cmdForceResets"}) {
    users.Click(command);
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Only an administrator"))) << command;
  }
  EXPECT_TRUE(SelectBank(*office_.session, "SAV"));
  office_.suite.login = "jdoe";
  EXPECT_TRUE(office_.session->MayUse(kAdministrator));
  EXPECT_EQ(office_.session->BankCode(), "SAV") << "a bank of both";

  // All is grey, and it is said why: once.
  office_.suite.login = "ghost";
  for (int i = 0; i < 2; ++i) office_.session->NotifyChanged(SessionChange::kSwitch);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("\"ghost\" is not among the users.")));
  SystemFileSystem().Remove(office_.folder.Held("USERS.DBF"));
  FrmMainEscrowAccounting(*office_.session, office_).Opened();
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("USERS is missing")));
}

TEST_F(UserMaintenanceTest, CommandsFollowTheRightsAsSoonAsTheyChange) {
  ASSERT_EQ(Save("jdoe", "", {"FNB"}, "Administrator"), 0);
  office_.suite.security = true;
  office_.session->ReloadUser();
  FrmMainEscrowAccounting main(*office_.session, office_);
  main.Opened();
  EXPECT_EQ(Seen(main, "Login"), "Login: jdoe");
  EXPECT_TRUE(main.Find("mnuEditChecksPost")->enabled);
  FrmEditUsers form(*office_.session);
  form.Opened();
  form.Click("cmdDenyAll");
  form.Click("cmdSave");
  EXPECT_FALSE(main.Find("mnuEditChecksPost")->enabled);
  EXPECT_TRUE(main.Find("mnuToolsUsers")->enabled);
  main.Menu("mnuEditChecksPost");
  EXPECT_THAT(office_.opened, IsEmpty());
  // A command that was shown before its right was taken away is refused all the same.
  main.Find("mnuEditChecksPost")->enabled = true;
  main.Menu("mnuEditChecksPost");
  EXPECT_THAT(office_.opened, IsEmpty());
  EXPECT_FALSE(main.Find("mnuEditChecksPost")->enabled);
  ASSERT_EQ(Save("jdoe", "", {"FNB"}, "User"), 0);
  office_.session->ReloadUser();
  EXPECT_TRUE(main.Find("mnuEditChecksPost")->enabled);
  EXPECT_FALSE(main.Find("mnuToolsUsers")->enabled);
  for (const Control& control : main.Controls()) {
    if (control.kind != ControlKind::kMenu || !control.enabled) continue;
    EXPECT_TRUE(office_.session->MayUse(RightOfCommand(control.name))) << control.name;
  }
}

}  // namespace
}  // namespace tallwick
