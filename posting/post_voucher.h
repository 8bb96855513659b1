// The posting step of a voucher, below any screen: the voucher, its cross-reference and the bank's voucher
// counter are written as one unit of work, all of them or none. `guard`: see post_unit.h.
//
// Invariant: after a post the counter is at least as high as the voucher's number, so that the number after
// it is free.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "posting/post_unit.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"

namespace tallwick {

// The first number after the bank's counter (`last_used`) that no voucher has. Where the numbers end there,
// since one was mistyped or made up, the first that is free above those in use below.
std::int64_t NextVoucherNumber(VoucherTable& vouchers, std::int64_t last_used);

// Appends the voucher to the open tables of a bank with its cross-reference, and raises the counter where the
// number is above it. Shows nothing.
PostOutcome PostVoucher(BankTables& bank, BankTable& banks, XrefTable& xrefs, std::string_view bank_code,
                        const VoucherRecord& voucher, const PostGuard& guard = {});

// Writes `after` over the voucher as it was read (`before`), which has the same number, and moves its
// cross-reference to another file.
PostOutcome RewriteVoucher(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                           const VoucherRecord& before, const VoucherRecord& after,
                           const PostGuard& guard = {});

// Removes the voucher (as it was read) and its cross-reference. The counter stays: a number is issued once.
PostOutcome RemoveVoucher(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                          const VoucherRecord& voucher, const PostGuard& guard = {});

// The message for an outcome that is not done.
std::string VoucherFailureMessage(const PostOutcome& outcome, std::string_view voucher_number);

}  // namespace tallwick
