// The transactions switch: whether transactions may be entered. It is kept in the company data path, in the
// file "Transactions.dat", so that every workstation reads the same one.
//
// The file's first character is the switch: "T" lets transactions be entered, anything else, an empty file
// included, locks them. A company without the file has never been locked.
#pragma once

#include <string_view>

#include "shell/session.h"

namespace tallwick {

// What is said to whoever tries to enter one while they are locked.
inline constexpr std::string_view kTransactionsLocked = "Transactions Locked...";

bool TransactionsOpen(const Session& session);
// False when the file could not be written; the switch is then as it was.
bool SetTransactionsOpen(Session& session, bool open);

}  // namespace tallwick
