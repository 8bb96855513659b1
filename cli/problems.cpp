#include "cli/problems.h"

#include <algorithm>

#include "cli/options.h"

namespace tallwick::cli {

std::string Place(const std::string& table, std::int32_t record) {
  return record == 0 ? table : table + " record " + std::to_string(record);
}

int ReportProblems(const std::vector<CompanyProblem>& problems, Output& out, std::string_view none) {
  out.Set("ok", problems.empty());
  out.StartList("problems");
  for (const CompanyProblem& problem : problems) {
    out.Item({{"table", problem.table}, {"record", problem.record}, {"problem", problem.text}},
             Place(problem.table, problem.record) + ": " + problem.text);
  }
  out.EndList();
  if (problems.empty()) {
    out.Line(none);
    return kDone;
  }
  const bool mendable = std::any_of(problems.begin(), problems.end(),
                                    [](const CompanyProblem& problem) { return problem.IsMendable(); });
  if (mendable) out.Line("escrowctl mend --dry-run says which of them it would mend, and how");
  out.Fail(std::to_string(problems.size()) + (problems.size() == 1 ? " problem found" : " problems found"));
  return kRefused;
}

}  // namespace tallwick::cli
