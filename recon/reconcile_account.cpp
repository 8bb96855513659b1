#include "recon/reconcile_account.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "core/text.h"
#include "core/text_format.h"
#include "posting/bank_settings.h"
#include "posting/entry_fields.h"
#include "recon/recon_screen_data.h"
#include "recon/statement_date.h"
#include "reports/report_origin.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

constexpr std::string_view kBankGone = "Bank ID Code is no longer valid.";
constexpr std::string_view kAllowChargesCredits = "ReconcileAllowBankChargesCredits";

bool IsYes(std::string_view value) {
  return value.empty() || std::string_view("TtYy1").find(value[0]) != std::string_view::npos;
}

bool IsAmountEntry(std::string_view control) {
  return std::any_of(std::begin(kReconEntryLooks), std::end(kReconEntryLooks),
                     [&](const ReconEntryLook& look) { return look.control == control; });
}

}  // namespace

FrmReconcileAccount::FrmReconcileAccount(Session& session, ScreenOpener* opener)
    : ReportForm("frmReconcileAccount", session, opener),
      bank_code_(session.BankCode()),
      bank_name_(session.BankName()),
      tables_(session.Home()) {
  SetFormCaption("Reconcile Account - " + bank_name_);
  int step = 0;
  for (std::string_view text : kReconSteps) Add(ControlKind::kLabel, "lblSteps", std::string(text), ++step);
  Add(ControlKind::kLabel, "lblInformation");
  Add(ControlKind::kPeriod, "txtStatementDate", "&Statement Date");
  Add(ControlKind::kLabel, "lblStatementNote");
  for (const ReconEntryLook& look : kReconEntryLooks)
    Add(ControlKind::kAmount, std::string(look.control), std::string(look.caption));
  for (const ReconResultLook& look : kReconResultLooks)
    Add(ControlKind::kAmount, std::string(look.control), std::string(look.caption)).enabled = false;
  Add(ControlKind::kAmount, "txtFileLedgersTotal", "Sum of File Ledgers").enabled = false;
  for (std::string_view label : {"lblClearedChecksCount", "lblClearedWiresCount", "lblProof"})
    Add(ControlKind::kLabel, std::string(label));
  for (const ReconList& list : kReconLists)
    Add(ControlKind::kButton, std::string(list.control), std::string(list.caption)).enabled = false;
  Add(ControlKind::kButton, "cmdFiles", "Sum of File Ledgers").enabled = false;
  Add(ControlKind::kLabel, "lblItems");
  Add(ControlKind::kGrid, "grdItems", "Items");
  Add(ControlKind::kButton, "cmdOpenItem", "&Open Item").enabled = false;
  Add(ControlKind::kLabel, "prgProgress").visible = false;
  Add(ControlKind::kLabel, "lblProgress", "Press 'Esc' to cancel...").visible = false;
  Add(ControlKind::kLabel, "lblStatus");
  Add(ControlKind::kText, "txtReconciledThrough", "Last Reconciliation").enabled = false;
  Add(ControlKind::kText, "txtTakeBackReason", "&Reason");
  Add(ControlKind::kButton, "cmdTakeBack", "&Take Back");
  Add(ControlKind::kButton, "cmdCompute", "&Compute");
  Add(ControlKind::kButton, "cmdUpdateBankRecord", "&Update");
  AddReportButtons();
  Add(ControlKind::kButton, "cmdClose", "C&lose");
  AddRoutes({kLedgerCommand});
  SetPrintable(false);
}

bool FrmReconcileAccount::OpenTables() {
  return ReadBank() && tables_.Open(bank_code_);
}

bool FrmReconcileAccount::ReadBank() {
  std::optional<BankRecord> bank = session_.Company().banks.Find(bank_code_);
  if (!bank) {
    Boxes().Critical(Caption(), kBankGone);
    return false;
  }
  bank_ = std::move(*bank);
  At("txtStatementDate").month_only = bank_.accounting.day == 0;
  return true;
}

void FrmReconcileAccount::OnOpen() {
  const BankSettings settings(session_.Files(), session_.DataPath(), kReconcileSettings, bank_code_);
  charges_allowed_ = settings.Problem().empty() && IsYes(settings.Get(kAllowChargesCredits).value_or(""));
  SetEntriesOpen(true);
  ShowBank();
  ClearEntries();
  const Period proposed = AsProposed(bank_.accounting);
  if (StatementDateProblem(proposed, bank_.reconciled).empty())
    SetText("txtStatementDate", ShownValue(proposed));
  Audit(kAuditSnapshot);
  if (!settings.Problem().empty())
    Boxes().Exclaim(Caption(),
                    settings.Problem() + "  Bank charges and credits cannot be entered until then.");
  if (const std::string line = settings.UnknownLine({&kAllowChargesCredits, 1}); !line.empty())
    Boxes().Exclaim(Caption(), "The line " + Quoted(line) + " of " + settings.Name() +
                                   " in the company's data folder is no setting of reconciliations and does "
                                   "nothing.  The one that there is is " +
                                   std::string(kAllowChargesCredits) + ".");
  SetFocus("txtStatementDate");
}

