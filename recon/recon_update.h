// Writing a reconciliation into the bank record, and taking the last one back. The bank record changes in one
// unit of work; beside it the history (recon_history.h) says what it held before.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "recon/recon_history.h"
#include "shell/session.h"

namespace tallwick {

// What a bank record becomes when it is reconciled to the statement with this ending check book balance.
BankState StateAfter(const BankRecord& bank, const Period& statement, Currency ending);

// Each works on the bank record as the caller has read it, and reads it again over `bank` when it has
// written. "" when done; else why nothing was written, in words for a person: the record was changed on
// another workstation, is locked, or a file could not be written.
//
// `same_figures` computes once more and says whether that comes to what is recorded. It is asked when no
// other workstation can write any more, and must show nothing.
std::string RecordReconciliation(Session& session, BankRecord* bank, const Period& statement,
                                 const ReconEntries& entries, Currency ending,
                                 const std::function<bool()>& same_figures);
std::string TakeBackReconciliation(Session& session, BankRecord* bank, const PastReconciliation& last,
                                   std::string_view reason);

// The last reconciliation of the bank, when it can be taken back; else why it cannot.
struct TakeBackOffer {
  std::optional<PastReconciliation> last;
  std::string refusal;  // "" when it can be
};
TakeBackOffer OfferTakeBack(Session& session, const BankRecord& bank);

}  // namespace tallwick
