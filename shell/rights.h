// The rights of a user, as data. A right's number is its position in the rights string of the user record,
// counting from 1, so the numbers never change; 17 and 18 are unused.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tallwick {

enum class RightKind { kHeading, kCommand };

struct Right {
  int number;
  RightKind kind;
  std::string_view caption;
};

// Every right in the order in which a person is shown them: each heading before its commands. The numbers are
// not always in sequence.
std::span<const Right> RightsCatalogue();

// "P1" for the heading 1, "C2" for the command 2.
std::string RightKey(const Right& right);

// Rights that this program tests.
inline constexpr int kRightBankAccounts = 22;
inline constexpr int kRightClearChecks = 49;
inline constexpr int kRightClearDeposits = 50;
inline constexpr int kRightEscrowOffice = 51;
inline constexpr int kRightPostChecks = 52;
inline constexpr int kRightPostDeposits = 53;
inline constexpr int kRightPurgeFiles = 54;
inline constexpr int kRightReconcile = 55;
inline constexpr int kRightVoidChecks = 56;
inline constexpr int kRightWires = 57;
inline constexpr int kRightEscrowReports = 60;
// No number of the rights string: stands where only the group "Administrator" may.
inline constexpr int kAdministrator = -1;

inline constexpr std::string_view kCommandNotGranted =
    "You do not have the right to use this command.  Ask the administrator for it.";

}  // namespace tallwick
