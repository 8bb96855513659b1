// user: the suite's users, their rights and banks.
#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "cli/user_accounts.h"
#include "core/text.h"
#include "shell/clsSecurity.h"
#include "shell/rights.h"

namespace tallwick::cli {

namespace {

struct UserArguments {
  UserAccount account;
  int right = 0;
};

// The company's users, opened; empty after a message.
std::unique_ptr<UserAccounts> OpenUsers(Office& office, int* status) {
  Session* session = office.Open();
  *status = session == nullptr ? office.Status() : kDone;
  if (session == nullptr) return nullptr;
  auto accounts = std::make_unique<UserAccounts>(session->Home());
  if (accounts->Open()) return accounts;
  office.Out().Fail("The users' tables could not be opened");
  *status = kNoTables;
  return nullptr;
}

int Failed(Office& office, std::string_view what, int code) {
  office.Out().Fail(std::string(what) + ": " + std::string(engine::error4text(code)));
  return kRefused;
}

int Unknown(Office& office, const std::string& login) {
  office.Out().Fail("There is no user " + Quoted(login));
  return kRefused;
}

// The record without the password, the group in clear.
Json UserJson(UserAccounts& accounts) {
  UsersTable& users = accounts.Users();
  Json fields =
      RecordJson(users.Data(), users.Handle(), users.Data().FieldList(users.Handle()), Trimming::kBoth);
  fields.erase("PASSWORD");
  return fields;
}

int ShowUser(Office& office, UserAccounts& accounts) {
  const UserRecord user = accounts.Users().Read();
  const Json fields = UserJson(accounts);
  const std::vector<std::string> banks = accounts.BanksOf(user);
  office.Out().Set("fields", fields);
  office.Out().Set("group", GroupOf(user));
  office.Out().Set("banks", banks);
  office.Out().Line(FieldLines(fields));
  office.Out().Line("group " + GroupOf(user));
  for (const std::string& bank : banks) office.Out().Line("bank " + bank);
  return kDone;
}

int Add(Office& office, const UserArguments& arguments) {
  if (Trim(arguments.account.login).empty()) {
    office.Out().Fail("LOGIN is missing. Please name the user.");
    return kRefused;
  }
  int status = kDone;
  const std::unique_ptr<UserAccounts> accounts = OpenUsers(office, &status);
  if (!accounts) return status;
  const UserAccount& account = arguments.account;
  if (accounts->Users().SeekLogin(account.login)) {
    office.Out().Fail("There is a user " + Quoted(account.login) + " already");
    return kRefused;
  }
  if (const int code = accounts->Save(account, office.TheClock().Now()); code != 0) {
    if (code != engine::kErrorFieldValue) return Failed(office, "The user was not added", code);
    office.Out().Fail(accounts->Users().Data().LastFieldProblem().text);
    return kRefused;
  }
  return accounts->Users().SeekLogin(account.login) ? ShowUser(office, *accounts)
                                                    : Unknown(office, account.login);
}

int Show(Office& office, const UserArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<UserAccounts> accounts = OpenUsers(office, &status);
  if (!accounts) return status;
  const std::string& login = arguments.account.login;
  return accounts->Users().SeekLogin(login) ? ShowUser(office, *accounts) : Unknown(office, login);
}

int List(Office& office) {
  int status = kDone;
  const std::unique_ptr<UserAccounts> accounts = OpenUsers(office, &status);
  if (!accounts) return status;
  Json list = Json::array();
  std::vector<std::vector<std::string>> rows;
  UsersTable& users = accounts->Users();
  for (bool found = users.Top("LOGIN"); found; found = users.Skip()) {
    const UserRecord user = users.Read();
    list.push_back(UserJson(*accounts));
    rows.push_back({user.login, user.name, GroupOf(user), user.disabled != 0 ? "disabled" : ""});
  }
  office.Out().Set("users", list);
  office.Out().Line(TextTable({"Login", "Name", "Group", ""}, "<<<<", rows));
  return kDone;
}

int Delete(Office& office, const UserArguments& arguments) {
  const std::string& login = arguments.account.login;
  int status = kDone;
  const std::unique_ptr<UserAccounts> accounts = OpenUsers(office, &status);
  if (!accounts) return status;
  if (EqualsIgnoreCase(Trim(login), Trim(office.Options().user))) {
    office.Boxes().Critical("User Delete", "You cannot delete your own account.");
    office.Out().Fail("The user was not deleted");
    return kRefused;
  }
  const int code = accounts->Delete(login);
  if (code == engine::kNoRecord) return Unknown(office, login);
  if (code != 0) return Failed(office, "The user was not deleted", code);
  office.Out().Set("deleted", login);
  office.Out().Line("deleted " + login);
  return kDone;
}

int TestRight(Office& office, const UserArguments& arguments) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  clsSecurity user;
  if (!user.LoadUserSecurity(session->Home(), arguments.account.login))
    return Unknown(office, arguments.account.login);
  const bool granted = user.IsSecurityOff(arguments.right);
  office.Out().Set("granted", granted);
  office.Out().Line(granted ? "granted" : "not granted");
  return kDone;
}

int ResetPasswords(Office& office) {
  int status = kDone;
  const std::unique_ptr<UserAccounts> accounts = OpenUsers(office, &status);
  if (!accounts) return status;
  int count = 0;
  const int code = accounts->ResetPasswords(&count);
  if (code != 0) return Failed(office, "The passwords were not reset", code);
  office.Out().Set("users", count);
  office.Out().Line(std::to_string(count) + " users must choose a new password");
  return kDone;
}

}  // namespace

void AddUserCommands(CLI::App& app, Action& chosen) {
  CLI::App* user = app.add_subcommand("user", "The suite's users and their rights");
  user->require_subcommand(1);
  auto arguments = std::make_shared<UserArguments>();
  UserAccount& account = arguments->account;
  const auto add = [&](const char* name, const char* what, int (*run)(Office&, const UserArguments&)) {
    CLI::App* command = user->add_subcommand(name, what);
    command->add_option("LOGIN", account.login)->required();
    Choose(command, chosen, arguments, run);
    return command;
  };
  CLI::App* new_user = add("add", "Adds a user", Add);
  new_user->add_option("--name", account.name, "Full name")->required();
  new_user->add_option("--group", account.group, "Administrator, Power User or User")
      ->required()
      ->check(CLI::IsMember({"Administrator", "Power User", "User"}));
  new_user->add_option("--rights", account.rights, "One character per right number, 0 = granted");
  new_user->add_option("--banks", account.banks, "Bank codes, parted by commas")->delimiter(',');
  add("show", "A user's record and banks", Show);
  add("delete", "Deletes a user", Delete);
  add("right", "Whether a user may use a right", TestRight)->add_option("N", arguments->right)->required();
  Choose(user->add_subcommand("list", "Every user"), chosen, List);
  Choose(user->add_subcommand("reset-passwords", "Makes every user choose a new password"), chosen,
         ResetPasswords);
}

}  // namespace tallwick::cli
