#include "maintenance/control_file.h"

#include "core/text_format.h"
#include "maintenance/maintained_table.h"
#include "tables/table_base.h"

namespace tallwick {
namespace {

// A line of the file; nothing for a bank's table that has not been made yet. False when it does not open.
bool AddTable(const Session& session, const MaintainedTable& table, std::string* text) {
  TableBase opened(session.Home(), *table.layout);
  if (!opened.Exists(table.bank_code)) return table.layout->per_bank;
  if (opened.OpenAsItIs(table.bank_code, false) <= 0) return false;
  *text += table.Name() + "=" + std::to_string(opened.RecordCount()) + "\r\n";
  return true;
}

}  // namespace

bool SetupApplicationControlFile(Session& session) {
  const ProgramVersion& version = session.Version();
  std::string text = "Version=" + VersionText(version.major, version.minor, version.revision) + "\r\n";
  bool whole = true;
  for (const MaintainedTable& table : EveryTable(session.Home(), WithAgent::kYes))
    whole = AddTable(session, table, &text) && whole;
  return session.Files().Write(session.DataPath() + "Escrow_Control.txt", text) && whole;
}

}  // namespace tallwick
