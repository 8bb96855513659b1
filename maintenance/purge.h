// Purging closed escrow files: which files are closed, and removing their transactions with every reference
// to them.
//
// A file is closed through a period when, in every bank, all its checks are cleared or voided, its deposit
// items and wires cleared and its vouchers used, its balance there is exactly 0, and each of its periods lies
// at or before that period and the bank's last reconciliation; and when every deposit ticket it has a part in
// holds closed files only, since a ticket goes whole. The file number "VOID" is never one of them. A balance
// that only other banks make up for stays: without it the bank's ledgers would no longer sum to its book
// balance.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "core/period.h"
#include "maintenance/work_progress.h"
#include "shell/session.h"

namespace tallwick {

struct ClosedFile {
  std::string number;
  std::vector<std::string> banks;
  int items = 0;              // checks, deposit items, wires and vouchers
  std::int32_t last_key = 0;  // its last period, see MakePeriodKey
};

struct PurgeSearch {
  bool whole = false;             // false: stopped, or a bank's tables could not be had (after a message)
  std::vector<ClosedFile> files;  // by number
};

PurgeSearch FindClosedFiles(Session& session, const Period& through, WorkProgress& progress);

struct PurgeResult {
  int code = 0;         // 0, or the engine's code, with everything as it was
  bool logged = false;  // the log has the numbers
};

// Removes the files' transactions and references, all in one unit of work, in which each bank notes the last
// period of what it lost, where that lies behind the one noted already. Then writes the file numbers to
// "Logs\Purged_Files.log". Needs the escrow files for this workstation alone.
PurgeResult PurgeFiles(Session& session, const std::vector<ClosedFile>& files, const Period& through,
                       WorkProgress& progress);

}  // namespace tallwick
