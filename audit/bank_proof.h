// The proof of a bank's audit log, held against what the bank itself says: that it keeps a trail, and what
// was posted. A log that vanished together with its companion leaves no other trace.
#pragma once

#include <string_view>

#include "audit/audit_proof.h"
#include "shell/session.h"

namespace tallwick {

// As ProveAuditLog. Where the bank keeps an audit trail and has postings, no log is a problem; so is a log
// that tells of fewer additions than the bank has postings, unless it tells too when the trail was switched
// on, or the seal is known.
AuditProof ProveBankLog(Session& session, std::string_view bank_code, std::string_view seal = {});

}  // namespace tallwick
