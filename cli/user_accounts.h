// The suite's users as this program writes them: a record in USERS and one per bank in USERSESC, which change
// together.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"
#include "tables/users_table.h"

namespace tallwick::cli {

struct UserAccount {
  std::string login;
  std::string name;
  std::string group;   // in clear: "Administrator", "Power User" or "User"
  std::string rights;  // filled with "0" (granted) to the field's width
  std::vector<std::string> banks;
};

class UserAccounts {
 public:
  explicit UserAccounts(const TableHome& home) : data_(home.data), users_(home), banks_(home) {}

  // Opens both tables, made where they are missing. False after a message.
  bool Open();
  // Adds the user, or changes the one with this login. 0 or an engine code; then nothing has changed.
  int Save(const UserAccount& account, const DateTime& now);
  // Removes the user with the banks. engine::kNoRecord for an unknown login.
  int Delete(std::string_view login);
  // Makes every user choose a new password. 0 or a code; `count` are those changed.
  int ResetPasswords(int* count);

  UsersTable& Users() { return users_; }
  std::vector<std::string> BanksOf(const UserRecord& user) { return banks_.BanksOf(user.id); }

 private:
  int SaveUser(const UserAccount& account, const DateTime& now, std::int32_t* id);
  int SaveBanks(std::int32_t id, const std::vector<std::string>& banks);
  int DeleteBanks(std::int32_t id);
  int EndUnit(int code);

  clsKVRData& data_;
  UsersTable users_;
  UserBanksTable banks_;
};

// The group whose digest a user record holds, in clear; "User" for an unknown one.
std::string GroupOf(const UserRecord& user);

}  // namespace tallwick::cli
