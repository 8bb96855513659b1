#include "clearing/deposit_clearing.h"

#include "audit/audit_trail.h"
#include "posting/deposit_facts.h"
#include "posting/post_deposit.h"
#include "shell/company_tables.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr PostingScreen kScreen{
    "frmEditDepositsClear", "Clear Deposits - ", "Bank ID Code no longer valid...",
    kAuditClearDeposit,     kRightClearDeposits, "lblDepositStatus"};

const DepositItem& ItemOf(const DepositRecord& deposit, int item) {
  return deposit.items[static_cast<std::size_t>(item) - 1];
}

}  // namespace

FrmEditDepositsClear::FrmEditDepositsClear(Session& session, ScreenOpener* opener)
    : PostingForm(session, kScreen, opener), deposits_(std::make_shared<DepositRegister>(session.Home())) {
  Add(ControlKind::kDate, "txtDepositDated", "&Date Posted");
  Add(ControlKind::kNumber, "txtDateSequence", "&Sequence");
  Add(ControlKind::kPeriod, "txtStmtPeriod", "Statement &Period");
  for (int item = 1; item <= kDepositItems; ++item) {
    Add(ControlKind::kCheck, "chkCleared", "Cleared", item);
    for (const char* label : {"lblItems", "lblItemAmounts", "lblItemPeriods"})
      Add(ControlKind::kLabel, label, {}, item);
    Add(ControlKind::kPeriod, "txtStmtPeriods", {}, item);
    SetVisible("txtStmtPeriods", false, item);
    SetEnabled("txtStmtPeriods", false, item);
  }
  for (std::string_view label : {"lblDepositStatus", "lblLastReconciled"}) {
    Add(ControlKind::kLabel, std::string(label));
  }
  Add(ControlKind::kGrid, "lstDepositDates", "Deposits");
  Add(ControlKind::kButton, "cmdOk", "&Ok");
  Add(ControlKind::kButton, "cmdMarkAll", "&Mark All");
  Add(ControlKind::kButton, "cmdClose", "&Close");
  AddRoutes({kLedgerCommand});
}

void FrmEditDepositsClear::OnOpen() {
  SetSource("lstDepositDates", deposits_);
  SetText("txtStmtPeriod", ShownValue(ProposedPeriod()));
  ShowNothing();
  SetFocus("txtDepositDated");
}

void FrmEditDepositsClear::OnEnter(Control& control) {
  if (control.index != 0) current_item_ = control.index;
}

std::string FrmEditDepositsClear::CurrentFile() {
  return loaded_ ? ItemOf(*loaded_, current_item_).file_number : std::string();
}

void FrmEditDepositsClear::OnLeave(Control& control) {
  if (control.kind == ControlKind::kDate || control.kind == ControlKind::kPeriod) {
    SetText(control.name, FormattedEntry(control.kind, control.text, bank_.accounting.day));
  }
  if (control.name == "txtDepositDated" || control.name == "txtDateSequence") LookUpDeposit();
}

void FrmEditDepositsClear::OnChoose(Control& control) {
  if (control.name != "lstDepositDates" || control.selected == 0) return;
  const DepositKey key = deposits_->KeyAt(static_cast<std::size_t>(control.selected) - 1);
  if (key.dated.empty() || !MayDropChanges()) return;
  if (tables_.deposits.SeekDeposit(key.dated, key.sequence)) ShowDeposit(tables_.deposits.Read());
}

void FrmEditDepositsClear::OnClick(Control& control) {
  if (control.name == "cmdOk") Post();
  if (control.name == "cmdMarkAll") MarkAll();
  if (control.name == "cmdClose") Close();
}

bool FrmEditDepositsClear::EnterGoesOn() {
  return Focus() != nullptr && (Focus()->name == "txtDepositDated" || Focus()->name == "txtDateSequence" ||
                                Focus()->name == "chkCleared");
}

