// Whether an audit log stands as it was written, by its companion (audit_chain.h).
//
// What can be shown: no byte between the first and the last record was changed, removed or put in since it
// was recorded. Entries may be missing at the very end when the last records were removed with them; against
// that somebody outside keeps a seal, the digest of the last record of a day, which a later proof must find
// again. Bytes behind the last record are not yet covered; the next entry takes them up.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"

namespace tallwick {

struct AuditProof {
  bool proven = false;  // there are no problems
  std::int64_t records = 0;
  std::string since;  // "2024-03-04 14:07:31" of the first record; "" without records
  std::string seal;   // digest of the last record; "" without records
  // Sentences for a person, UTF-8.
  std::vector<std::string> problems;  // the log is not as it was written
  std::vector<std::string> notes;     // what else the companion tells
};

// `log_path` in the held form. `seal` (any case, may be empty) is one that an earlier proof gave.
AuditProof ProveAuditLog(const FileSystem& files, std::string_view log_path, std::string_view seal = {});

// One sentence: "Proven: ..." or "NOT proven: ...".
std::string ProofSummary(const AuditProof& proof);

}  // namespace tallwick