void FrmReconcileAccount::ShowBank() {
  std::int64_t posted = 0;
  for (const TableBase* table :
       {static_cast<TableBase*>(&tables_.checks), static_cast<TableBase*>(&tables_.wires),
        static_cast<TableBase*>(&tables_.deposits)})
    posted += table->RecordCount();
  if (findings_) posted = findings_->records;
  const std::string last = bank_.reconciled.IsEmpty() ? "none" : LongForm(bank_.reconciled);
  SetCaption("lblInformation", "Current Accounting Period is " + LongForm(bank_.accounting) +
                                   "    Last Reconciliation was " + last + "    " +
                                   (posted == 0 ? "No transactions posted..."
                                                : FormatNumber(static_cast<long long>(posted), "###,##0") +
                                                      " transactions posted."));
  SetText("txtReconciledThrough", ShownValue(bank_.reconciled));
  ShowTakeBack();
}

void FrmReconcileAccount::OnLeave(Control& control) {
  if (control.name == "txtStatementDate")
    SetText(control.name, FormattedEntry(control.kind, control.text, bank_.accounting.day));
  if (!IsAmountEntry(control.name)) return;
  SetText(control.name, FormattedEntry(control.kind, control.text, 0));
  const ReconEntries shown = entries_;
  if (findings_ && !updated_ && ReadEntries() && entries_ != shown) ShowResults();
}

void FrmReconcileAccount::OnChange(Control& control) {
  if (control.name == "txtStatementDate") ChangeStatement();
  if (control.name == "txtTakeBackReason") ShowTakeBack();
}

void FrmReconcileAccount::OnClick(Control& control) {
  if (control.name == "cmdCompute") {
    Compute();
  } else if (control.name == "cmdUpdateBankRecord") {
    Update();
  } else if (control.name == "cmdTakeBack") {
    TakeBack();
  } else if (control.name == "cmdFiles") {
    ShowFiles();
  } else if (control.name == "cmdOpenItem") {
    OpenShown();
  } else if (control.name == "cmdClose") {
    Close();
  } else if (!Send(control.name)) {
    ShowList(control.name);
  }
}

void FrmReconcileAccount::OnChoose(Control& control) {
  if (control.name == "grdItems") SetEnabled("cmdOpenItem", control.selected != 0);
}

bool FrmReconcileAccount::OnKey(std::string_view key) {
  if (key == "Enter" && Focus() != nullptr && Focus()->name == "grdItems") {
    OpenShown();
    return true;
  }
  return ReportForm::OnKey(key);
}

// --- Entries ---

void FrmReconcileAccount::SetEntriesOpen(bool open) {
  for (const ReconEntryLook& look : kReconEntryLooks) {
    const bool is_banks = look.member == &ReconEntries::credits || look.member == &ReconEntries::charges;
    SetEnabled(look.control, open && (charges_allowed_ || !is_banks));
  }
}

void FrmReconcileAccount::ClearEntries() {
  for (const ReconEntryLook& look : kReconEntryLooks) SetText(look.control, FirstText(look.control));
}

std::string FrmReconcileAccount::FirstText(std::string_view entry) const {
  return entry == "txtBeginningCheckBookBalance" ? ShownValue(bank_.beginning_balance) : std::string();
}

void FrmReconcileAccount::ChangeStatement() {
  if (updated_) {
    if (!MayLeaveReport()) return SetText("txtStatementDate", ShownValue(statement_));
    ClearEntries();
  }
  Forget();
}

bool FrmReconcileAccount::ReadStatementDate() {
  const std::string& text = Text("txtStatementDate");
  if (Trim(text).empty()) {
    Refuse("Enter the date of the bank statement.", "txtStatementDate");
    return false;
  }
  const Period statement = ParsePeriod(text, bank_.accounting.day, session_.Run());
  if (!session_.Run().period_valid) {
    ReportInvalidPeriod(text, bank_.accounting.day, Boxes());
    MarkRefused("txtStatementDate");
    return false;
  }
  if (const std::string problem = StatementDateProblem(statement, bank_.reconciled); !problem.empty()) {
    Refuse(problem, "txtStatementDate");
    return false;
  }
  statement_ = statement;
  return true;
}

bool FrmReconcileAccount::ReadEntries() {
  ReconEntries entries;
  for (const ReconEntryLook& look : kReconEntryLooks) {
    const std::string text(Trim(Text(look.control)));
    const std::optional<Currency> amount = text.empty() ? Currency() : Currency::ParseTyped(text);
    if (!amount || amount->Abs() > GreatestAmount(WidthOf(kBankLayout, "BANKBEGBAL"))) {
      Refuse(std::string(look.label) +
                 (amount ? " is more than a bank record holds." : " is no amount.  Enter it as 1,250.00."),
             look.control);
      return false;
    }
    entries.*look.member = *amount;
  }
  entries_ = entries;
  return true;
}

// --- Computing ---

