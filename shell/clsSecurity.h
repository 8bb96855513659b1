// The current user, in memory: who it is, what may be used (a rights string) and which banks may be worked
// with.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tables/table_base.h"

namespace tallwick {

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
  // that is not among the users (or where the tables are missing).
  bool LoadUserSecurity(const TableHome& home, std::string_view login);

  // True when the right (rights.h) is granted: its character is "0", or the rights string does not reach it.
  bool IsSecurityOff(int right) const;

  bool MayUseBank(std::string_view bank_code) const;

  // The form in which group names are stored: SHA-256 of the Windows-1252 text, 64 upper-case hexadecimal
  // digits.
  static std::string Digest(std::string_view text);
};

}  // namespace tallwick
