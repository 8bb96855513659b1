#include "maintenance/maintenance_screens.h"

#include "core/text_format.h"
#include "maintenance/copy_folder.h"
#include "maintenance/data_copy.h"
#include "maintenance/maintained_table.h"
#include "maintenance/version_report.h"
#include "maintenance/xref_check.h"
#include "store/engine/codes.h"

namespace tallwick {
namespace {

std::string Count(int number) {
  return FormatNumber(static_cast<long long>(number), "###,##0");
}

// "1 closed file", "104 closed files".
std::string Counted(std::size_t number, const std::string& what) {
  return Count(static_cast<int>(number)) + " " + what + (number == 1 ? "" : "s");
}

}  // namespace

// --- Tables ---

FrmMaintenance::FrmMaintenance(Session& session, MaintenanceOperation operation)
    : WorkForm("frmMaintenance", session),
      operation_(operation),
      tables_(std::make_shared<TextRows>(std::vector<std::string>{"Table", "Result"})) {
  SetFormCaption(std::string(OperationName(operation)));
  Add(ControlKind::kGrid, "grdTables", "Tables");
  for (const MaintainedTable& table : EveryTable(session.Home(), AgentIn(operation)))
    tables_->Add({table.Name(), {}});
  SetSource("grdTables", tables_);
}

void FrmMaintenance::OnOpen() {
  bool to_be_read = false;
  {
    const AtWork work(*this);
    to_be_read = RunMaintenance(TheSession(), operation_, *this).HasFailures();
  }
  if (!to_be_read) {
    Close();
    return;
  }
  SayStatus("Some tables could not be processed, and are as they were.");
}

void FrmMaintenance::Tell(std::string_view table, std::string_view result) {
  tables_->SetLast(table, result);
  RowsChanged("grdTables");
}

// --- Copy and restore ---

FrmDataCopy::FrmDataCopy(Session& session, Direction direction)
    : WorkForm(direction == Direction::kCopy ? "frmCopyDatabases" : "frmRestoreDatabases", session),
      direction_(direction) {
  SetFormCaption(direction == Direction::kCopy ? "Copy Databases" : "Restore Databases");
  Add(ControlKind::kLabel, "lblFolder", session.Files().PlatformPath(CopyFolder(session)));
}

void FrmDataCopy::OnOpen() {
  {
    const AtWork work(*this);
    direction_ == Direction::kCopy ? CopyDatabases(TheSession(), *this)
                                   : RestoreDatabases(TheSession(), *this);
  }
  Close();
}

// --- Versions ---

FrmCheckDatabaseVersion::FrmCheckDatabaseVersion(Session& session)
    : WorkForm("frmCheckDatabaseVersion", session) {
  SetFormCaption("Check Database Version");
  Add(ControlKind::kGrid, "grdVersions", "Tables");
}

void FrmCheckDatabaseVersion::OnOpen() {
  std::vector<TableVersion> versions;
  {
    const AtWork work(*this);
    versions = ReportVersions(TheSession(), *this);
  }
  auto rows = std::make_shared<TextRows>(std::vector<std::string>{"Bank", "Table"});
  int others = 0;
  for (const TableVersion& version : versions) {
    const bool current = version.state == LayoutState::kCurrent;
    if (!current) ++others;
    rows->Add({version.table.bank_code, version.text}, current ? "" : "stopped");
  }
  SetSource("grdVersions", rows);
  SayStatus(others == 0
                ? "All tables are current."
                : Counted(static_cast<std::size_t>(others), "table") + (others == 1 ? " is" : " are") +
                      " not current.  Use Update Database Versions of the File menu.");
}

// --- Cross-references ---

FrmCheckXReference::FrmCheckXReference(Session& session) : WorkForm("frmCheckXReference", session) {
  SetFormCaption("Check X-Reference - " + session.BankName());
  Add(ControlKind::kLabel, "lblNote", "This procedure should be done for each bank account.");
  Add(ControlKind::kCheck, "chkDisplay", "&Display Missing and Invalid X-Reference Entries").value = 1;
  Add(ControlKind::kCheck, "chkCreateMissing", "Create &Missing Records");
  Add(ControlKind::kCheck, "chkStopOnErrors", "&Stop on Errors");
  Add(ControlKind::kButton, "cmdOk", "&Check X-Reference");
  Add(ControlKind::kGrid, "grdFindings", "Missing and invalid entries");
  Add(ControlKind::kLabel, "lblResult");
}

void FrmCheckXReference::OnOpen() {
  Boxes().Exclaim(
      Caption(),
      "Please have made a backup copy of the databases...\r\rThis procedure should be done for each "
      "bank account.");
  SetFocus("cmdOk");
}

void FrmCheckXReference::OnClick(Control& control) {
  if (control.name == "cmdOk") return Check();
  WorkForm::OnClick(control);
}

void FrmCheckXReference::Check() {
  const XrefCheckOptions options{At("chkCreateMissing").value == 1, At("chkStopOnErrors").value == 1};
  XrefCheckResult result;
  {
    const AtWork work(*this);
    result = CheckXReferences(TheSession(), options, *this);
  }
  if (!result.opened) return;
  auto rows = std::make_shared<TextRows>(std::vector<std::string>{"Entry", "File", "Problem"});
  if (At("chkDisplay").value == 1) {
    for (const XrefFinding& finding : result.findings)
      rows->Add({finding.item, finding.file_number, finding.problem});
  }
  SetSource("grdFindings", rows);
  SayStatus(result.completed ? "The check is complete." : "The check was stopped before its end.");
  SetCaption("lblResult", Count(result.examined) + " entries examined: " + Count(result.Missing()) +
                              " missing, " + Count(result.Created()) + " created, " +
                              Count(result.Invalid()) + " invalid.");
  if (result.Created() > 0) TheSession().NotifyChanged(SessionChange::kPosted);
}

// --- Purge ---

FrmPurgeFiles::FrmPurgeFiles(Session& session) : WorkForm("frmPurgeFiles", session), access_(session) {
  SetFormCaption(std::string(OperationName(MaintenanceOperation::kPurge)));
  Add(ControlKind::kPeriod, "txtThrough", "Closed &through");
  Add(ControlKind::kButton, "cmdFind", "&Find Files");
  Add(ControlKind::kGrid, "grdFiles", "Closed files");
  Add(ControlKind::kLabel, "lblResult");
  Add(ControlKind::kButton, "cmdOk", "&Purge Files").enabled = false;
}

void FrmPurgeFiles::OnOpen() {
  bool passed = false;
  {
    const AtWork work(*this);
    passed = PassProtocol(TheSession(), MaintenanceOperation::kPurge, *this, access_);
  }
  SayStatus({});
  passed ? SetFocus("txtThrough") : static_cast<void>(Close());
}

bool FrmPurgeFiles::OnClose() {
  access_.Return();
  return true;
}

void FrmPurgeFiles::OnChange(Control& control) {
  if (control.name == "txtThrough") ShowFiles({});
}

void FrmPurgeFiles::OnClick(Control& control) {
  if (control.name == "cmdFind") return Find();
  if (control.name == "cmdOk") return Purge();
  WorkForm::OnClick(control);
}

// The files of every bank are looked at, whatever form its periods have.
void FrmPurgeFiles::Find() {
  RunState own;
  through_ = ParsePeriod(Text("txtThrough"), 0, own);
  if (through_.IsEmpty()) {
    Refuse("Enter the period through which files must be closed, as 12-2023 or 12-31-2023.", "txtThrough");
    return;
  }
  PurgeSearch found;
  {
    const AtWork work(*this);
    found = FindClosedFiles(TheSession(), through_, *this);
  }
  SayStatus(found.whole ? "" : "The search did not come to its end; nothing can be purged.");
  ShowFiles(std::move(found.files));
}

void FrmPurgeFiles::ShowFiles(std::vector<ClosedFile> files) {
  files_ = std::move(files);
  auto rows = std::make_shared<TextRows>(std::vector<std::string>{"File", "Items", "Last period"},
                                         std::vector<std::size_t>{1});
  int items = 0;
  for (const ClosedFile& file : files_) {
    rows->Add({file.number, Count(file.items), LongForm(SplitKey(file.last_key))});
    items += file.items;
  }
  SetSource("grdFiles", rows);
  SetCaption("lblResult", files_.empty() ? "No closed files."
                                         : Counted(files_.size(), "closed file") + " with " + Count(items) +
                                               " checks, deposit items, wires and vouchers.");
  SetEnabled("cmdOk", !files_.empty());
}

void FrmPurgeFiles::Purge() {
  const std::string question =
      "Purge " + Counted(files_.size(), "file") + " closed through " + LongForm(through_) +
      " ?\r\rTheir transactions are removed from every bank account, and can only come "
      "back from a copy of the data.";
  if (Boxes().Show({BoxIcon::kExclamation, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) !=
      BoxAnswer::kYes)
    return;
  PurgeResult result;
  {
    const AtWork work(*this);
    result = PurgeFiles(TheSession(), files_, through_, *this);
  }
  if (result.code != engine::kSuccess) {
    Boxes().Critical(Caption(), "The files were not purged: " + std::string(engine::error4text(result.code)) +
                                    " (" + std::to_string(result.code) + ").  Nothing has been changed.");
    return;
  }
  if (!result.logged)
    Boxes().Critical(Caption(),
                     "The files have been purged, but \"Logs\\Purged_Files.log\" could not be written.  "
                     "Keep the list on this screen, and see to the rights on the folder.");
  Boxes().Inform("Purge Files Completed...", Counted(files_.size(), "escrow file") +
                                                 (files_.size() == 1 ? " has" : " have") + " been purged...");
  Close();
}

}  // namespace tallwick
