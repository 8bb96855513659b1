// The form of a bank's periods, month and year or day, and what stands against changing it.
#pragma once

#include <string>

#include "tables/bank_table.h"

namespace tallwick {

// Why the bank's record cannot change from `before` to `after`; "" when it can, as where the form stays or the
// bank has no transactions. A period of the other form equals none that a clerk can type or reconcile, and a
// month that was reconciled does not close the days in it.
std::string PeriodFormRefusal(const TableHome& home, const BankRecord& before, const BankRecord& after);

}  // namespace tallwick
