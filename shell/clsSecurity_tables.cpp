// clsSecurity and the suite's tables of users: loading, saving, deleting.
#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"
#include "shell/clsSecurity.h"
#include "shell/lost_table.h"
#include "tables/users_table.h"

namespace tallwick {
namespace {

// Both tables for one change, which is one unit of work.
class UserChange {
 public:
  explicit UserChange(const TableHome& home) : data_(home.data), users_(home), banks_(home) {}

  // 0, or the code of what failed, after a message. Missing tables are made.
  int Begin() {
    for (TableBase* table : {static_cast<TableBase*>(&users_), static_cast<TableBase*>(&banks_)}) {
      if (const int code = table->Exists() ? engine::kSuccess : Make(*table); code != engine::kSuccess)
        return code;
      if (table->Open() <= 0) return engine::kErrorOpen;
    }
    return data_.BeginUnit();
  }
  int End(int code) {
    if (code == engine::kSuccess) return data_.CommitUnit();
    data_.RollbackUnit();
    return code;
  }

  UsersTable& Users() { return users_; }
  UserBanksTable& Banks() { return banks_; }

  int DeleteBanks(std::int32_t id) {
    while (banks_.FirstOfUser(id))
      if (const int code = banks_.Delete(); code != engine::kSuccess) return code;
    return engine::kSuccess;
  }

 private:
  static int Make(TableBase& table) { return table.MayMake() ? table.CreateMissing() : engine::kErrorOpen; }

