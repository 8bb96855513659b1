#include "tables/users_table.h"

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr std::array kUserColumns = {
    Number<&UserRecord::id>("ID", 9),
    Text<&UserRecord::login>("LOGIN", 40),
    AsStored<&UserRecord::password>("PASSWORD", 64),
    Text<&UserRecord::name>("USERNAME", 60),
    Text<&UserRecord::group>("GROUP", 64),
    Text<&UserRecord::last_update>("LASTUPDATE", 30),
    Text<&UserRecord::last_login>("LASTLOGIN", 30),
    Number<&UserRecord::must_change>("MUSTCHANGE", 1),
    Number<&UserRecord::disabled>("DISABLED", 1),
    AsStored<&UserRecord::security>("SECURITY", 100),
};

constexpr auto kUserFields = FieldsOf(kUserColumns);

constexpr TagLayout kUserTags[] = {
    {"ID", "ID", kLiveRecords, true},
    {"LOGIN", "UPPER (LOGIN)", kLiveRecords, true},
};

constexpr std::array kUserBankColumns = {
    Number<&UserBankRecord::id>("ID", 9),
    Text<&UserBankRecord::bank_code>("BANKCODE", 8),
};

constexpr auto kUserBankFields = FieldsOf(kUserBankColumns);

constexpr TagLayout kUserBankTags[] = {{"ID", "ID", kLiveRecords}};

}  // namespace

constexpr TableLayout kUsersLayout{"USERS", false, kUserFields, kUserTags, TextsFor("Open Database Users"),
                                   {},      true};

constexpr TableLayout kUserBanksLayout{
    "USERSESC", false, kUserBankFields, kUserBankTags, TextsFor("Open Database Users"), {}, true};

UsersTable::UsersTable(const TableHome& home) : TypedTable(home, kUsersLayout, kUserColumns) {}

bool UsersTable::SeekLogin(std::string_view login) {
  return Data().SelectTag(Handle(), "LOGIN") && Reached(Data().PadSearch(Handle(), UpperKey(Trim(login))));
}

UserBanksTable::UserBanksTable(const TableHome& home)
    : TypedTable(home, kUserBanksLayout, kUserBankColumns) {}

bool UserBanksTable::FirstOfUser(std::int32_t id) {
  return Data().SelectTag(Handle(), "ID") && Reached(Data().SeekDatabaseNumber(Handle(), id));
}

bool UserBanksTable::NextOfUser(std::int32_t id) {
  return Reached(Data().SeekDatabaseNumberNext(Handle(), id));
}

std::vector<std::string> UserBanksTable::BanksOf(std::int32_t id) {
  std::vector<std::string> banks;
  for (bool found = FirstOfUser(id); found; found = NextOfUser(id)) banks.push_back(Read().bank_code);
  return banks;
}

}  // namespace tallwick
