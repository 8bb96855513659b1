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

CompanyProblem Judged(TableBase* table, const FileSystem& files, const std::string& path) {
  const std::string name(FileNameOf(path));
  CompanyProblem problem{name, 0, "was left by a rebuild that was cut short", {}};
  const bool is_table = ToUpper(name).find(".FPT") == std::string::npos && !name.ends_with('~');
  const std::int64_t kept = is_table ? LiveRecordsIn(files, path) : 0;
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
  for (const std::string& name : home.files.List(home.folder, "*.*-*.tmp"))
    problems->push_back({name, 0,
                         "is being written, or was left by a program that died while it replaced the file.  "
                         "That file itself is whole, so it is not needed any more",
                         RemoveLeftover{name}});
}

}  // namespace tallwick
