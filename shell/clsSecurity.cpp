#include "shell/clsSecurity.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "shell/sha256.h"
#include "tables/users_table.h"

namespace tallwick {
namespace {

// An unknown digest counts as the group with the least to say.
std::string GroupName(std::string_view digest) {
  for (std::string_view name : {"Administrator", "Power User"}) {
    if (clsSecurity::Digest(name) == digest) return std::string(name);
  }
  return "User";
}

}  // namespace

bool clsSecurity::LoadUserSecurity(const TableHome& home, std::string_view login) {
  *this = clsSecurity();
  if (Trim(login).empty()) return false;
  UsersTable users(home);
  if (!users.Exists() || users.Open() <= 0 || !users.SeekLogin(login)) return false;
  const UserRecord user = users.Read();
  osLogin = user.login;
  sPassword = user.password;
  sUserName = user.name;
  sGroup = GroupName(user.group);
  sLastLogin = user.last_login;
  sLastUpdated = user.last_update;
  iMustChange = static_cast<std::int16_t>(user.must_change);
  iDisabled = static_cast<std::int16_t>(user.disabled);
  sSecurity = user.security;

  UserBanksTable user_banks(home);
  if (user_banks.Exists() && user_banks.Open() > 0) {
    for (const std::string& code : user_banks.BanksOf(user.id)) sBankCodes.emplace_back(Trim(code));
  }
  iBankCount = static_cast<std::int16_t>(sBankCodes.size());
  bLoggedIn = true;
  return true;
}

bool clsSecurity::IsSecurityOff(int right) const {
  const std::string rights = ToWindows1252(sSecurity).value_or(sSecurity);
  if (right < 1 || right > static_cast<int>(rights.size())) return true;
  return rights[static_cast<std::size_t>(right) - 1] == '0';
}

bool clsSecurity::MayUseBank(std::string_view bank_code) const {
  return std::find(sBankCodes.begin(), sBankCodes.end(), Trim(bank_code)) != sBankCodes.end();
}

std::string clsSecurity::Digest(std::string_view text) {
  return Sha256Hex(ToWindows1252(text).value_or(std::string(text)));
}

}  // namespace tallwick
