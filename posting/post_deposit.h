// The posting step of a deposit, below any screen: the deposit and both cross-references of each of its items
// are written as one unit of work, all of them or none. `guard`: see post_unit.h.
//
// Invariant: an item in use with a file number has exactly one record in ESCROW_XRFS and one in
// ESCROW_DEPOXRFS_<bank>; an item that is removed, or moved to another file, date, sequence or place in the
// deposit, takes its two records along.
#pragma once

#include <string>
#include <string_view>

#include "posting/post_unit.h"
#include "tables/bank_tables.h"

namespace tallwick {

// Appends the deposit to the open tables of a bank with its cross-references. Shows nothing.
PostOutcome PostDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const DepositRecord& deposit, const PostGuard& guard = {});

// Writes `after` over the deposit as it was read (`before`); its date and sequence may be others.
PostOutcome RewriteDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                           const DepositRecord& before, const DepositRecord& after,
                           const PostGuard& guard = {});

// Removes the deposit (as it was read) and the cross-references of its items.
PostOutcome RemoveDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                          const DepositRecord& deposit, const PostGuard& guard = {});

// The message for an outcome that is not done. `name` is the deposit's (DepositName).
std::string DepositFailureMessage(const PostOutcome& outcome, std::string_view name);

}  // namespace tallwick