// A deposit is seen before it is cleared: Enter leads to its items, and from one to the next.
bool FrmEditDepositsClear::OnKey(std::string_view key) {
  const std::string_view at = Focus() != nullptr ? std::string_view(Focus()->name) : "";
  if (key == "Enter" && at == "txtDepositDated") {
    SetFocus("txtDateSequence");
    return true;
  }
  if (key == "Enter" && at == "txtDateSequence") {
    LookUpDeposit();
    GoToItemBehind(0);
    return true;
  }
  if (key == "Enter" && at == "chkCleared") {
    GoToItemBehind(Focus()->index);
    return true;
  }
  return PostingForm::OnKey(key);
}

void FrmEditDepositsClear::GoToItemBehind(int item) {
  for (int next = item + 1; next <= kDepositItems; ++next)
    if (At("chkCleared", next).enabled) return SetFocus("chkCleared", next);
}

// --- Which deposit ---

void FrmEditDepositsClear::ShowKey() {
  if (!loaded_) return;
  SetText("txtDepositDated", DisplayDate(ParseStoredDate(loaded_->dated).value_or(Date{})));
  SetText("txtDateSequence", loaded_->sequence);
}

void FrmEditDepositsClear::LookUpDeposit() {
  const std::optional<Date> date = ParseDisplayDate(Text("txtDepositDated"));
  const std::string sequence(Trim(Text("txtDateSequence")));
  if (!date || date->IsEmpty() || sequence.empty()) return;
  const std::string dated = StoredDate(*date);
  if (loaded_ && loaded_->dated == dated && loaded_->sequence == sequence) return;
  if (!MayDropChanges()) return ShowKey();
  if (tables_.deposits.SeekDeposit(dated, sequence)) return ShowDeposit(tables_.deposits.Read());
  ShowNothing();
}

void FrmEditDepositsClear::ShowDeposit(const DepositRecord& deposit) {
  loaded_ = deposit;
  current_item_ = 1;
  ShowKey();
  for (int item = 1; item <= kDepositItems; ++item) {
    ShowItem(item);
    KeepItemPeriod(deposit, item);
  }
  SetCaption("lblDepositStatus", StateOf(deposit).text);
  KeepState();
  Audit(kAuditSnapshot, {});
}

void FrmEditDepositsClear::ShowNothing() {
  loaded_.reset();
  for (int item = 1; item <= kDepositItems; ++item) ShowItem(item);
  SetCaption("lblDepositStatus", "Not Posted");
  KeepState();
}

void FrmEditDepositsClear::KeepItemPeriod(const DepositRecord& deposit, int item) {
  SetText("txtStmtPeriods", ShownValue(ItemOf(deposit, item).statement), item);
}

void FrmEditDepositsClear::ShowItem(int item) {
  const DepositItem shown = loaded_ ? ItemOf(*loaded_, item) : DepositItem{};
  const bool cleared = shown.status == "C";
  SetCaption("lblItems", IsUsed(shown) ? shown.file_number + "  " + shown.source : "", item);
  SetCaption("lblItemAmounts", IsUsed(shown) ? AmountText(shown.amount) : "", item);
  SetCaption("lblItemPeriods", cleared ? ShownValue(shown.statement) : "", item);
  SetValue("chkCleared", cleared ? 1 : 0, item);
  SetVisible("chkCleared", IsUsed(shown), item);
  SetEnabled("chkCleared", MayMark(shown), item);
}

bool FrmEditDepositsClear::MayMark(const DepositItem& item) const {
  return IsUsed(item) && !(item.status == "C" && IsReconciled(item.statement));
}

// Items whose statement has been reconciled by now stand as they were loaded.
bool FrmEditDepositsClear::MayChange() {
  for (int item = 1; loaded_ && item <= kDepositItems; ++item) {
    SetEnabled("chkCleared", MayMark(ItemOf(*loaded_, item)), item);
  }
  return ClosedEntriesStand("The statement on which lines have cleared was reconciled.");
}

void FrmEditDepositsClear::MarkAll() {
  for (int item = 1; item <= kDepositItems; ++item) {
    if (At("chkCleared", item).enabled) SetValue("chkCleared", 1, item);
  }
}

