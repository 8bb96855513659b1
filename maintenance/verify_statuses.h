// Statuses of checks, deposit lines and wires that no figure knows how to take: each counts them in its own
// way, so that figures of one account disagree.
#pragma once

#include <vector>

#include "maintenance/verify_problem.h"
#include "tables/bank_tables.h"

namespace tallwick {

// Looks at every live record of those tables of the bank that are open: for a status that is none, and for a
// void or stop behind the last reconciliation without the statement period in which it counts. Of many problems of a table the first are
// named and the others counted.
void VerifyStatuses(BankTables& bank, const Period& reconciled, std::vector<CompanyProblem>* problems);

}  // namespace tallwick
