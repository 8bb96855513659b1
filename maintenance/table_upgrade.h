// Bringing one table to the present layout. The table is whole at every moment: the new one is written beside
// the old and takes its place in one step. A value that the new layout cannot hold stops the update of its
// table, which stays as it is; so does a field that the old table lacks and that is never made up
// (MayBeMadeUp): a 0 would pass for money, a blank status for an open item. Where fields fall away, the old
// table stays beside the new as ".OLD".
#pragma once

#include <string>

#include "maintenance/maintained_table.h"
#include "store/clsKVRData.h"

namespace tallwick {

struct UpgradeResult {
  int code = 0;      // engine code; engine::kStopped when the person stopped it
  std::string text;  // what was done, or why not
  // Fields that the old table lacked, empty in its records now: "WIREACCTDA, WIRESPARE"; "" for none.
  std::string made_up = {};
};

// Needs the folder taken (ExclusiveAccess).
UpgradeResult UpgradeTable(const Session& session, const MaintainedTable& table,
                           const engine::Progress& progress);

}  // namespace tallwick
