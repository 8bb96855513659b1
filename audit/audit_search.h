// Searching an audit log. How a criterion is met:
//   - reference, login and computer: the entry's text holds the one given, in capitals or not ("104" finds
//     10452);
//   - transactions, kinds, controls and grids: the entry has one of those chosen, compared whole, in capitals
//     or not; the control "txtAmount" also stands for every member of an array of that name;
//   - dates: on or after the first, on or before the last; one of them may be missing. An entry whose date
//     cannot be read meets no dates.
// A criterion without a value is not in force. An entry must meet all in force, or any one of them; with none
// in force every entry is found.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audit/audit_log.h"

namespace tallwick {

struct AuditCriteria {
  std::string reference;  // UTF-8, as all texts here
  std::string login;
  std::string computer;
  std::vector<std::string> tx_names;
  Date from;  // empty: from the first
  Date to;    // empty: to the last
  std::vector<AuditEventKind> kinds;
  std::vector<std::string> controls;
  std::vector<std::string> grids;
  bool meet_all = true;
  bool newest_first = false;
};

// The names by which transactions can be looked for: those that this program writes, "Undefined", and those
// that only this log holds.
std::vector<std::string> SearchedTxNames(const AuditLog& log);

// What no log could answer: a last day before the first, or a transaction that nobody writes. "" when nothing
// is wrong.
std::string CriteriaProblem(const AuditLog& log, const AuditCriteria& criteria);

// To be said where a log has no entries, or is not there.
inline constexpr std::string_view kNoAuditEntries = "No entries yet: nothing was written to this bank's log.";

// Places in AuditLog::Entries, in date order; entries of one second keep the order of the file (turned round
// with the newest first).
std::vector<std::uint32_t> SearchAuditLog(const AuditLog& log, const AuditCriteria& criteria);

}  // namespace tallwick
