#include "maintenance/verify_table.h"

#include <algorithm>

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

// Of a table's first bytes, little-endian: 4 to 7 the record count, 8 and 9 the head's length, 10 and 11 a
// record's length.
std::string CountText(const FileSystem& files, const std::string& path) {
  const std::string head = files.ReadPart(path, 0, 12).value_or("");
  const auto size = static_cast<std::int64_t>(files.SizeOf(path).value_or(0));
  if (head.size() < 12) return {};
  const auto number = [&](std::size_t from, std::size_t count) {
    std::int64_t value = 0;
    for (std::size_t i = from + count; i > from; --i)
      value = value * 256 + static_cast<unsigned char>(head[i - 1]);
    return value;
  };
  if (number(10, 2) == 0) return {};
  const std::int64_t counted = number(4, 4);
  const std::int64_t held = std::max<std::int64_t>(0, size - number(8, 2)) / number(10, 2);
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
  if (code != 0)
    problems.push_back({std::string(name),
                        0,
                        "cannot be examined: " + std::string(engine::error4text(code)) +
                            ".  See to the disk and the rights on the folder, and verify again",
                        {}});
  return problems;
}

CompanyProblem NotOpenedProblem(const FileSystem& files, const std::string& path, std::string_view name,
                                int code) {
  CompanyProblem problem{
      std::string(name),
      0,
      "does not open: " + std::string(engine::error4text(code)) + " (" + std::to_string(code) + ")",
      {}};
  if (code == engine::kErrorDataHeader) {
    problem.remedy = CorrectCount{CountText(files, path)};
    problem.text += std::get<CorrectCount>(problem.remedy).counts;
  } else if (code <= engine::kErrorIndex && code >= engine::kErrorTagName) {
    problem.remedy = RebuildIndex();
  } else if (code == engine::kErrorOpenRefused) {
    problem.text += ".  Have everybody leave the program, and verify again";
  } else if (code == engine::kErrorOpen || code == engine::kErrorRead || code == engine::kErrorReadOnly) {
    problem.text += ".  See to the rights on the folder and to the disk";
  } else if (code != engine::kErrorJournal) {
    problem.text += ".  Restore the table from a copy";
  }
  return problem;
}

}  // namespace tallwick
