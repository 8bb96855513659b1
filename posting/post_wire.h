// The posting step of a wire, below any screen: the wire and its cross-reference are written as one unit of
// work, both or none. `guard`: see post_unit.h.
#pragma once

#include <string>
#include <string_view>

#include "posting/post_unit.h"
#include "tables/bank_tables.h"

namespace tallwick {

// Appends the wire to the open tables of a bank, with its cross-reference. Shows nothing.
PostOutcome PostWire(BankTables& bank, XrefTable& xrefs, std::string_view bank_code, const WireRecord& wire,
                     const PostGuard& guard = {});

// Writes `after` over the wire as it was read (`before`), which has the same number, and moves its
// cross-reference to another file.
PostOutcome RewriteWire(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const WireRecord& before, const WireRecord& after, const PostGuard& guard = {});

// Removes the wire (as it was read) and its cross-reference.
PostOutcome RemoveWire(BankTables& bank, XrefTable& xrefs, std::string_view bank_code, const WireRecord& wire,
                       const PostGuard& guard = {});

// The message for an outcome that is not done.
std::string WireFailureMessage(const PostOutcome& outcome, std::string_view wire_number);

}  // namespace tallwick
