// Fills a file's ledger from the tables of every bank.
#pragma once

#include <string>
#include <string_view>

#include "reports/file_ledger.h"
#include "shell/session.h"

namespace tallwick {

struct LedgerReading {
  FileLedger ledger;
  // Why the ledger is not to be had or says nothing; "" for a ledger with transactions. It reads "No banks
  // have been created." or "24-0117 does NOT have any transactions posted.", or names the bank whose tables
  // did not open or the table whose index is damaged.
  std::string message;
  bool complete = true;  // false when a table could not be read whole: the figures must not be shown
};

// The file number is taken in upper case. Walks every bank in name order. The file's rows are found by the
// tables' file number tags, so the cost follows the file's items, not the banks' sizes.
LedgerReading ReadFileLedger(Session& session, std::string_view file_number);

}  // namespace tallwick
