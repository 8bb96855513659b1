// user: the suite's users, their rights and banks. Passwords are never printed.
#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "core/text.h"
#include "shell/clsSecurity.h"
#include "shell/user_changes.h"
#include "tables/users_table.h"

namespace tallwick::cli {

namespace {

struct UserArguments {
  std::string login;
  std::optional<std::string> name;
  std::optional<std::string> group;
  std::optional<std::string> rights;
  std::optional<std::string> banks;  // codes parted by commas; "" takes every bank away
  std::optional<std::string> disabled;
  std::optional<std::string> must_change;
  int right = 0;
  int length = 10;
};

int Failed(Office& office, std::string_view what, int code) {
  std::string why(engine::error4text(code));
  if (code == engine::kErrorFieldValue) why = office.Open()->Data().LastFieldProblem().text;
  if (code == kUserChanged) why = "somebody else has changed the user at the same time.  Try again";
  return office.Refuse(std::string(what) + ": " + why);
}

int Unknown(Office& office, const std::string& login) {
  return office.Refuse("There is no user " + Quoted(login));
}

Session* Ended(Office& office, const std::string& why, int with, int* status) {
  office.Out().Fail(why);
  *status = with;
  return nullptr;
}

// The company with its users. Null after a message, with the status to end with.
Session* OpenUsers(Office& office, int* status) {
  Session* session = office.Open();
  *status = session == nullptr ? office.Status() : kDone;
  if (session == nullptr) return nullptr;
  const std::string problem = clsSecurity::UsersProblem(session->Home());
  return problem.empty() ? session : Ended(office, problem, kNoTables, status);
}

// The same for a command that changes users.
Session* OpenForChange(Office& office, int* status) {
  Session* session = OpenUsers(office, status);
  const std::string problem = session != nullptr ? UserChangeProblem(*session) : "";
  return problem.empty() ? session : Ended(office, problem, kRefused, status);
}

// The same for a command that looks at the user with the login.
Session* OpenForReading(Office& office, const std::string& login, int* status) {
  Session* session = OpenUsers(office, status);
  if (session == nullptr || session->MayReadUser(login)) return session;
  return Ended(office, "Only an administrator may look at other users", kRefused, status);
}

std::vector<std::string> BankCodes(const std::string& text) {
  std::vector<std::string> codes;
  for (const std::string& code : Split(text, ',')) {
    if (!Trim(code).empty()) codes.emplace_back(Trim(code));
  }
  return codes;
}

// The record without the password.
Json RecordWithoutPassword(UsersTable& users) {
  Json fields =
      RecordJson(users.Data(), users.Handle(), users.Data().FieldList(users.Handle()), Trimming::kBoth);
  fields.erase("PASSWORD");
  return fields;
}

int ShowUser(Office& office, const TableHome& home, const std::string& login) {
  const std::optional<clsSecurity> user = clsSecurity::GetUserSecurity(home, login);
  UsersTable users(home);
  if (!user || users.Open() <= 0 || !users.SeekLogin(login)) return Unknown(office, login);
  const Json fields = RecordWithoutPassword(users);
  office.Out().Set("fields", fields);
  office.Out().Set("group", user->sGroup);
  office.Out().Set("banks", user->sBankCodes);
  office.Out().Line(FieldLines(fields));
  office.Out().Line("group " + user->sGroup);
  for (const std::string& bank : user->sBankCodes) office.Out().Line("bank " + bank);
  return kDone;
}

void Take(const UserArguments& arguments, clsSecurity& user) {
  if (arguments.name) user.sUserName = *arguments.name;
  if (arguments.group) user.sGroup = *arguments.group;
  if (arguments.rights) user.sSecurity = *arguments.rights;
  if (arguments.banks) user.sBankCodes = BankCodes(*arguments.banks);
  if (arguments.disabled) user.iDisabled = *arguments.disabled == "on" ? 1 : 0;
  if (arguments.must_change) user.iMustChange = *arguments.must_change == "on" ? 1 : 0;
}

int Save(Office& office, Session& session, clsSecurity& user, const clsSecurity& before) {
  if (const std::string problem = UserSaveProblem(session, before, user).text; !problem.empty())
    return office.Refuse(problem);
  const int code = user.SaveUserSecurity(session.Home(), session.TheClock().Now(), &before);
  return code != 0 ? Failed(office, "The user was not saved", code)
                   : ShowUser(office, session.Home(), user.osLogin);
}

int Add(Office& office, const UserArguments& arguments) {
  int status = kDone;
  Session* session = OpenForChange(office, &status);
  if (session == nullptr) return status;
  const clsSecurity before = clsSecurity::NewUser();
  clsSecurity user = before;
  user.osLogin = Trim(arguments.login);
  Take(arguments, user);
  return Save(office, *session, user, before);
}

int Set(Office& office, const UserArguments& arguments) {
  int status = kDone;
  Session* session = OpenForChange(office, &status);
  if (session == nullptr) return status;
  std::optional<clsSecurity> user = clsSecurity::GetUserSecurity(session->Home(), arguments.login);
  if (!user) return Unknown(office, arguments.login);
  const clsSecurity before = *user;
  Take(arguments, *user);
  return Save(office, *session, *user, before);
}

int Show(Office& office, const UserArguments& arguments) {
  int status = kDone;
  Session* session = OpenForReading(office, arguments.login, &status);
  return session == nullptr ? status : ShowUser(office, session->Home(), arguments.login);
}

int List(Office& office) {
  int status = kDone;
  Session* session = OpenForReading(office, {}, &status);
  if (session == nullptr) return status;
  Json list = Json::array();
  std::vector<std::vector<std::string>> rows;
  UsersTable users(session->Home());
  const bool open = users.Exists() && users.Open() > 0;
  for (bool found = open && users.Top("LOGIN"); found; found = users.Skip()) {
    const UserRecord user = users.Read();
    list.push_back(RecordWithoutPassword(users));
    rows.push_back({user.login, user.name, clsSecurity::GroupOfDigest(user.group),
                    user.disabled != 0 ? "disabled" : ""});
  }
  office.Out().Set("users", list);
  office.Out().Line(TextTable({"Login", "Name", "Group", ""}, "<<<<", rows));
  return kDone;
}

int Delete(Office& office, const UserArguments& arguments) {
  int status = kDone;
  Session* session = OpenForChange(office, &status);
  if (session == nullptr) return status;
  const int code = clsSecurity::DeleteUserSecurity(session->Home(), arguments.login, session->Login());
  if (code == engine::kNoRecord) return Unknown(office, arguments.login);
  if (code == kOwnAccount) return office.Refuse("The user was not deleted");
  if (code != 0) return Failed(office, "The user was not deleted", code);
  office.Out().Set("deleted", arguments.login);
  office.Out().Line("deleted " + arguments.login);
  return kDone;
}

int TestRight(Office& office, const UserArguments& arguments) {
  int status = kDone;
  Session* session = OpenForReading(office, arguments.login, &status);
  if (session == nullptr) return status;
  const std::optional<clsSecurity> user = clsSecurity::GetUserSecurity(session->Home(), arguments.login);
  if (!user) return Unknown(office, arguments.login);
  const bool granted = user->IsSecurityOff(arguments.right);
  office.Out().Set("granted", granted);
  office.Out().Line(granted ? "granted" : "not granted");
  return kDone;
}

int ResetPasswords(Office& office) {
  int status = kDone;
  Session* session = OpenForChange(office, &status);
  if (session == nullptr) return status;
  int count = 0;
  const int code = clsSecurity::ForcePasswordResets(session->Home(), &count);
  if (code != 0) return Failed(office, "The passwords were not reset", code);
  office.Out().Set("users", count);
  office.Out().Line(std::to_string(count) + " users must choose a new password");
  return kDone;
}

int GeneratePassword(Office& office, const UserArguments& arguments) {
  const std::string password = PasswordGenerator(arguments.length, office.TheClock());
  office.Out().Set("password", password);
  office.Out().Line(password);
  return kDone;
}

// The options that say what a user is; a new user must have the first two.
void AddUserOptions(CLI::App* command, UserArguments& arguments, bool required) {
  command->add_option("--name", arguments.name, "Full name")->required(required);
  command->add_option("--group", arguments.group, "Administrator, Power User or User")
      ->required(required)
      ->check(CLI::IsMember({"Administrator", "Power User", "User"}));
  command->add_option("--rights", arguments.rights, "One character per right number, 0 = granted");
  command->add_option("--banks", arguments.banks, "Bank codes, parted by commas; \"\" for none");
  command->add_option("--disabled", arguments.disabled, "on or off")->check(CLI::IsMember({"on", "off"}));
  command->add_option("--must-change", arguments.must_change, "on: a new password at the next login")
      ->check(CLI::IsMember({"on", "off"}));
}

}  // namespace

void AddUserCommands(CLI::App& app, Action& chosen) {
  CLI::App* user = app.add_subcommand("user", "The suite's users and their rights");
  user->require_subcommand(1);
  auto arguments = std::make_shared<UserArguments>();
  const auto add = [&](const char* name, const char* what, int (*run)(Office&, const UserArguments&)) {
    CLI::App* command = user->add_subcommand(name, what);
    command->add_option("LOGIN", arguments->login)->required();
    Choose(command, chosen, arguments, run);
    return command;
  };
  AddUserOptions(add("add", "Adds a user", Add), *arguments, true);
  AddUserOptions(add("set", "Changes a user; what is not named stays", Set), *arguments, false);
  add("show", "A user's record and banks", Show);
  add("delete", "Deletes a user", Delete);
  add("right", "Whether a user may use a right", TestRight)->add_option("N", arguments->right)->required();
  Choose(user->add_subcommand("list", "Every user"), chosen, List);
  Choose(user->add_subcommand("reset-passwords", "Makes every user choose a new password"), chosen,
         ResetPasswords);
  CLI::App* generate = user->add_subcommand("generate-password", "Prints a random password");
  generate->add_option("LENGTH", arguments->length, "Characters (10 unless said)")->check(CLI::Range(1, 200));
  Choose(generate, chosen, arguments, GeneratePassword);
}

}  // namespace tallwick::cli
