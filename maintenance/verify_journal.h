// The state of a company folder's journal of units of work, in words.
#pragma once

#include <string_view>
#include <vector>

#include "maintenance/verify_problem.h"
#include "tables/table_base.h"

namespace tallwick {

// Under which name a journal that cannot be used is kept.
inline constexpr std::string_view kSetAsideJournal = "ESCROW_UNITS.BAD";

// Nothing where all is well. Must run before the folder's tables are opened, which finishes what waits.
std::vector<CompanyProblem> VerifyJournal(const TableHome& home);

}  // namespace tallwick
