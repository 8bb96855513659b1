#include "maintenance/maintenance_run.h"

#include <algorithm>

#include "core/text.h"
#include "maintenance/data_copy.h"
#include "maintenance/table_upgrade.h"
#include "shell/main_commands.h"
#include "store/clsKVRData.h"
#include "tables/table_base.h"

namespace tallwick {
namespace {

struct OperationTexts {
  MaintenanceOperation operation;
  std::string_view command;
  std::string_view name;
  std::string_view backup_title;
  std::string_view done;
};

constexpr OperationTexts kTexts[] = {
    {MaintenanceOperation::kRebuild, "mnuFileRebuildReindexTransactions", "Rebuild & Reindex",
     "Backup Prior to Rebuild & Reindex", "Escrow Databases have been Rebuilt & Reindexed..."},
    {MaintenanceOperation::kUpdateVersions, "mnuFileUpdateDatabaseVersions", "Update Database Versions",
     "Backup Prior to Update", "Escrow Databases have been Updated..."},
    {MaintenanceOperation::kPack, "mnuFilePack", "Pack Databases", "Backup Prior to Pack Databases",
     "Escrow Databases have been Packed..."},
    {MaintenanceOperation::kPurge, "mnuFilePurge", "Purge Files", "Backup Prior to Purge", ""}};

const OperationTexts& TextsOf(MaintenanceOperation operation) {
  return *std::find_if(std::begin(kTexts), std::end(kTexts),
                       [operation](const OperationTexts& texts) { return texts.operation == operation; });
}

bool BackUp(Session& session, const OperationTexts& texts, WorkProgress& progress) {
  const BoxAnswer answer = session.Boxes().Show({BoxIcon::kQuestion, std::string(texts.backup_title),
                                                 "Backup Escrow Accounting Files Now?",
                                                 BoxButtons::kYesNoCancel, BoxAnswer::kYes});
  if (answer != BoxAnswer::kYes) return answer == BoxAnswer::kNo;
  const CopyOutcome copied = BackUpDatabases(session, progress);
  if (copied.completed) return true;
  session.Boxes().Exclaim(texts.backup_title,
                          copied.message + "\r\rBackup Aborted or Failed..." + copied.stays);
  return false;
}

bool AllowsLockOut(Session& session, const OperationTexts& texts) {
  const std::string text =
      Quoted(texts.name) + " requires exclusive access to Escrow Accounting - Will attempt lock-out now...";
  return session.Boxes().Show({BoxIcon::kExclamation, std::string(texts.name), text, BoxButtons::kOkCancel,
                               BoxAnswer::kOk}) == BoxAnswer::kOk;
}

// One command's walk over the tables.
class Walk {
 public:
  Walk(Session& session, MaintenanceOperation operation, WorkProgress& progress)
      : session_(session), operation_(operation), progress_(progress) {}

  // The codes of the banks are read from the banks' table, which may be out of order until its turn is over.
  bool Run() {
    const WithAgent agent = AgentIn(operation_);
    total_ = EveryTable(session_.Home(), agent).size();
    for (const MaintainedTable& table : CompanyWideTables(agent)) Process(table);
    for (const std::string& code : EveryBankCode(session_.Home())) {
      for (const MaintainedTable& table : TablesOfBank(code)) Process(table);
    }
    return !stopped_;
  }

  std::vector<TableOutcome> TakeResults() { return std::move(results_); }

 private:
  void Process(const MaintainedTable& table) {
    stopped_ = stopped_ || progress_.StopWanted();
    if (stopped_) return;
    ShowShare(table.Name(), 0, 1);
    const engine::Progress share = [&](std::uint32_t done, std::uint32_t count) {
      ShowShare(table.Name(), done, count);
      return !progress_.StopWanted();
    };
    TableOutcome result = Work(table, share);
    progress_.Tell(result.table, result.text);
    results_.push_back(std::move(result));
  }

  void ShowShare(const std::string& name, std::uint32_t done, std::uint32_t count) {
    constexpr std::int64_t kSteps = 100;  // of one table
    const std::int64_t part = count == 0 ? 0 : kSteps * done / count;
    progress_.Show("Processing " + name, static_cast<std::int64_t>(results_.size()) * kSteps + part,
                   static_cast<std::int64_t>(std::max(total_, results_.size() + 1)) * kSteps);
  }

