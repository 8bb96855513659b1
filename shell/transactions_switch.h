// The transactions switch: whether transactions may be entered. It is kept in the company data path, in the
// file "ESCROW_TRANSACTIONS.SWITCH", so that every workstation reads the same one. It says something about
// this office, not about its data, and so has a name that no copy of the data takes along.
//
// The file's first character is the switch: "T" lets transactions be entered, anything else, an empty file
// included, locks them. A company without the file has never been locked, unless an earlier build has left
// "Transactions.dat" of the same form: that one counts until the switch is thrown again, and then goes.
#pragma once

#include <string_view>

#include "shell/session.h"

namespace tallwick {

inline constexpr std::string_view kSwitchFile = "ESCROW_TRANSACTIONS.SWITCH";
inline constexpr std::string_view kFormerSwitchFile = "Transactions.dat";

// What is said to whoever tries to enter one while they are locked.
inline constexpr std::string_view kTransactionsLocked = "Transactions Locked...";

bool TransactionsOpen(const Session& session);
// False when the file could not be written; the switch is then as it was.
bool SetTransactionsOpen(Session& session, bool open);

}  // namespace tallwick
