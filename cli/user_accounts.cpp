#include "cli/user_accounts.h"

#include <algorithm>

#include "core/text.h"
#include "core/text_format.h"
#include "shell/clsSecurity.h"

namespace tallwick::cli {

bool UserAccounts::Open() {
  for (TableBase* table : {static_cast<TableBase*>(&users_), static_cast<TableBase*>(&banks_)}) {
    if (!table->Exists() && table->Create() != engine::kSuccess) return false;
    if (table->Open() <= 0) return false;
  }
  return true;
}

int UserAccounts::EndUnit(int code) {
  if (code == engine::kSuccess) return data_.CommitUnit();
  data_.RollbackUnit();
  return code;
}

int UserAccounts::Save(const UserAccount& account, const DateTime& now) {
  if (const int code = data_.BeginUnit(); code != engine::kSuccess) return code;
  std::int32_t id = 0;
  int code = SaveUser(account, now, &id);
  if (code == engine::kSuccess) code = SaveBanks(id, account.banks);
  return EndUnit(code);
}

int UserAccounts::SaveUser(const UserAccount& account, const DateTime& now, std::int32_t* id) {
  UserRecord user;
  if (const bool last = users_.Bottom("ID"); last) user.id = std::max(users_.Read().id, 0);
  ++user.id;
  const bool known = users_.SeekLogin(account.login);
  if (known) user = users_.Read();
  user.login = account.login;
  user.name = account.name;
  user.group = clsSecurity::Digest(Trim(account.group));
  user.last_update = FormatDateTime(now, "mm/dd/yyyy") + " @ " + FormatDateTime(now, "h:nn:ss AMPM");
  const std::optional<FieldProperties> field = data_.GetFieldProperties(users_.Handle(), "SECURITY");
  user.security = account.rights;
  if (field && user.security.size() < static_cast<std::size_t>(field->width))
    user.security.resize(static_cast<std::size_t>(field->width), '0');
  *id = user.id;
  return known ? users_.Update(user) : users_.Add(user);
}

int UserAccounts::SaveBanks(std::int32_t id, const std::vector<std::string>& banks) {
  int code = DeleteBanks(id);
  for (const std::string& bank : banks)
    if (code == engine::kSuccess) code = banks_.Add({id, std::string(Trim(bank))});
  return code;
}

int UserAccounts::DeleteBanks(std::int32_t id) {
  while (banks_.FirstOfUser(id))
    if (const int code = banks_.Delete(); code != engine::kSuccess) return code;
  return engine::kSuccess;
}

int UserAccounts::Delete(std::string_view login) {
  if (!users_.SeekLogin(login)) return engine::kNoRecord;
  const std::int32_t id = users_.Read().id;
  if (const int code = data_.BeginUnit(); code != engine::kSuccess) return code;
  int code = users_.Delete();
  if (code == engine::kSuccess) code = DeleteBanks(id);
  return EndUnit(code);
}

int UserAccounts::ResetPasswords(int* count) {
  if (const int code = data_.BeginUnit(); code != engine::kSuccess) return code;
  int code = engine::kSuccess;
  *count = 0;
  for (bool found = users_.Top("LOGIN"); found && code == engine::kSuccess; found = users_.Skip()) {
    UserRecord user = users_.Read();
    user.must_change = 1;
    code = users_.Update(user);
    ++*count;
  }
  return EndUnit(code);
}

std::string GroupOf(const UserRecord& user) {
  for (std::string_view group : {"Administrator", "Power User"})
    if (clsSecurity::Digest(group) == user.group) return std::string(group);
  return "User";
}

}  // namespace tallwick::cli
