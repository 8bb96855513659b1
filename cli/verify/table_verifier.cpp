#include "cli/verify/table_verifier.h"

namespace tallwick::cli {

std::vector<Problem> VerifyTable(clsKVRData& store, DataHandle data, std::string_view name) {
  std::vector<engine::TableProblem> found;
  const int code = store.VerifyDatabase(data, &found);
  std::vector<Problem> problems;
  problems.reserve(found.size() + 1);
  for (const engine::TableProblem& problem : found)
    problems.push_back({std::string(name), static_cast<std::int32_t>(problem.record), problem.problem});
  if (code != 0)
    problems.push_back(
        {std::string(name), 0, "cannot be examined: " + std::string(engine::error4text(code))});
  return problems;
}

}  // namespace tallwick::cli
