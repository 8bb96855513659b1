// Numbers of a table that are none: "12a45.00", "1,250.00", asterisks. No figure that they belong to is
// known.
#pragma once

#include <vector>

#include "maintenance/verify_problem.h"
#include "tables/table_base.h"

namespace tallwick {

// Looks into every numeric field of the open table's live records. A blank one is zero. Of many problems the
// first are named and the others counted.
void VerifyNumbers(TableBase& table, std::vector<CompanyProblem>* problems);

}  // namespace tallwick