  TableOutcome Work(const MaintainedTable& table, const engine::Progress& share) {
    TableBase files(session_.Home(), *table.layout);
    if (!files.Exists(table.bank_code)) {
      if (const std::string why = files.WhyLost(); !why.empty())
        return {table.Name(), false, "is missing, but " + why + ".  Restore it from a copy"};
      const int code = files.Create(table.bank_code);
      return {table.Name(), code == engine::kSuccess,
              code == engine::kSuccess ? "was missing and has been made, empty" : Failure(code)};
    }
    if (operation_ == MaintenanceOperation::kUpdateVersions) {
      const UpgradeResult result = UpgradeTable(session_, table, share);
      TableOutcome outcome = Judged(table, result.code, result.text);
      outcome.made_up = result.made_up;
      return outcome;
    }
    const int code = operation_ == MaintenanceOperation::kPack ? Pack(files, table.bank_code, share)
                                                               : files.RebuildQuietly(table.bank_code, share);
    std::string text = "Pack Result Code: " + std::to_string(code);
    if (code != engine::kSuccess) text += " (" + std::string(engine::error4text(code)) + ")";
    return Judged(table, code, std::move(text));
  }

  TableOutcome Judged(const MaintainedTable& table, int code, std::string text) {
    if (code != engine::kStopped) return {table.Name(), code == engine::kSuccess, std::move(text)};
    stopped_ = true;
    return {table.Name(), true, "stopped, as it was"};
  }

  static int Pack(TableBase& table, std::string_view bank_code, const engine::Progress& share) {
    const DataHandle data = table.OpenQuietly(bank_code, true);
    return data > 0 ? table.Data().PackDatabase(data, share) : data;
  }

  static std::string Failure(int code) {
    return std::string(engine::error4text(code)) + " (" + std::to_string(code) + ")";
  }

  Session& session_;
  MaintenanceOperation operation_;
  WorkProgress& progress_;
  std::size_t total_ = 0;
  bool stopped_ = false;
  std::vector<TableOutcome> results_;
};

void TellMadeUp(Session& session, const std::string& name, const MaintenanceOutcome& outcome) {
  std::string text;
  for (const TableOutcome& table : outcome.tables) {
    if (!table.made_up.empty()) text += "\r" + table.table + ": " + table.made_up;
  }
  if (text.empty()) return;
  session.Boxes().Exclaim(
      name,
      "These tables lacked fields, which are there now and empty in every record.  A table of an older "
      "program never had them.  Where that is not so, restore the table from a copy:" +
          text);
}

void TellEnd(Session& session, const OperationTexts& texts, const MaintenanceOutcome& outcome) {
  const std::string name(texts.name);
  TellMadeUp(session, name, outcome);
  if (outcome.completed) return session.Boxes().Inform(name + " Completed...", texts.done);
  if (!outcome.HasFailures()) {
    return session.Boxes().Exclaim(
        name, name + " was stopped.  The tables processed until then are done, the others are as they were.");
  }
  std::string text = "These tables could not be processed, and are as they were:";
  for (const TableOutcome& table : outcome.tables) {
    if (!table.done) text += "\r" + table.table + ": " + table.text;
  }
  session.Boxes().Exclaim(name, text);
}

}  // namespace

std::string_view OperationName(MaintenanceOperation operation) {
  return TextsOf(operation).name;
}

WithAgent AgentIn(MaintenanceOperation operation) {
  return operation == MaintenanceOperation::kUpdateVersions ? WithAgent::kYes : WithAgent::kNo;
}

bool MaintenanceOutcome::HasFailures() const {
  return std::any_of(tables.begin(), tables.end(), [](const TableOutcome& table) { return !table.done; });
}

bool PassProtocol(Session& session, MaintenanceOperation operation, WorkProgress& progress,
                  ExclusiveAccess& access) {
  const OperationTexts& texts = TextsOf(operation);
  return MayCarryOut(session, texts.command) && BackUp(session, texts, progress) &&
         AllowsLockOut(session, texts) && access.Take(texts.name);
}

MaintenanceOutcome RunMaintenance(Session& session, MaintenanceOperation operation, WorkProgress& progress) {
  MaintenanceOutcome outcome;
  ExclusiveAccess access(session);
  if (!PassProtocol(session, operation, progress, access)) {
    outcome.code = access.Code();
    return outcome;
  }
  Walk walk(session, operation, progress);
  const bool whole = walk.Run();
  outcome.tables = walk.TakeResults();
  outcome.completed = whole && !outcome.HasFailures();
  access.Return();
  TellEnd(session, TextsOf(operation), outcome);
  return outcome;
}

}  // namespace tallwick
