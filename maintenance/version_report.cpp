#include "maintenance/version_report.h"

#include "tables/table_base.h"

namespace tallwick {
namespace {

std::string ReportText(const TableLayout& layout, const std::optional<LayoutState>& state) {
  std::string name(ReportName(layout));
  if (state) return name + (*state == LayoutState::kCurrent ? " - current" : " OUT-of-DATE");
  if (name.ends_with('_')) name.pop_back();
  return name + " version status not available.";
}

}  // namespace

TableVersion ExamineVersion(const Session& session, const MaintainedTable& table) {
  TableVersion version{table, std::nullopt, {}};
  TableBase opened(session.Home(), *table.layout);
  if (opened.OpenAsItIs(table.bank_code, false) > 0) version.state = opened.CheckVersion();
  version.text = ReportText(*table.layout, version.state);
  return version;
}

std::vector<TableVersion> ReportVersions(const Session& session, WorkProgress& progress) {
  const std::vector<MaintainedTable> tables = EveryTable(session.Home(), WithAgent::kYes);
  std::vector<TableVersion> versions;
  for (const MaintainedTable& table : tables) {
    progress.Show("Examining " + table.Name(), static_cast<std::int64_t>(versions.size()),
                  static_cast<std::int64_t>(tables.size()));
    if (progress.StopWanted()) break;
    versions.push_back(ExamineVersion(session, table));
  }
  return versions;
}

}  // namespace tallwick