  clsKVRData& data_;
  UsersTable users_;
  UserBanksTable banks_;
};

clsSecurity FromRecord(const UserRecord& record) {
  clsSecurity user;
  user.osLogin = record.login;
  user.sPassword = record.password;
  user.sUserName = record.name;
  user.sGroup = clsSecurity::GroupOfDigest(record.group);
  user.sLastLogin = record.last_login;
  user.sLastUpdated = record.last_update;
  user.iMustChange = static_cast<std::int16_t>(record.must_change);
  user.iDisabled = static_cast<std::int16_t>(record.disabled);
  user.sSecurity = record.security;
  user.bLoggedIn = true;
  return user;
}

std::vector<std::string> TrimmedBanks(UserBanksTable& user_banks, std::int32_t id) {
  std::vector<std::string> codes;
  for (const std::string& code : user_banks.BanksOf(id)) codes.emplace_back(Trim(code));
  return codes;
}

bool OpenExisting(TableBase& table) {
  return table.Exists() && table.Open() > 0;
}

std::int32_t HighestId(UsersTable& users) {
  return users.Bottom("ID") ? std::max(users.Read().id, 0) : 0;
}

bool IsAsSeen(bool known, const UserRecord& record, UserBanksTable& banks, const clsSecurity& seen) {
  if (!known || !seen.bLoggedIn) return known == seen.bLoggedIn;
  clsSecurity stored = FromRecord(record);
  stored.sBankCodes = TrimmedBanks(banks, record.id);
  return stored.SameSettings(seen);
}

// The rights as the field takes them: filled with granted ones to its width. What is granted beyond the width
// says nothing that its absence would not, and is cut.
std::string StoredRights(UsersTable& users, const std::string& rights) {
  const std::optional<FieldProperties> field = users.Data().GetFieldProperties(users.Handle(), "SECURITY");
  if (!field) return rights;
  const auto width = static_cast<std::size_t>(field->width);
  std::string bytes = ToWindows1252(rights).value_or(rights);
  while (bytes.size() > width && bytes.back() == '0') bytes.pop_back();
  if (bytes.size() < width) bytes.resize(width, '0');
  return FromWindows1252(bytes);
}

}  // namespace

bool clsSecurity::LoadUserSecurity(const TableHome& home, std::string_view login) {
  *this = clsSecurity();
  if (Trim(login).empty()) return false;
  UsersTable users(home);
  if (!OpenExisting(users) || !users.SeekLogin(login)) return false;
  const UserRecord record = users.Read();
  *this = FromRecord(record);
  UserBanksTable user_banks(home);
  if (OpenExisting(user_banks)) sBankCodes = TrimmedBanks(user_banks, record.id);
  iBankCount = static_cast<std::int16_t>(sBankCodes.size());
  return true;
}

std::optional<clsSecurity> clsSecurity::GetUserSecurity(const TableHome& home, std::string_view login) {
  clsSecurity user;
  return user.LoadUserSecurity(home, login) ? std::optional(user) : std::nullopt;
}

std::vector<clsSecurity> clsSecurity::AllUsers(const TableHome& home) {
  std::vector<clsSecurity> all;
  UsersTable users(home);
  if (!OpenExisting(users)) return all;
  for (bool found = users.Top("LOGIN"); found; found = users.Skip()) all.push_back(FromRecord(users.Read()));
  return all;
}

std::string clsSecurity::UsersProblem(const TableHome& home) {
  UsersTable users(home);
  UserBanksTable user_banks(home);
  for (TableBase* table : {static_cast<TableBase*>(&users), static_cast<TableBase*>(&user_banks)}) {
    if (!table->Exists()) {
      const std::string why = WhyLost(home, table->Name());
      if (!why.empty()) return table->Name() + " is missing, but " + why + ".  Have it brought back";
    } else if (const int code = table->OpenQuietly({}, false); code <= 0) {
      return table->Name() + " could not be opened: " + table->WhyNotOpen(code) + " (" +
             std::to_string(code) + ").  \"escrowctl verify\" says what is wrong with it";
    }
  }
  return {};
}

clsSecurity clsSecurity::NewUser() {
  clsSecurity user;
  user.sGroup = "User";
  user.iMustChange = 1;
  return user;
}

bool clsSecurity::IsLoginUnique(const TableHome& home, std::string_view login, std::int32_t id) {
  UsersTable users(home);
  return !OpenExisting(users) || !users.SeekLogin(login) || users.Read().id == id;
}

std::string clsSecurity::NewLoginProblem(const TableHome& home, std::string_view login) {
  constexpr std::string_view kHardBlank = "\xC2\xA0";
  login = Trim(login);
  if (login.empty()) return "The login name is missing.  Type one.";
  if (login.starts_with(kHardBlank) || login.ends_with(kHardBlank))
    return "The login name begins or ends with a blank.  Type it without.";
  return IsLoginUnique(home, login, 0) ? "" : "Another user has this login name.  Choose another one.";
}

std::string clsSecurity::OwnAccountProblem(const clsSecurity& before) const {
  if (iDisabled != 0 && before.iDisabled == 0) return "You cannot disable your own account.";
  if (before.sGroup == "Administrator" && Trim(sGroup) != "Administrator")
    return "You cannot take the group Administrator from your own account.";
  return {};
}

int clsSecurity::SaveUserSecurity(const TableHome& home, const DateTime& now, const clsSecurity* seen) {
  UserChange change(home);
  if (const int code = change.Begin(); code != engine::kSuccess) return code;
  UsersTable& users = change.Users();
  UserRecord record;
  record.id = HighestId(users) + 1;
  const bool known = users.SeekLogin(osLogin);
  if (known) record = users.Read();
  if (seen != nullptr && !IsAsSeen(known, record, change.Banks(), *seen)) return change.End(kUserChanged);
  if (seen != nullptr && known) {
    sPassword = record.password;
    sLastLogin = record.last_login;
  }
  sLastUpdated = FormatDateTime(now, "mm/dd/yyyy") + " @ " + FormatDateTime(now, "h:nn:ss AMPM");
  record.login = Trim(osLogin);
  record.password = sPassword;
  record.name = sUserName;
  record.group = Digest(Trim(sGroup));
  record.last_update = sLastUpdated;
  record.last_login = sLastLogin;
  record.must_change = iMustChange;
  record.disabled = iDisabled;
  record.security = StoredRights(users, sSecurity);
  int code = known ? users.Update(record) : users.Add(record);
  if (code == engine::kSuccess) code = change.DeleteBanks(record.id);
  for (const std::string& bank : sBankCodes)
    if (code == engine::kSuccess) code = change.Banks().Add({record.id, std::string(Trim(bank))});
  iBankCount = static_cast<std::int16_t>(sBankCodes.size());
  return change.End(code);
}

int clsSecurity::DeleteUserSecurity(const TableHome& home, std::string_view login,
                                    std::string_view current_login) {
  UserChange change(home);
  if (const int code = change.Begin(); code != engine::kSuccess) return code;
  if (!change.Users().SeekLogin(login)) return change.End(engine::kNoRecord);
  const UserRecord record = change.Users().Read();
  if (EqualsIgnoreCase(Trim(record.login), Trim(current_login))) {
    home.boxes.Critical("User Delete", "You cannot delete your own account.");
    return change.End(kOwnAccount);
  }
  int code = change.Users().Delete();
  if (code == engine::kSuccess) code = change.DeleteBanks(record.id);
  return change.End(code);
}

int clsSecurity::ForcePasswordResets(const TableHome& home, int* count) {
  *count = 0;
  UserChange change(home);
  int code = change.Begin();
  if (code != engine::kSuccess) return code;
  UsersTable& users = change.Users();
  for (bool found = users.Top("LOGIN"); found && code == engine::kSuccess; found = users.Skip()) {
    UserRecord record = users.Read();
    record.must_change = 1;
    code = users.Update(record);
    ++*count;
  }
  return change.End(code);
}

}  // namespace tallwick
