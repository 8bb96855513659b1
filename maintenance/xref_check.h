// The cross-reference check of one bank: every transaction has its references, and every reference its
// transaction. Works beside other workstations: what it creates is created under the transaction's lock.
#pragma once

#include <string>
#include <vector>

#include "maintenance/work_progress.h"
#include "shell/session.h"

namespace tallwick {

struct XrefCheckOptions {
  bool create_missing = false;
  bool stop_on_errors = false;  // at the first missing or invalid entry
};

struct XrefFinding {
  std::string item;  // "Check 10452", "Deposit 20240315 1 item 2"
  std::string file_number;
  std::string problem;   // "Missing", "Invalid", "Missing - created", "Missing - not created (…)"
  bool invalid = false;  // a reference to what is not there; else a missing one
  bool created = false;
};

struct XrefCheckResult {
  bool opened = false;     // false after a message: no right to it, or the bank's tables could not be had
  bool completed = false;  // nothing stopped it
  int examined = 0;        // transactions and references
  std::vector<XrefFinding> findings;

  int Missing() const;
  int Invalid() const;
  int Created() const;
};

// Checks the selected bank.
XrefCheckResult CheckXReferences(Session& session, const XrefCheckOptions& options, WorkProgress& progress);

}  // namespace tallwick
