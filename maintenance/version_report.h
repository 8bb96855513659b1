// Whether the tables of the company have the layouts of this version of the program.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "maintenance/maintained_table.h"
#include "maintenance/work_progress.h"
#include "tables/layout.h"

namespace tallwick {

struct TableVersion {
  MaintainedTable table;
  std::optional<LayoutState> state;  // nullopt: it cannot be examined
  // "Escrow_Banks - current", "Escrow_Checks_ OUT-of-DATE", "Escrow_Checks version status not available."
  std::string text;
};

TableVersion ExamineVersion(const Session& session, const MaintainedTable& table);

// The tables of the whole company, the agent's included, and those of every bank.
std::vector<TableVersion> ReportVersions(const Session& session, WorkProgress& progress);

}  // namespace tallwick
