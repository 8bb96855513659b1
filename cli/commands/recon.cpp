// recon: balancing a bank account through the reconcile screen, and taking the last reconciliation back.
#include "cli/commands/posted.h"
#include "cli/json_values.h"
#include "cli/report_files.h"
#include "core/text.h"
#include "posting/entry_problems.h"
#include "recon/recon_screen_data.h"
#include "recon/reconcile_account.h"
#include "reports/file_standings.h"

namespace tallwick::cli {

namespace {

constexpr std::string_view kScreen = "frmReconcileAccount";

struct ReconArguments {
  std::vector<TypedEntry> entries;
  bool update = false;
  ReportPaths paths;
  std::string reason;  // of taking back
};

std::unique_ptr<FrmReconcileAccount> OpenReconcile(Office& office, int* status) {
  *status = kDone;
  if (office.OpenBank() == nullptr) {
    *status = office.Status();
    return nullptr;
  }
  std::unique_ptr<Form> form = office.Screens().Make(kScreen, {});
  if (dynamic_cast<FrmReconcileAccount*>(form.get()) == nullptr) {
    office.Out().Fail("The reconcile screen could not be opened");
    *status = kRefused;
    return nullptr;
  }
  std::unique_ptr<FrmReconcileAccount> owned(static_cast<FrmReconcileAccount*>(form.release()));
  owned->Opened();
  return owned;
}

// False after a message.
bool TypeEntries(Office& office, FrmReconcileAccount& screen, const std::vector<TypedEntry>& entries) {
  for (const TypedEntry& entry : entries) {
    const Control* control = screen.Find(entry.control);
    if (!control->enabled) {
      office.Out().Fail("The bank's settings do not allow bank charges and credits");
      return false;
    }
    screen.Change(entry.control, entry.text);
  }
  return true;
}

Json FilesJson(const FileTotals& files) {
  Json list = Json::array();
  for (const FileBalance& file : files.Open()) {
    list.push_back({{"file", file.file_number},
                    {"balance", MoneyText(file.balance)},
                    {"condition", std::string(ConditionOfBalance(file.balance))}});
  }
  return list;
}

void ShowResults(Output& out, FrmReconcileAccount& screen) {
  const ReconResults& results = *screen.Results();
  std::vector<std::vector<std::string>> rows;
  for (const ReconResultLook& look : kReconResultLooks) {
    out.Set(look.control, MoneyText(results.*look.member));
    rows.push_back({std::string(look.caption), AmountText(results.*look.member)});
  }
  rows.push_back({"Sum of File Ledgers", AmountText(screen.Files()->Sum())});
  out.Set("clearedChecksCount", results.cleared_check_count);
  out.Set("clearedWiresCount", results.cleared_wire_count);
  out.Set("txtFileLedgersTotal", MoneyText(screen.Files()->Sum()));
  if (out.IsJson()) out.Set("files", FilesJson(*screen.Files()));
  const std::string& note = screen.Find("lblStatementNote")->caption;
  if (!note.empty()) {
    out.Set("note", note);
    out.Line(note);
  }
  out.Set("proof", screen.Find("lblProof")->caption);
  out.Set("status", screen.Find("lblStatus")->caption);
  out.Set("updated", screen.IsUpdated());
  out.Line(TextTable({"Reconciliation", "Amount"}, "<>", rows));
  out.Line(screen.Find("lblProof")->caption);
  out.Line(screen.Find("lblStatus")->caption);
}

int Reconcile(Office& office, const ReconArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<FrmReconcileAccount> screen = OpenReconcile(office, &status);
  if (!screen) return status;
  if (!TypeEntries(office, *screen, arguments.entries)) return kRefused;
  if (arguments.update && ProveWritable(office, arguments.paths) != kDone) return kRefused;
  screen->Click(arguments.update ? "cmdUpdateBankRecord" : "cmdCompute");
  if (screen->Results() == nullptr) return office.Refuse("The account was not computed");
  ShowResults(office.Out(), *screen);
  if (arguments.update && !screen->IsUpdated()) return office.Refuse("The bank record was not updated");
  return SaveReport(office, *screen->Report(), arguments.paths);
}

int TakeBack(Office& office, const ReconArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<FrmReconcileAccount> screen = OpenReconcile(office, &status);
  if (!screen) return status;
  // Who gives the command and a reason has been asked enough.
  office.Boxes().QueueAnswer(BoxAnswer::kYes);
  const std::string before = screen->Find("txtReconciledThrough")->text;
  screen->Change("txtTakeBackReason", arguments.reason);
  if (!screen->Find("cmdTakeBack")->enabled) return office.Refuse(std::string(kReasonNeeded));
  screen->Click("cmdTakeBack");
  const std::string after = screen->Find("txtReconciledThrough")->text;
  const bool taken = before != after;
  office.Out().Set("takenBack", taken);
  office.Out().Set("reconciledThrough", after);
  if (!taken) return office.Refuse("The last reconciliation was not taken back");
  office.Out().Line(screen->Find("lblStatus")->caption);
  return kDone;
}

constexpr EntryOption kEntryOptions[] = {
    {"--statement", "txtStatementDate", false, "Statement date in the bank's form"},
    {"--balance", "txtBankStatementBalance", false, "Ending balance from the statement"},
    {"--beginning", "txtBeginningCheckBookBalance", false,
     "Beginning check book balance; the last reconciliation's when left out"},
    {"--adjustments", "txtAdjustmentsinTransit", false, "Adjustments in transit"},
    {"--credits", "txtPlusBankCredits", false, "Bank credits"},
    {"--charges", "txtLessBankCharges", false, "Bank charges"},
};

}  // namespace

void AddReconCommand(CLI::App& app, Action& chosen) {
  CLI::App* recon = app.add_subcommand("recon", "Balances the bank account against a statement");
  auto arguments = std::make_shared<ReconArguments>();
  AddEntryOptions(*recon, kEntryOptions, arguments->entries);
  recon->add_flag("--update", arguments->update, "Records the reconciliation when the difference is zero");
  AddReportOptions(recon, arguments->paths);
  CLI::App* take_back = recon->add_subcommand("take-back", "Takes the last reconciliation back");
  take_back->add_option("--reason", arguments->reason, "Goes to the audit log")->required();
  // Only one of the two is meant, and only the computation needs the statement.
  recon->parse_complete_callback([recon, take_back] {
    if (take_back->parsed()) return;
    for (const char* needed : {"--statement", "--balance"}) {
      if (recon->count(needed) == 0) throw CLI::RequiredError(needed);
    }
  });
  recon->final_callback([take_back, &chosen, arguments] {
    int (*run)(Office&, const ReconArguments&) = take_back->parsed() ? TakeBack : Reconcile;
    chosen = [arguments, run](Office& office) { return run(office, *arguments); };
  });
}

}  // namespace tallwick::cli
