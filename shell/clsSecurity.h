// A user of the suite, in memory: who it is, what may be used (a rights string) and which banks may be worked
// with. One object is the current user; maintenance loads, changes and saves others.
//
// Invariants: the group goes to the table only as a digest; a password is copied as it stands and looked at
// by nobody; a user's record and the rows of the user's banks change together or not at all.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/clock.h"
#include "tables/table_base.h"

namespace tallwick {

// Beside the engine's codes: the user's own account, which the user was told cannot be deleted.
inline constexpr int kOwnAccount = 1;
// And: the user is not what the caller had seen; somebody else has changed, deleted or added it since.
inline constexpr int kUserChanged = 2;

class clsSecurity {
 public:
  std::string osLogin;
  std::string sPassword;  // as the suite stores it
  std::string sUserName;
  std::string sGroup;  // in clear: "Administrator", "Power User" or "User"
  std::string sLastLogin;
  std::string sLastUpdated;
  std::int16_t iMustChange = 0;
  std::int16_t iDisabled = 0;
  std::string sSecurity;                // one character per right number, "0" = granted
  bool bLoggedIn = false;               // a user record has been loaded
  std::vector<std::string> sBankCodes;  // trimmed, in index order
  std::int16_t iBankCount = 0;

  // Reads the user and the user's banks from the suite's tables. False, with everything empty, for a login
  // that is not among the users (or where the tables are missing or do not open).
  bool LoadUserSecurity(const TableHome& home, std::string_view login);
  // The same for another user's record, for maintenance.
  static std::optional<clsSecurity> GetUserSecurity(const TableHome& home, std::string_view login);
  // Every user in login order, without the banks. None where the tables are missing or do not open.
  static std::vector<clsSecurity> AllUsers(const TableHome& home);

  // Opens both tables of users once, without a message: why they cannot be used, or "". Where they were never
  // made there is nothing wrong. To be asked before an answer that a table out of reach would make a wrong
  // one: no users, or no such user.
  static std::string UsersProblem(const TableHome& home);

  // What a new user is before anybody has said more: in the group "User", with every right, and without a
  // password, so that one must be chosen at the next login.
  static clsSecurity NewUser();

  // Why nobody new can have the login: it is missing, is another user's, or has a blank at an end that no
  // trim takes away, so that two names would look alike. "" when nothing is wrong.
  static std::string NewLoginProblem(const TableHome& home, std::string_view login);
  // Why nobody may give the own account these values, `before` being what it had: it would lock the person
  // out, and with the last administrator everybody. "" when nothing is wrong.
  std::string OwnAccountProblem(const clsSecurity& before) const;
  // True when both have the same login, name, group, rights, banks and marks: all that maintenance changes.
  bool SameSettings(const clsSecurity& other) const;
  // True when no record of another user number has this login. 0 stands for a user not yet saved.
  static bool IsLoginUnique(const TableHome& home, std::string_view login, std::int32_t id);
  // Adds the user under the next number, or changes the one with this login, and the banks with it; makes
  // missing tables, after a question where USERS was there before. Rights not mentioned are granted. 0;
  // engine::kErrorFieldValue for a value that does not fit (clsKVRData::LastFieldProblem says which); or
  // another code. Then nothing has changed.
  // `seen` is the user as the caller loaded it, or one who was not there: where that is so no longer the
  // result is kUserChanged. The password and the last login of a user who was loaded stay as they are stored.
  int SaveUserSecurity(const TableHome& home, const DateTime& now, const clsSecurity* seen = nullptr);
  // Removes the user with the banks. 0; engine::kNoRecord for an unknown login; kOwnAccount, after its
  // message, for that of the current user; or another code, and nothing has changed.
  static int DeleteUserSecurity(const TableHome& home, std::string_view login,
                                std::string_view current_login);
  // Makes every user choose a new password. 0 or a code; `count` are those changed.
  static int ForcePasswordResets(const TableHome& home, int* count);

  // True when the right (rights.h) is granted: its character is "0", or the rights string does not reach it.
  bool IsSecurityOff(int right) const;
  // Grants or takes a right; a string that does not reach it is filled with granted ones up to there.
  void SetRight(int right, bool granted);

  bool IsAdministrator() const { return bLoggedIn && sGroup == "Administrator"; }
  // Whether this user may use the right while security is on: 0 asks for none, kAdministrator for the group;
  // a login that is not among the users has no right.
  bool MayUse(int right) const;
  bool MayUseBank(std::string_view bank_code) const;

  // The form in which group names are stored: SHA-256 of the Windows-1252 text, 64 upper-case hexadecimal
  // digits.
  static std::string Digest(std::string_view text);
  // The group whose digest a record holds; "User", which may do least, for an unknown one.
  static std::string GroupOfDigest(std::string_view digest);
};

inline constexpr std::string_view kUserGroups[] = {"Administrator", "Power User", "User"};

// A password of capitals and digits. `random` gives numbers from 0 up to, not including, 1. Nullopt when it
// gives another one: "PasswordGenerator has a problem.".
std::optional<std::string> PasswordGenerator(int length, const std::function<double()>& random);
// The same with random numbers seeded from the clock.
std::string PasswordGenerator(int length, Clock& clock);

inline constexpr std::string_view kPasswordGeneratorProblem = "PasswordGenerator has a problem.";

}  // namespace tallwick
