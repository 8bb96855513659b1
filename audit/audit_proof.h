// Whether an audit log stands as it was written, by its companion (audit_chain.h).
//
// What can be shown: no byte between the first and the last record was changed, removed or put in since it
// was recorded, and which lines nobody recorded when they were written. Such lines are a problem when they
// have the form of this program's own entries, or of none; what only other programs of the suite write is
// named and not proven. Entries may be missing at the very end when the last records were removed with them;
// against that somebody outside keeps a seal, the digest of the last record of a day, which a later proof
// must find again.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "audit/unrecorded_lines.h"
#include "core/clock.h"
#include "core/file_system.h"
#include "store/engine/file.h"

namespace tallwick {

struct AuditProof {
  bool proven = false;  // there are no problems
  std::int64_t records = 0;
  std::int64_t additions = 0;       // events of the log that tell of a new record
  bool tells_switching_on = false;  // an entry of the log says that the bank's trail was switched on
  std::string since;                // "2024-03-04 14:07:31" of the first record; "" without records
  std::string seal;                 // digest of the last record; "" without records
  // Lines before this one are older than the companion.
  std::int64_t recorded_from = 1;
  // Behind it: lines that were not recorded when they were written and are no problem: of other programs, or
  // older than the seal.
  std::vector<UnrecordedLines> unrecorded;
  // Sentences for a person, UTF-8.
  std::vector<std::string> problems;  // the log is not as it was written
  std::vector<std::string> notes;     // what else the companion tells
};

struct AuditPlace {
  const FileSystem& files;
  engine::FileLayer& disk;
  Clock& clock;
  std::string log_path;  // held form
};

// `seal` (any case, may be empty) is one that an earlier proof gave: it must be found among the records, and
// unrecorded lines that were taken up before it are known.
AuditProof ProveAuditLog(const AuditPlace& place, std::string_view seal = {});

// One sentence: "Proven: ..." or "NOT proven: ...".
std::string ProofSummary(const AuditProof& proof);

}  // namespace tallwick
