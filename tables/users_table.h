// The suite's shared tables: USERS, one record per user, and USERSESC, one per bank that a user may work
// with. The suite makes them; the layouts here are for places where it is not installed. Its own may have
// other widths.
#pragma once

#include "tables/typed_table.h"

namespace tallwick {

struct UserRecord {
  std::int32_t id = 0;  // from 1
  std::string login;
  std::string password;  // as the suite stores it
  std::string name;
  std::string group;  // SHA-256 of the group's name, 64 upper-case hexadecimal characters
  std::string last_update;
  std::string last_login;
  std::int32_t must_change = 0;  // 1 = a new password at the next login
  std::int32_t disabled = 0;
  std::string security;  // one character per right number; "0" = granted. Leading blanks count.
  friend bool operator==(const UserRecord&, const UserRecord&) = default;
};

struct UserBankRecord {
  std::int32_t id = 0;  // of the user
  std::string bank_code;
  friend bool operator==(const UserBankRecord&, const UserBankRecord&) = default;
};

extern const TableLayout kUsersLayout;
extern const TableLayout kUserBanksLayout;

class UsersTable : public TypedTable<UserRecord> {
 public:
  explicit UsersTable(const TableHome& home);
  bool SeekLogin(std::string_view login);  // in the tag LOGIN; the whole name must fit
};

class UserBanksTable : public TypedTable<UserBankRecord> {
 public:
  explicit UserBanksTable(const TableHome& home);
  bool FirstOfUser(std::int32_t id);  // in the tag ID
  bool NextOfUser(std::int32_t id);
  std::vector<std::string> BanksOf(std::int32_t id);  // in index order
};

}  // namespace tallwick
