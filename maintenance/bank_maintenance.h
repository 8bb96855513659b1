// Keeping the records of the bank accounts. The right is "Escrow Bank Accounts"; while security is on a user
// keeps those banks only that are the user's own, an administrator all of them. Every change is in the
// bank's audit trail (bank_trail.h).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "maintenance/field_assignment.h"
#include "shell/session.h"

namespace tallwick {

// Whether the current user may look at the bank's record: whoever may work in the bank, and administrators.
bool MayReadBank(Session& session, std::string_view code);
// True when there is such a bank and the user may look at it; the bank table then stands on its record.
bool SeekBankAccount(Session& session, std::string_view code);
// What to say otherwise. Whoever may not look at a bank does not learn whether it is there.
std::string NoSuchBank(Session& session, std::string_view code);

// Adds a bank and makes its tables, after a question when tables of its code hold transactions already. What
// is not said: its books begin today, its periods have the form of its accounting date, its changes are
// logged. "" when it was added, and the bank table stands on its record; else why nothing was. The bank's
// trail begins with the first change behind it.
std::string AddBankAccount(Session& session, std::string_view code,
                           const std::vector<FieldAssignment>& values);

// Changes fields of a bank, all or none. "" when they are written; else why nothing was. The bank table then
// stands on the record.
std::string ChangeBankAccount(Session& session, std::string_view code,
                              const std::vector<FieldAssignment>& values);

}  // namespace tallwick
