// Prints what an examination of tables found.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/output.h"
#include "maintenance/verify_problem.h"

namespace tallwick::cli {

// "ESCROW_XRFS record 7"; without a record the table alone.
std::string Place(const std::string& table, std::int32_t record);

// Prints the problems, or `none` where there is none, and gives the exit status: 1 where there are any.
int ReportProblems(const std::vector<CompanyProblem>& problems, Output& out,
                   std::string_view none = "No problems found");

}  // namespace tallwick::cli