void FrmEditDepositsClear::RefreshRegister() {
  deposits_->Refresh();
  RowsChanged("lstDepositDates");
}

// --- Writing ---

DepositRecord FrmEditDepositsClear::Marked(const Period& statement) {
  DepositRecord deposit = *loaded_;
  for (int item = 1; item <= kDepositItems; ++item) {
    DepositItem& one = deposit.items[static_cast<std::size_t>(item) - 1];
    const bool marked = At("chkCleared", item).value == 1;
    if (!IsUsed(one) || marked == (one.status == "C")) continue;
    one.status = marked ? "C" : "O";
    one.statement = marked ? statement : Period{};
  }
  return deposit;
}

bool FrmEditDepositsClear::ClearsAny() {
  for (int item = 1; item <= kDepositItems; ++item) {
    if (At("chkCleared", item).value == 1 && ItemOf(*loaded_, item).status != "C") return true;
  }
  return false;
}

bool FrmEditDepositsClear::MayPost(Period* statement) {
  if (!loaded_) {
    return Passes({"txtDepositDated", "No deposit is shown.  Type the date and sequence of a posted one."});
  }
  if (!ClearsAny()) return true;
  bool valid = false;
  *statement = PeriodIn("txtStmtPeriod", &valid);
  if (!valid) return Passes({"txtStmtPeriod", "Statement Period is bad or missing."});
  const std::string period = ShortForm(*statement);
  if (IsReconciled(*statement)) {
    return Passes({"txtStmtPeriod", "May NOT clear Deposits in the Statement Period " + period +
                                        " - It has been reconciled..."});
  }
  if (MakeKey(*statement) < MakeKey(loaded_->accounting)) {
    return Passes({"txtStmtPeriod", "Deposit posted to Accounting Period " + ShortForm(loaded_->accounting) +
                                        " can not be cleared in the Statement Period " + period});
  }
  return true;
}

bool FrmEditDepositsClear::Post() {
  Period statement;
  if (!MayWrite() || !MayChange() || !MayPost(&statement)) return false;
  const DepositRecord marked = Marked(statement);
  const std::string name = DepositName(marked.dated, marked.sequence);
  if (marked == *loaded_) {
    Boxes().Inform(Caption(), "Deposit " + name + " was not added or updated.");
    return false;
  }
  const PostOutcome outcome =
      RewriteDeposit(tables_, session_.Company().xrefs, bank_code_, *loaded_, marked, SameReconciliation());
  if (!outcome.Done()) return SettleFailure(outcome);
  last_posted_ = marked.dated + marked.sequence;
  AuditMarks(marked, name);
  TellPosted();
  ShowDeposit(marked);
  SetFocus("txtDepositDated");
  return true;
}

// The period in which lines are marked now is no value of the deposit: each line has its own, before and after.
void FrmEditDepositsClear::AuditMarks(const DepositRecord& marked, const std::string& name) {
  for (int item = 1; item <= kDepositItems; ++item) KeepItemPeriod(marked, item);
  Control& typed = At("txtStmtPeriod");
  typed.tag = typed.text;
  Audit(kAuditSave, name);
}

// What another workstation has made of the deposit is shown; the marks are set anew by hand.
bool FrmEditDepositsClear::SettleFailure(const PostOutcome& outcome) {
  const std::string name = DepositName(loaded_->dated, loaded_->sequence);
  if (outcome.code == kChangedElsewhere) {
    const bool there = tables_.deposits.SeekDeposit(loaded_->dated, loaded_->sequence);
    ShowChanged("Deposit " + name, "saved",
                [&] { there ? ShowDeposit(tables_.deposits.Read()) : ShowNothing(); });
    MarkRefused("txtDateSequence");
    return false;
  }
  if (outcome.code == kReconciledElsewhere) return Post();
  TellFailure(outcome, FailureText(outcome, DepositFailureMessage(outcome, name)), {}, "txtDateSequence");
  return false;
}

}  // namespace tallwick
