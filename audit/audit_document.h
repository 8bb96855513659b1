// A search's result for the eye: the lines of each event, and the document that is previewed and printed.
#pragma once

#include <string>
#include <vector>

#include "audit/audit_search.h"
#include "core/print_document.h"

namespace tallwick {

// Which of a grid's columns are shown.
struct GridChoice {
  enum class Columns { kAll, kMarked, kUpTo };

  std::string name;  // UTF-8
  Columns columns = Columns::kAll;
  std::vector<bool> marks;  // of kMarked, by column
  int up_to = 0;            // of kUpTo: the last column shown, from 1
};

struct GridView {
  std::vector<GridChoice> chosen;  // none: every grid is shown, with all its columns
  bool entire = false;             // false: only the rows that differ
};

struct AuditLine {
  std::string event;  // what happened ("Add", "Edit") or the control or grid that was changed
  std::string value;
};

// The lines of one event, UTF-8. None for a grid that is not among those chosen.
std::vector<AuditLine> LinesOfEvent(const AuditLog& log, const AuditEvent& event, const GridView& view);

// "Mar 04, 2024 @ 2:07 PM"; the log's own text where that is no date.
std::string MomentText(const AuditEntry& entry);

struct AuditReport {
  const AuditLog& log;
  const AuditCriteria& criteria;
  const std::vector<std::uint32_t>& found;  // in the order to be printed
  const GridView& view;
  DateTime modified;  // of the log's file
  std::string bank_code;
  Date today;
  bool landscape = false;
};

PrintDocument MakeAuditDocument(const AuditReport& report);

}  // namespace tallwick
