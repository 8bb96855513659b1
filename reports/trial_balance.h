// The trial balance: every escrow file with what it received, paid and holds, over one bank or all of them,
// and the lists that are cut from it: open balances, overdrawn files, dormant files.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/file_standings.h"
#include "reports/report_document.h"
#include "shell/session.h"

namespace tallwick {

enum class TrialKind { kAll, kOpen, kOverdrawn, kDormant };
// "all", "open", "overdrawn", "dormant"; nullopt for anything else.
std::optional<TrialKind> TrialKindOf(std::string_view word);
// "All Files", "Open Balances", "Overdrawn Files", "Dormant Files".
std::string_view TrialKindName(TrialKind kind);

// A file that holds money and has not moved for half a year wants looking at.
inline constexpr int kDormantDays = 180;

struct TrialTerms {
  std::string bank_code;  // "" = all banks
  Date as_of;             // items posted later are left out, by month in a bank kept by it; empty = none is
  TrialKind kind = TrialKind::kAll;
  int dormant_days = kDormantDays;  // a dormant file holds money and was last active longer ago than that
};

// What a file holds, in all banks read or in one.
struct TrialFile : FileStanding {
  std::string bank_code;  // "" = all banks read
  std::string bank_name;
};

struct TrialBalance {
  std::vector<std::string> banks;  // codes of those read, in name order
  // Of the kind asked for, by file number. Overdrawn files stand bank by bank: money of one account covers
  // nothing in another.
  std::vector<TrialFile> files;
  Currency receipts;
  Currency disbursements;
  // What "posted through" means for the bank accounts that are kept by the month; "" where it needs no
  // saying.
  std::string month_note;
  std::string message;  // why there is none: "No banks have been created.", a bank that is not there, …
  std::string note;     // what the figures leave out: banks that are not the user's
  PassEnd end = PassEnd::kDone;
  Currency Balance() const { return receipts - disbursements; }
};

// One pass over the checks, wires and deposits of each bank of the user. `progress` may be empty. Without the
// right for reports nothing is read.
TrialBalance ReadTrialBalance(Session& session, const TrialTerms& terms, const PassProgress& progress);

// "1 file", "1,204 files".
std::string FileCount(const TrialBalance& balance);

// The headings of a list, and the cells of a file as the report and the screen show them.
std::string_view TrialHeadings(TrialKind kind);
std::vector<std::string> TrialCells(const TrialFile& file);

ReportDocument MakeTrialReport(const TrialBalance& balance, const TrialTerms& terms,
                               const ReportOrigin& origin);

}  // namespace tallwick
