// Copy of the escrow data into the copy folder, and back. No unit of work is half done in a copy; a copy is
// proven by digests before it counts; a restore brings back all of it or nothing.
#pragma once

#include <string>
#include <vector>

#include "maintenance/work_progress.h"
#include "shell/session.h"

namespace tallwick {

struct CopyOutcome {
  bool completed = false;
  std::string message;              // the last one, "Copy Databases Aborted..."
  std::vector<std::string> files;   // copied or restored
  std::vector<std::string> failed;  // that could not be
};

// Asks, copies, and says how it ended; with `tells_abort` off a caller says so of an abort.
CopyOutcome CopyDatabases(Session& session, WorkProgress& progress, bool tells_abort = true);

// Asks, restores with the escrow files for this workstation alone, and says how it ended.
CopyOutcome RestoreDatabases(Session& session, WorkProgress& progress);

}  // namespace tallwick
