#include "maintenance/verify_table.h"

namespace tallwick {

namespace {

Remedy RemedyFor(engine::ProblemKind kind) {
  if (kind == engine::ProblemKind::kIndex) return RebuildIndex();
  if (kind == engine::ProblemKind::kHead) return CorrectCount();
  return {};
}

}  // namespace

std::vector<CompanyProblem> VerifyTable(clsKVRData& store, DataHandle data, std::string_view name) {
  std::vector<engine::TableProblem> found;
  const int code = store.VerifyDatabase(data, &found);
  std::vector<CompanyProblem> problems;
  problems.reserve(found.size() + 1);
  for (const engine::TableProblem& problem : found)
    problems.push_back({std::string(name), static_cast<std::int32_t>(problem.record), problem.problem,
                        RemedyFor(problem.kind)});
  if (code != 0)
    problems.push_back(
        {std::string(name), 0, "cannot be examined: " + std::string(engine::error4text(code)), {}});
  return problems;
}

CompanyProblem NotOpenedProblem(std::string_view name, int code) {
  CompanyProblem problem{
      std::string(name),
      0,
      "does not open: " + std::string(engine::error4text(code)) + " (" + std::to_string(code) + ")",
      {}};
  if (code == engine::kErrorDataHeader) problem.remedy = CorrectCount();
  if (code <= engine::kErrorIndex && code >= engine::kErrorTagName) problem.remedy = RebuildIndex();
  return problem;
}

}  // namespace tallwick