bool FrmReconcileAccount::Compute() {
  if (working_ || !ReadBank() || !ReadStatementDate() || !ReadEntries()) return false;
  Forget();
  SetWorking(true);
  const bool done = RunPasses();
  SetWorking(false);
  if (!done) {
    findings_.reset();
    return false;
  }
  origin_ = OriginOf(session_);
  ShowResults();
  ShowBank();
  return true;
}

bool FrmReconcileAccount::RunPasses() {
  findings_ = std::make_unique<ReconFindings>(
      ReconTerms{statement_, MakeKey(bank_.reconciled), bank_.date_type, bank_.month_statements});
  const PassEnd end = RunReconPasses(
      tables_,
      [this](std::string_view what, std::int64_t done, std::int64_t total) {
        return ShowProgress(what, done, total);
      },
      *findings_);
  if (end == PassEnd::kStopped) SetCaption("lblStatus", "Calculations incomplete - stopped by user...");
  if (end == PassEnd::kUnreadable)
    SetCaption("lblStatus", "Calculations incomplete - a table could not be read...");
  return end == PassEnd::kDone;
}

bool FrmReconcileAccount::ShowProgress(std::string_view what, std::int64_t done, std::int64_t total) {
  const std::int64_t share = total > 0 ? done * 100 / total : 100;
  SetCaption("lblStatus", std::string(what));
  SetValue("prgProgress", static_cast<int>(share));
  SetCaption("prgProgress", std::to_string(share) + " %");
  return !StopAsked();
}

void FrmReconcileAccount::SetWorking(bool working) {
  working_ = working;
  SetVisible("prgProgress", working);
  SetVisible("lblProgress", working);
}

void FrmReconcileAccount::Forget() {
  findings_.reset();
  results_ = {};
  updated_ = printed_ = false;
  SetEntriesOpen(true);
  for (const ReconResultLook& look : kReconResultLooks) SetText(look.control, {});
  SetText("txtFileLedgersTotal", {});
  for (std::string_view label :
       {"lblStatementNote", "lblClearedChecksCount", "lblClearedWiresCount", "lblProof", "lblItems"})
    SetCaption(label, {});
  for (const ReconList& list : kReconLists) SetEnabled(list.control, false);
  SetEnabled("cmdFiles", false);
  SetPrintable(false);
  SetSource("grdItems", nullptr);
  SetEnabled("cmdOpenItem", false);
  SetCaption("lblStatus", {});
}

void FrmReconcileAccount::ShowResults() {
  results_ = findings_->recon.ResultsFor(entries_);
  printed_ = false;
  SetCaption("lblStatementNote", StatementDateNote(statement_, session_.TheClock().Now().date));
  for (const ReconResultLook& look : kReconResultLooks)
    SetText(look.control, AmountText(results_.*look.member));
  const Currency files = findings_->files.Sum();
  SetText("txtFileLedgersTotal", AmountText(files));
  const auto count = [](std::int64_t number) {
    return FormatNumber(static_cast<long long>(number), "###,##0");
  };
  SetCaption("lblClearedChecksCount", count(results_.cleared_check_count));
  SetCaption("lblClearedWiresCount", count(results_.cleared_wire_count));
  SetCaption("lblProof", ProofText(results_, files));
  for (const ReconList& list : kReconLists) SetEnabled(list.control, true);
  SetEnabled("cmdFiles", true);
  SetPrintable(true);
  SetCaption("lblStatus", std::string(results_.IsBalanced() ? kReconBalanced : kReconNotBalanced));
}

// --- What is behind a figure ---

void FrmReconcileAccount::ShowList(std::string_view control) {
  for (const ReconList& list : kReconLists) {
    if (list.control != control || !findings_) continue;
    const ReconListSum sum = SumOf(findings_->entries, list);
    SetCaption("lblItems", std::string(list.caption) + ": " +
                               FormatNumber(static_cast<long long>(sum.count), "###,##0") +
                               (sum.count == 1 ? " item, " : " items, ") + AmountText(sum.sum));
    SetSource("grdItems", MakeItemRows(session_.Home(), bank_code_, findings_->entries, list));
    SetEnabled("cmdOpenItem", false);
  }
}

void FrmReconcileAccount::ShowFiles() {
  if (!findings_) return;
  std::vector<FileBalance> files = findings_->files.Open();
  SetCaption("lblItems",
             "Files with a balance: " + FormatNumber(static_cast<long long>(files.size()), "###,##0") + ", " +
                 AmountText(findings_->files.Sum()));
  SetSource("grdItems", MakeFileRows(std::move(files)));
  SetEnabled("cmdOpenItem", false);
}

// Screens of items work on the open bank account.
void FrmReconcileAccount::OpenShown() {
  const Control& grid = At("grdItems");
  if (opener_ == nullptr || !grid.source || grid.selected == 0) return;
  const std::optional<ItemRoute> item =
      RouteOfRow(grid.source->Row(static_cast<std::size_t>(grid.selected) - 1));
  if (!item) {
    GoTo(kLedgerCommand);
  } else if (session_.BankCode() != bank_code_) {
    Boxes().Exclaim(Caption(), "Open " + bank_name_ + " again to look at its items.");
  } else {
    OpenItem(*item);
  }
}

}  // namespace tallwick
