#include "maintenance/verify_leftovers.h"

#include <algorithm>

#include "core/text.h"
#include "maintenance/table_measures.h"
#include "maintenance/verify_journal.h"
#include "tables/record_pass.h"

namespace tallwick {
namespace {

constexpr std::string_view kKept = ".SAV";

std::int64_t LiveRecordsOf(TableBase& table) {
  std::int64_t live = 0;
  PassOver(table, PackedFields(table), table.Name(), {}, [&live](RecordView, std::int32_t) { ++live; });
  return live;
}

// The kept table to which a memo file beside it belongs; a table itself.
std::string TableOf(const std::string& path) {
  constexpr std::string_view kMemos = ".FPT";
  return ToUpper(path).ends_with(kMemos) ? path.substr(0, path.size() - kMemos.size()) : path;
}

// As files are named that are written beside one whose place they will take: ".4711-0.tmp" behind its name.
bool IsHalfWritten(std::string_view name) {
  std::size_t end = name.rfind(".tmp");
  for (const char before : {'-', '.'}) {
    const std::size_t at = end == std::string_view::npos || end == 0 ? end : name.rfind(before, end - 1);
    if (at == std::string_view::npos || at >= end || !IsAllDigits(name.substr(at + 1, end - at - 1)))
      return false;
    end = at;
  }
  return end > 0;
}

CompanyProblem Judged(TableBase* table, const FileSystem& files, const std::string& path) {
  const std::string name(FileNameOf(path));
  CompanyProblem problem{name, 0, "was left by a rebuild that was cut short", {}};
  const bool is_table = !name.ends_with('~');
  const std::int64_t kept = is_table ? LiveRecordsIn(files, TableOf(path)) : 0;
  const std::int64_t now = table == nullptr ? 0 : LiveRecordsOf(*table);
  if (table != nullptr && now >= kept) {
    problem.text += ".  The table itself is whole, so it is not needed any more";
    problem.remedy = RemoveLeftover{name};
  } else if (is_table) {
    problem.text += " and holds " + std::to_string(kept) + " records as they were before" +
                    (table == nullptr ? "" : ", the table now " + std::to_string(now)) +
                    ".  Keep it until the table has been put right";
  } else {
    problem.text += ".  Keep it until the table has been put right";
  }
  return problem;
}

}  // namespace

void VerifyLeftovers(ExaminedCompany& company, const TableHome& home, std::vector<CompanyProblem>* problems) {
  for (const std::string& name : home.files.List(home.folder, "*" + std::string(kKept) + "*")) {
    const std::string base = ToUpper(name.substr(0, ToUpper(name).find(kKept)));
    const auto& tables = company.Tables();
    const auto found = std::find_if(tables.begin(), tables.end(), [&](const TableBase* table) {
      return company.IsTrusted(*table) && ToUpper(table->Name()) == base;
    });
    problems->push_back(
        Judged(found == tables.end() ? nullptr : *found, home.files, WithBackslash(home.folder) + name));
  }
  for (const std::string& name : home.files.List(home.folder, std::string(kSetAsideJournal) + "*"))
    problems->push_back(
        {name,
         0,
         "holds units of work that could not be brought to the tables: compare the last posts "
         "with the paper, enter what is missing, and then remove the file",
         {}});
  for (const std::string& name : home.files.List(home.folder, "*.*-*.tmp")) {
    if (!IsHalfWritten(name)) continue;
    problems->push_back({name, 0,
                         "is being written, or was left by a program that died while it replaced the file.  "
                         "That file itself is whole, so it is not needed any more",
                         RemoveLeftover{name}});
  }
}

}  // namespace tallwick
