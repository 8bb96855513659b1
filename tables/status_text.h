// The display texts of status codes, exactly as grids and reports show them; some end with a blank.
#pragma once

#include <string>
#include <string_view>

#include "tables/deposit_table.h"
#include "tables/voucher_table.h"

namespace tallwick {

std::string CheckStatusText(std::string_view code);
std::string WireStatusText(std::string_view code);
// True while the bank has not done with a transaction: neither cleared, voided nor stopped. A status that is
// not known counts as outstanding.
bool IsOutstanding(std::string_view status);
// Vouchers and deposit items: "Outstanding" or "Cleared".
std::string VoucherStatusText(std::string_view code);
// Of a whole voucher: "Used" where a check has taken it, though nobody may have marked it cleared. It waits for
// nothing then.
std::string VoucherStatusText(const VoucherRecord& voucher);
// Of a whole deposit: "Partly Cleared" where some of its items are, and others not.
std::string DepositStatusText(const DepositRecord& deposit);

}  // namespace tallwick
