// copy, restore, maintain: the maintenance commands of the main window, with the same questions.
#include "cli/commands/command.h"
#include "maintenance/data_copy.h"
#include "maintenance/maintenance_run.h"
#include "maintenance/version_report.h"
#include "maintenance/xref_check.h"

namespace tallwick::cli {

namespace {

int Ended(Office& office, bool completed, std::string_view message) {
  office.Out().Set("completed", completed);
  if (!message.empty()) {
    office.Out().Set("message", std::string(message));
    office.Out().Line(message.substr(0, message.find('\r')));
  }
  return completed ? kDone : kRefused;
}

int RunCopy(Office& office, CopyOutcome (*run)(Session&, WorkProgress&)) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  NoProgress progress;
  const CopyOutcome outcome = run(*session, progress);
  office.Out().Set("files", outcome.files);
  office.Out().Set("failed", outcome.failed);
  return Ended(office, outcome.completed, outcome.message);
}

int Copy(Office& office) {
  return RunCopy(office,
                 [](Session& session, WorkProgress& progress) { return CopyDatabases(session, progress); });
}

int Restore(Office& office) {
  return RunCopy(office, RestoreDatabases);
}

// The tables processed, or none where the command ended before.
int Maintain(Office& office, MaintenanceOperation operation) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  NoProgress progress;
  const MaintenanceOutcome outcome = RunMaintenance(*session, operation, progress);
  if (outcome.code != 0) office.Out().Set("code", outcome.code);
  office.Out().StartList("tables");
  for (const TableOutcome& table : outcome.tables) {
    const Json item = {{"table", table.table}, {"done", table.done}, {"result", table.text}};
    office.Out().Item(item, table.table + ": " + table.text);
  }
  office.Out().EndList();
  return Ended(office, outcome.completed, {});
}

int Report(Office& office) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  NoProgress progress;
  bool current = true;
  office.Out().StartList("tables");
  for (const TableVersion& version : ReportVersions(*session, progress)) {
    const bool this_one = version.state == LayoutState::kCurrent;
    current = current && this_one;
    const Json item = {{"table", version.table.Name()}, {"current", this_one}, {"text", version.text}};
    office.Out().Item(item, version.table.bank_code.empty()
                                ? version.text
                                : version.text + " (" + version.table.bank_code + ")");
  }
  office.Out().EndList();
  return Ended(office, current, {});
}

struct XrefArguments {
  XrefCheckOptions options;
};

int CheckXrefs(Office& office, const XrefArguments& arguments) {
  Session* session = office.OpenBank();
  if (session == nullptr) return office.Status();
  NoProgress progress;
  const XrefCheckResult result = CheckXReferences(*session, arguments.options, progress);
  Output& out = office.Out();
  out.Set("examined", result.examined);
  out.Set("missing", result.Missing());
  out.Set("created", result.Created());
  out.Set("invalid", result.Invalid());
  out.StartList("entries");
  for (const XrefFinding& finding : result.findings) {
    const Json item = {{"entry", finding.item}, {"file", finding.file_number}, {"problem", finding.problem}};
    out.Item(item, finding.item + " of file " + finding.file_number + ": " + finding.problem);
  }
  out.EndList();
  const bool whole = result.completed && result.Invalid() == 0 && result.Missing() == result.Created();
  return Ended(office, result.completed, {}) == kDone && whole ? kDone : kRefused;
}

}  // namespace

void AddMaintenanceCommands(CLI::App& app, Action& chosen) {
  Choose(app.add_subcommand("copy", "Copies the escrow data into the folder DBFCOPYS"), chosen, Copy);
  Choose(app.add_subcommand("restore", "Brings the copy in the folder DBFCOPYS back"), chosen, Restore);
  CLI::App* maintain = app.add_subcommand("maintain", "Maintenance of every escrow table");
  maintain->require_subcommand(1);
  Choose(maintain->add_subcommand("rebuild", "Rebuilds and reindexes"), chosen,
         [](Office& office) { return Maintain(office, MaintenanceOperation::kRebuild); });
  Choose(maintain->add_subcommand("pack", "Removes deleted records for good"), chosen,
         [](Office& office) { return Maintain(office, MaintenanceOperation::kPack); });
  Choose(maintain->add_subcommand("versions", "Brings every table to the present layout"), chosen,
         [](Office& office) { return Maintain(office, MaintenanceOperation::kUpdateVersions); });
  Choose(maintain->add_subcommand("report", "Says whether every table has the present layout"), chosen,
         Report);
  auto arguments = std::make_shared<XrefArguments>();
  CLI::App* xrefs = maintain->add_subcommand("xrefs", "Checks the cross-references of --bank");
  xrefs->add_flag("--create", arguments->options.create_missing, "Creates missing ones");
  xrefs->add_flag("--stop", arguments->options.stop_on_errors, "Stops at the first error");
  Choose(xrefs, chosen, arguments, CheckXrefs);
}

}  // namespace tallwick::cli
