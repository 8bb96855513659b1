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
  std::string message;     // the last one, "Copy Databases Aborted..."
  std::string stays = {};  // of an aborted copy: what is in the copy folder now; "" where it is untouched
  std::vector<std::string> files;   // copied or restored
  std::vector<std::string> failed;  // that could not be
};

// The command: asks for the right, then the person, copies, and says how it ended.
CopyOutcome CopyDatabases(Session& session, WorkProgress& progress);
// The same within another command, which has asked for its own right and says of an abort itself.
CopyOutcome BackUpDatabases(Session& session, WorkProgress& progress);

// Asks, restores with the escrow files for this workstation alone, and says how it ended.
CopyOutcome RestoreDatabases(Session& session, WorkProgress& progress);

}  // namespace tallwick
