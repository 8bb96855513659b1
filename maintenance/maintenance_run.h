// The maintenance commands: the questions that come before each, in their order, and the work on every table
// with the escrow files for this workstation alone. A table is whole at every moment, whatever fails.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "maintenance/exclusive_access.h"
#include "maintenance/maintained_table.h"
#include "maintenance/work_progress.h"
#include "shell/session.h"

namespace tallwick {

enum class MaintenanceOperation { kRebuild, kUpdateVersions, kPack, kPurge };

// "Rebuild & Reindex", "Update Database Versions", "Pack Databases", "Purge Files".
std::string_view OperationName(MaintenanceOperation operation);

// Whether the operation takes the agent's table: the one that looks at layouts does.
WithAgent AgentIn(MaintenanceOperation operation);

// Makes sure of the user's right, asks for a backup and makes it, asks for the lock-out and takes it. False
// when the command ends here, by the user's will or after a message.
bool PassProtocol(Session& session, MaintenanceOperation operation, WorkProgress& progress,
                  ExclusiveAccess& access);

struct TableOutcome {
  std::string table;
  bool done = false;
  std::string text;          // "Pack Result Code: 0"
  std::string made_up = {};  // as UpgradeResult says
};

struct MaintenanceOutcome {
  bool completed = false;  // every table is done
  int code = 0;            // the engine's, where exclusive access was refused
  std::vector<TableOutcome> tables;

  bool HasFailures() const;
};

// The whole command for every operation but the purge, whose work is a screen.
MaintenanceOutcome RunMaintenance(Session& session, MaintenanceOperation operation, WorkProgress& progress);

}  // namespace tallwick
