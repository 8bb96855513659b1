// The slip that goes to the bank with a deposit: the account, the items 1 to 15 in use, and what they add up
// to.
#pragma once

#include <string_view>

#include "core/print_document.h"
#include "tables/bank_table.h"
#include "tables/deposit_table.h"

namespace tallwick {

PrintDocument MakeDepositSlip(std::string_view company, const BankRecord& bank, const DepositRecord& deposit);

}  // namespace tallwick
