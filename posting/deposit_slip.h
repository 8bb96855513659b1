// The port to whatever prints a deposit slip.
#pragma once

#include "tables/bank_table.h"
#include "tables/deposit_table.h"

namespace tallwick {

class DepositSlipPrinter {
 public:
  virtual ~DepositSlipPrinter() = default;
  // Prints the slip of a posted deposit, with all items in use.
  virtual void PrintDepositSlip(const BankRecord& bank, const DepositRecord& deposit) = 0;
};

}  // namespace tallwick
