#include "maintenance/verify_table.h"

#include "maintenance/table_measures.h"

namespace tallwick {

namespace {

using engine::ProblemKind;

Remedy RemedyFor(ProblemKind kind) {
  if (kind == ProblemKind::kIndex) return RebuildIndex();
  if (kind == ProblemKind::kHead) return CorrectCount();
  if (kind == ProblemKind::kMemoEnd) return CorrectMemoEnd();
  return {};
}

// What a person does where the table itself does not say how it was.
std::string_view AdviceFor(ProblemKind kind) {
  if (kind == ProblemKind::kRecord)
    return ": compare the record with the paper, or restore the table from a copy";
  if (kind == ProblemKind::kMemo)
    return ": read the memo, and type it again where it is not what it should be";
  return {};
}

std::string CountText(const FileSystem& files, const std::string& path) {
  const std::optional<TableMeasures> measures = ReadTableMeasures(files, path);
  if (!measures) return {};
  const std::uint64_t counted = measures->counted;
  const std::uint64_t held = measures->HeldIn(files.SizeOf(path).value_or(0));
  std::string text = ".  It counts " + std::to_string(counted) + " records and holds " + std::to_string(held);
  if (held < counted)
    text += ": the last " + std::to_string(counted - held) +
            " are lost.  Restore the table from a copy if there is a good one; mending keeps what is left";
  return text;
}

}  // namespace

std::vector<CompanyProblem> VerifyTable(clsKVRData& store, DataHandle data, std::string_view name) {
  std::vector<engine::TableProblem> found;
  const int code = store.VerifyDatabase(data, &found);
  std::vector<CompanyProblem> problems;
  problems.reserve(found.size() + 1);
  for (const engine::TableProblem& problem : found) {
    std::string text = problem.problem;
    text += AdviceFor(problem.kind);
    problems.push_back({std::string(name), static_cast<std::int32_t>(problem.record), std::move(text),
                        RemedyFor(problem.kind)});
  }
  if (code != 0) {
    const std::string_view advice = clsKVRData::StandstillAdvice(code);
    const std::string_view always = "See to the disk and the rights on the folder, and verify again";
    problems.push_back({std::string(name),
                        0,
                        "cannot be examined: " + std::string(engine::error4text(code)) + ".  " +
                            std::string(advice.empty() ? always : advice),
                        {}});
  }
  return problems;
}

CompanyProblem NotOpenedProblem(const FileSystem& files, const TableBase& table, int code) {
  CompanyProblem problem{
      table.Name(), 0, "does not open: " + table.WhyNotOpen(code) + " (" + std::to_string(code) + ")", {}};
  if (code == engine::kErrorDataHeader) {
    problem.remedy = CorrectCount{CountText(files, table.Path())};
    problem.text += std::get<CorrectCount>(problem.remedy).counts;
  } else if (code <= engine::kErrorIndex && code >= engine::kErrorTagName) {
    problem.remedy = RebuildIndex();
  } else if (code == engine::kErrorFieldName) {
    problem.text += ".  " + table.Lack().advice;
  } else if (code == engine::kErrorOpenRefused) {
    problem.text +=
        ".  Have everybody leave the program, and close every other program that uses the table or "
        "its index; then verify again";
  } else if (code == engine::kErrorOpen || code == engine::kErrorRead || code == engine::kErrorReadOnly) {
    problem.text += ".  See to the rights on the folder and to the disk";
  } else if (const std::string_view advice = clsKVRData::StandstillAdvice(code); !advice.empty()) {
    problem.text += ".  " + std::string(advice);
  } else if (code != engine::kErrorJournal) {
    problem.text += ".  Restore the table from a copy";
  }
  return problem;
}

}  // namespace tallwick
