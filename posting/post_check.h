// The posting step of a check, below any screen: the check, its cross-reference and the voucher that it
// consumes are written as one unit of work, all of them or none. `guard`: see post_unit.h.
#pragma once

#include <string>
#include <string_view>

#include "posting/post_unit.h"
#include "tables/bank_tables.h"

namespace tallwick {

// A voided check pays nobody: its voucher is free for another one.
bool UsesVoucher(const CheckRecord& check);

// Appends the check to the open tables of a bank, with its cross-reference; a voucher that it names, and that
// no check has consumed yet, gets the check's number. Shows nothing.
PostOutcome PostCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                      const CheckRecord& check, const PostGuard& guard = {});

// Writes `after` over the check as it was read (`before`): moves its cross-reference to another file and lets
// go of, or takes, vouchers as they changed; a voided check holds none. What it lets go of passes to another
// check of the voucher's file that names it, else it is free. Under another number the old record
// and cross-reference go and new ones come; code 20 when that number is posted.
PostOutcome RewriteCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                         const CheckRecord& before, const CheckRecord& after, const PostGuard& guard = {});

// Removes the check (`check` as it was read) and its cross-reference, and lets go of the voucher that it
// consumed.
PostOutcome RemoveCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const CheckRecord& check, const PostGuard& guard = {});

// The message for an outcome that is not done.
std::string PostFailureMessage(const PostOutcome& outcome, std::string_view check_number);

}  // namespace tallwick
