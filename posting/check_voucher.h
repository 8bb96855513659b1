// What a voucher says about the check that names it.
#pragma once

#include <string>
#include <string_view>

#include "tables/voucher_table.h"

namespace tallwick {

// "Voucher dated March 15, 2024 to SMITH TITLE", a line "because " + reason where it has one, a line "for
// $1,250.00".
std::string VoucherSummary(const VoucherRecord& voucher);

// Warnings, each on its own line: the check is over the voucher's amount, of another file, or the voucher is
// consumed by a check, which must be another one. "" when there are none.
std::string VoucherWarnings(const VoucherRecord& voucher, Currency check_amount,
                            std::string_view file_number);

}  // namespace tallwick
