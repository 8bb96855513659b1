// What a bank's last reconciliation closes: the periods at or before it, and what stands in the records that
// are posted to them. Screens show it when a record is loaded, and ask again with the bank as it is then
// before they write: the reconciliation may have come in between, on another workstation.
#pragma once

#include <string>

#include "tables/bank_table.h"
#include "tables/check_table.h"
#include "tables/deposit_table.h"
#include "tables/voucher_table.h"
#include "tables/wire_table.h"

namespace tallwick {

// True for a period at or before the bank's last reconciliation.
bool IsReconciled(const Period& period, const BankRecord& bank);

// Why changes to a posted record are restricted, for the screen; "" when they are not.
std::string RestrictionOf(const CheckRecord& check, const BankRecord& bank);
std::string RestrictionOf(const WireRecord& wire, const BankRecord& bank);
std::string RestrictionOf(const VoucherRecord& voucher, const BankRecord& bank);
std::string RestrictionOf(const DepositRecord& deposit, const BankRecord& bank);

// Whether the statement on which the wire cleared has been reconciled.
bool StatementIsReconciled(const WireRecord& wire, const BankRecord& bank);

// The same for the status of a cleared, voided or stopped check alone, which counts in its statement.
std::string StatusRestriction(const CheckRecord& check, const BankRecord& bank);

}  // namespace tallwick
