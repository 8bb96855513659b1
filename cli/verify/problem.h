// What a check of the company's tables finds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/output.h"

namespace tallwick::cli {

struct Problem {
  std::string table;
  std::int32_t record = 0;  // 0 where no single record is meant
  std::string text;         // in words a support person can act on
};

// Prints the problems and gives the exit status: 1 where there are any.
int ReportProblems(const std::vector<Problem>& problems, Output& out);

}  // namespace tallwick::cli
