// Mends what the examination found, as far as the tables themselves say how: record counts, indexes, missing
// cross-references, voucher counters, a journal that cannot be used, what a dead rebuild left. Never touches
// a transaction, an amount or a memo; what it cannot derive it leaves and names.
#pragma once

#include <string>
#include <vector>

#include "maintenance/verify_problem.h"
#include "tables/table_base.h"

namespace tallwick {

struct MendStep {
  std::string table;
  std::int32_t record = 0;  // of the problem; 0 where no single record is meant
  std::string text;         // "builds the index anew from the records"
};

struct MendReport {
  std::string refusal;                  // why nothing was begun; "" when it was
  std::vector<MendStep> steps;          // done, or, of a plan, to be done
  std::vector<CompanyProblem> remains;  // what a person must decide, or what failed
  bool incomplete = false;              // of a plan: more can be judged when its steps have been done
};

// What MendCompany would do, from an examination beside other workstations. Changes nothing. References that
// rest on a damaged index are judged only when it has been built anew.
MendReport PlanMending(const TableHome& home);

// Takes every table of the company for this workstation alone, mends and examines again. Refused, with
// nothing changed, while anybody has one of them open. Each table's references and counters change in one
// unit of work, each index as a whole.
MendReport MendCompany(const TableHome& home);

}  // namespace tallwick
