#include "cli/verify/problem.h"

#include "cli/options.h"

namespace tallwick::cli {

int ReportProblems(const std::vector<Problem>& problems, Output& out) {
  out.Set("ok", problems.empty());
  out.StartList("problems");
  for (const Problem& problem : problems) {
    const std::string record = problem.record == 0 ? "" : " record " + std::to_string(problem.record);
    out.Item({{"table", problem.table}, {"record", problem.record}, {"problem", problem.text}},
             problem.table + record + ": " + problem.text);
  }
  out.EndList();
  if (problems.empty()) {
    out.Line("No problems found");
    return kDone;
  }
  out.Fail(std::to_string(problems.size()) + " problems found");
  return kRefused;
}

}  // namespace tallwick::cli
