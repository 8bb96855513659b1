#include "posting/deposit_posting.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "core/text_format.h"
#include "posting/check_numbering.h"
#include "posting/deposit_facts.h"
#include "shell/company_tables.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr PostingScreen kScreen{"frmEditDepositsPost", "Post Deposits - ", "Bank ID Code no longer valid...",
                                kAuditPostDeposit,     kRightPostDeposits, "lblDepositStatus"};

constexpr PostingScreen kViewing{
    "frmEditDepositsPost", "View Deposits - ", kScreen.bank_gone, kAuditPostDeposit, 0, "lblDepositStatus"};

struct Command {
  std::string_view control;
  std::string_view caption;
};
constexpr Command kButtons[] = {
    {"cmdOk", "P&ost Deposit"},
    {"cmdDepositSlip", "Deposit Sli&p"},
    {"cmdCalendar", "Calendar"},
    {"cmdClose", "&Close"},
    {"cmdListDeposits", "&List Deposits"},
    {"cmdListAll", "&List All"},
    {"cmdListOutstanding", "&List Outstanding"},
    {"cmdListCleared", "&List Cleared"},
};
constexpr Command kMenus[] = {
    {"mnuEditUseTodaysDateandNextSequence", "Use &Today's Date and Next Sequence"},
    {"mnuEditInsertCurrentFile", "&Insert Current File"},
    {"mnuEditCutLineItems", "C&ut Line Items"},
    {"mnuEditPasteLineItems", "&Paste Line Items"},
    {"mnuEditClearPasteBuffer", "&Clear Paste Buffer"},
};

}  // namespace

FrmEditDepositsPost::FrmEditDepositsPost(Session& session, ScreenOpener* opener, DepositMode mode)
    : PostingForm(session, mode == DepositMode::kViewing ? kViewing : kScreen, opener),
      viewing_(mode == DepositMode::kViewing),
      deposits_(std::make_shared<DepositRegister>(session.Home())),
      items_(std::make_shared<DepositItemRegister>(session.Home())) {
  AddControls();
}

void FrmEditDepositsPost::AddControls() {
  Add(ControlKind::kDate, "txtDepositDated", "&Date Posted");
  Add(ControlKind::kNumber, "txtDateSequence", "&Sequence");
  Add(ControlKind::kPeriod, "txtDepositAcctPeriod", "Acco&unting Period");
  for (int row = 1; row <= kDepositItems; ++row) AddRow(row);
  for (std::string_view label : {"lblDepositTotal", "lblItemCount", "lblDepositStatus", "lblEditMessage",
                                 "lblLastReconciled", "lblPasteBuffer"}) {
    Add(ControlKind::kLabel, std::string(label));
  }
  Add(ControlKind::kGrid, "lstDepositDates", "Deposits");
  AddFileLookUp("txtFileNumbers");
  for (const Command& one : kButtons) {
    Add(ControlKind::kButton, std::string(one.control), std::string(one.caption));
  }
  for (const Command& one : kMenus) {
    Add(ControlKind::kMenu, std::string(one.control), std::string(one.caption));
  }
  AddOption("mnuOptionsFreeFormatPostedDates", "&Free Format Posted Dates", false);
  AddOption("mnuOptionsFileCheck", "&Check File Numbers", true);
  AddRoutes({kLedgerCommand});
}

void FrmEditDepositsPost::AddRow(int row) {
  Add(ControlKind::kLabel, "lblItemNumbers", PadLeft(std::to_string(row), 2), row);
  Add(ControlKind::kText, "txtFileNumbers", "File Number", row);
  Add(ControlKind::kText, "txtSources", "Source", row);
  Add(ControlKind::kAmount, "txtAmounts", "Amount", row);
  Add(ControlKind::kCheck, "chkWireIn", "Wire In", row);
  Add(ControlKind::kLabel, "lblItemStatus", {}, row);
}

bool FrmEditDepositsPost::OpenRegister() {
  return deposits_->Open(bank_code_) && items_->Open(bank_code_);
}

void FrmEditDepositsPost::OnOpen() {
  SetSource("lstDepositDates", deposits_);
  BeginNew(session_.TheClock().Now().date);
  if (viewing_ && tables_.deposits.Bottom("DEPODATED")) ShowDeposit(tables_.deposits.Read());
  if (viewing_) {
    SetFocus("txtDepositDated");
  } else {
    SetFocus("txtFileNumbers", 1);
  }
}

void FrmEditDepositsPost::OnEnter(Control& control) {
  if (control.index != 0) current_row_ = control.index;
  if (control.name == "txtDepositDated" && !loaded_) {
    SetCaption("lblEditMessage", NewDepositNote());
  }
}

void FrmEditDepositsPost::OnLeave(Control& control) {
  if (control.name == "txtDepositDated") {
    LeaveDate();
  } else if (control.name == "txtDateSequence") {
    SetText("txtDateSequence", StoredSequence(control.text));
    LookUpDeposit();
  } else if (control.name == "txtDepositAcctPeriod") {
    LeavePeriod();
  } else if (control.name == "txtFileNumbers") {
    LeaveFileNumber(control.index);
  } else if (control.name == "txtSources" || control.name == "txtAmounts") {
    SetText(control.name, FormattedEntry(control.kind, control.text, 0), control.index);
    ShowTotals();
  }
}

void FrmEditDepositsPost::OnChange(Control& control) {
  if (control.name == "txtDateSequence") sequence_typed_ = !control.text.empty();
  if (control.name == "txtAmounts") ShowTotals();
  PostingForm::OnChange(control);
}

void FrmEditDepositsPost::OnChoose(Control& control) {
  if (control.name != "lstDepositDates" || control.selected == 0) return;
  const auto row = static_cast<std::size_t>(control.selected) - 1;
  const DepositKey key = shows_items_ ? items_->KeyAt(row) : deposits_->KeyAt(row);
  if (key.dated.empty()) return RefreshRegister();
  if (!MayDropChanges(UnsavedQuestion())) return;
  OpenDeposit(key.dated, key.sequence);
  current_row_ = std::max(key.item, 1);
}

void FrmEditDepositsPost::OnClick(Control& control) {
  if (control.name == "cmdOk") Post();
  if (control.name == "cmdDepositSlip") PrintSlip();
  if (control.name == "cmdCalendar") SetFocus("txtDepositAcctPeriod");
  if (control.name == "cmdClose") Close();
  if (control.name == "cmdListDeposits") ListDeposits();
  if (control.name == "cmdListAll") ListItems("");
  if (control.name == "cmdListOutstanding") ListItems("O");
  if (control.name == "cmdListCleared") ListItems("C");
  PostingForm::OnClick(control);
}

void FrmEditDepositsPost::OnMenu(Control& control) {
  if (control.name == "mnuEditUseTodaysDateandNextSequence" && MayDropChanges(UnsavedQuestion())) {
    BeginNew(session_.TheClock().Now().date);
    SetFocus("txtFileNumbers", 1);
  }
  if (control.name == "mnuEditInsertCurrentFile") InsertCurrentFile();
  if (control.name == "mnuEditCutLineItems") CutRows();
  if (control.name == "mnuEditPasteLineItems") PasteRows();
  if (control.name == "mnuEditClearPasteBuffer") GiveUpBuffer();
  if (control.name == "mnuOptionsFreeFormatPostedDates") ToggleFreeFormat();
  if (control.name == "mnuOptionsFileCheck") ToggleOption(control.name);
  GoTo(control.name);
}

bool FrmEditDepositsPost::OnKey(std::string_view key) {
  if (key == "Ctrl+P" && At("cmdDepositSlip").enabled) {
    PrintSlip();
    return true;
  }
  if (PostingForm::OnKey(key)) return true;
  return key == "Enter" && Focus() != nullptr && GoOnFrom(*Focus());
}

// On a line left empty.
bool FrmEditDepositsPost::EnterPosts(const Control& control) {
  return control.name == "txtFileNumbers" && !RowAt(control.index).IsUsed() && ItemOf(control.index) == 0;
}

bool FrmEditDepositsPost::EnterGoesOn() {
  return Focus() != nullptr && !EnterPosts(*Focus());
}

// Enter goes on from field to field and from line to line until it posts.
bool FrmEditDepositsPost::GoOnFrom(const Control& control) {
  const int row = control.index;
  const auto go_to = [this](std::string_view name, int index) {
    SetFocus(name, index);
    return true;
  };
  if (control.name == "txtDepositDated") return go_to("txtDateSequence", 0);
  if (control.name == "txtDateSequence") return go_to("txtDepositAcctPeriod", 0);
  if (control.name == "txtDepositAcctPeriod") return go_to("txtFileNumbers", 1);
  if (row == 0) return false;
  if (EnterPosts(control)) {
    Click("cmdOk");
    return true;
  }
  if (control.name == "txtFileNumbers") return go_to("txtSources", row);
  if (control.name == "txtSources" && At("txtAmounts", row).enabled) return go_to("txtAmounts", row);
  return row < kDepositItems ? go_to("txtFileNumbers", row + 1) : go_to("cmdOk", 0);
}

bool FrmEditDepositsPost::OnClose() {
  if (!MayDropChanges(loaded_ ? UnsavedQuestion() : "Post Deposit?")) return false;
  return buffer_.empty() || GiveUpBuffer();
}

// --- Which deposit ---

std::string FrmEditDepositsPost::ShownDate(const Date& date) {
  const bool free = IsOn("mnuOptionsFreeFormatPostedDates");
  return free ? FormatDate(date, "mmm d, yyyy") : DisplayDate(date);
}

void FrmEditDepositsPost::ToggleFreeFormat() {
  const std::optional<Date> date = TypedDate();
  ToggleOption("mnuOptionsFreeFormatPostedDates");
  if (!date || date->IsEmpty()) return;
  const bool kept = Text("txtDepositDated") == kept_date_;
  SetText("txtDepositDated", ShownDate(*date));
  if (kept) KeepKey();
}

// The empty date for an entry without one.
std::optional<Date> FrmEditDepositsPost::TypedDate() {
  const std::string& typed = Text("txtDepositDated");
  if (IsEmptyDate(typed)) return Date{};
  // The entry shows what was typed freely; it can be read back in either way of typing.
  const bool free = IsOn("mnuOptionsFreeFormatPostedDates");
  return free ? ParseFreeDate(typed, session_.TheClock().Now().date) : ParseDisplayDate(typed);
}

std::string FrmEditDepositsPost::TypedKey() {
  const Date date = TypedDate().value_or(Date{});
  const std::string& sequence = Text("txtDateSequence");
  return date.IsEmpty() || sequence.empty() ? "" : StoredDate(date) + sequence;
}

void FrmEditDepositsPost::LeaveDate() {
  const std::optional<Date> date = TypedDate();
  if (!date || date->IsEmpty()) return;
  const std::string shown = ShownDate(*date);
  SetText("txtDepositDated", shown);
  if (shown == kept_date_) return LookUpDeposit();
  if (!sequence_typed_) ProposeSequence();
  if (Text("txtDateSequence").empty()) SetCaption("lblEditMessage", NewDepositNote());  // none is free
  LookUpDeposit();
  if (loaded_ || Text("txtDepositDated") != shown || shown == warned_date_) return;
  warned_date_ = shown;
  if (date->year != session_.TheClock().Now().date.year) Boxes().Exclaim(Caption(), "Not current year...");
}

void FrmEditDepositsPost::ProposeSequence() {
  const int next = SequencesOf(tables_.deposits, StoredDate(TypedDate().value_or(Date{}))).Next();
  const bool known = !tables_.deposits.ReadFailed() && next <= kLastSequence;
  SetText("txtDateSequence", known ? std::to_string(next) : "");
}

void FrmEditDepositsPost::LookUpDeposit() {
  const std::string key = TypedKey();
  if (key.empty() || key_.Stands(key)) return;
  // A new deposit keeps its lines under another free date and sequence; anything else shows other lines.
  const std::string dated = StoredDate(*TypedDate());
  const std::string sequence = Text("txtDateSequence");
  const bool shows_other = loaded_ || FindPosted(dated, sequence);
  if (shows_other && !MayDropChanges(UnsavedQuestion())) {
    RestoreKey();
    // A refused post has put the cursor into the field that it names.
    const Control* focus = Focus();
    if (focus != nullptr && focus->name.starts_with("txtD")) SetFocus(focus->name);
    return;
  }
  if (shows_other) return OpenDeposit(dated, sequence);
  KeepKey();
  SetCaption("lblEditMessage", NewDepositNote());
}

void FrmEditDepositsPost::OpenDeposit(const std::string& dated, const std::string& sequence) {
  current_row_ = 1;
  if (const std::optional<DepositRecord> posted = FindPosted(dated, sequence)) return ShowDeposit(*posted);
  BeginNew(ParseStoredDate(dated).value_or(Date{}));
  SetText("txtDateSequence", sequence);
  KeepKey();
}

std::optional<DepositRecord> FrmEditDepositsPost::FindPosted(std::string_view dated,
                                                             std::string_view sequence) {
  if (!tables_.deposits.SeekDeposit(dated, sequence)) return std::nullopt;
  return tables_.deposits.Read();
}

void FrmEditDepositsPost::ShowDeposit(const DepositRecord& deposit) {
  loaded_ = deposit;
  pasted_ = false;
  SetText("txtDepositDated", ShownDate(ParseStoredDate(deposit.dated).value_or(Date{})));
  SetText("txtDateSequence", deposit.sequence);
  SetText("txtDepositAcctPeriod", ShownValue(deposit.accounting));
  for (int row = 1; row <= kDepositItems; ++row) {
    const DepositItem& item = deposit.items[static_cast<std::size_t>(row) - 1];
    const bool used = IsUsed(item);
    PutRow({row, item.file_number, item.source, used ? AmountText(item.amount) : "", IsWireIn(deposit, row)},
           row);
    origin_[static_cast<std::size_t>(row)] = {used ? row : 0, 0};
  }
  KeepKey();
  ShowState();
  KeepState();
  Audit(kAuditSnapshot, {});
}

// The register marks the deposit that is shown, where it led to it.
void FrmEditDepositsPost::BeginNew(const Date& date) {
  loaded_.reset();
  SetSelected("lstDepositDates", 0);
  pasted_ = false;
  for (int row = 1; row <= kDepositItems; ++row) ClearRow(row);
  SetText("txtDepositDated", ShownDate(date));
  ProposeSequence();
  SetText("txtDepositAcctPeriod", ShownValue(ProposedPeriod()));
  KeepKey();
  ShowState();
  KeepState();
}

// The entries belong to the date and sequence that are shown now.
void FrmEditDepositsPost::KeepKey() {
  kept_date_ = Text("txtDepositDated");
  kept_sequence_ = Text("txtDateSequence");
  key_.Set(TypedKey());
  looked_at_period_ = Text("txtDepositAcctPeriod");
  sequence_typed_ = false;
}

void FrmEditDepositsPost::RestoreKey() {
  SetText("txtDepositDated", kept_date_);
  SetText("txtDateSequence", kept_sequence_);
  sequence_typed_ = false;
  key_.PutBack();
}

void FrmEditDepositsPost::ShowState() {
  SetCaption("lblDepositStatus", loaded_ ? StateOf(*loaded_).text : "Not Posted");
  SetCaption("cmdOk", loaded_ ? "&Ok" : "P&ost Deposit");
  SetEnabled("cmdDepositSlip", session_.Documents() != nullptr && loaded_.has_value());
  SetEnabled("mnuEditPasteLineItems", !buffer_.empty());
  SetEnabled("mnuEditClearPasteBuffer", !buffer_.empty());
  SetCaption("lblPasteBuffer", buffer_.empty() ? ""
                                               : std::to_string(buffer_.size()) +
                                                     (buffer_.size() == 1 ? " line" : " lines") +
                                                     " cut: paste into another date and sequence.");
  SetCaption("lblEditMessage", loaded_ ? RestrictionOf(*loaded_, bank_) : NewDepositNote());
  SetEnabled("txtDepositAcctPeriod", !PeriodIsClosed());
  ShowRows();
}

std::string FrmEditDepositsPost::NewDepositNote() {
  std::string reminder = LastDepositReminder(tables_.deposits);
  const Date date = TypedDate().value_or(Date{});
  if (date.IsEmpty()) return reminder;
  const SequencesUsed used = SequencesOf(tables_.deposits, StoredDate(date));
  const std::string note = used.Next() > kLastSequence
                               ? AllSequencesUsed(StoredDate(date))
                               : GapWarning("Sequence", Text("txtDateSequence"), used.highest);
  return (note.empty() ? "" : "\r\n" + note) + reminder;
}

std::string FrmEditDepositsPost::UnsavedQuestion() {
  return loaded_ ? "Save Changes to " + kept_date_ + " ?" : "Save Changes?";
}

// --- The accounting period ---

void FrmEditDepositsPost::LeavePeriod() {
  const Control& control = At("txtDepositAcctPeriod");
  SetText(control.name, FormattedEntry(control.kind, control.text, bank_.accounting.day));
  if (control.text == looked_at_period_) return;
  looked_at_period_ = control.text;
  bool valid = false;
  const Period period = PeriodIn(control.name, &valid);
  if (!valid) return;
  const std::string cleared = ClearedEarlier(period);
  if (!cleared.empty()) Boxes().Exclaim(Caption(), cleared);
  if (IsReconciled(period)) Boxes().Exclaim(Caption(), ShortForm(period) + " has been reconciled...");
}

// One that can not be read is typed anew.
bool FrmEditDepositsPost::PeriodIsClosed() {
  if (!loaded_ || !IsReconciled(loaded_->accounting)) return false;
  RunState scratch;
  ParsePeriod(ShownValue(loaded_->accounting), bank_.accounting.day, scratch);
  return scratch.period_valid;
}

// It may have been typed before the account was reconciled elsewhere.
bool FrmEditDepositsPost::PeriodStands() {
  const bool closed = PeriodIsClosed();
  SetEnabled("txtDepositAcctPeriod", !closed);
  const std::string stored = closed ? ShownValue(loaded_->accounting) : Text("txtDepositAcctPeriod");
  if (Text("txtDepositAcctPeriod") == stored) return true;
  SetText("txtDepositAcctPeriod", stored);
  SetCaption("lblEditMessage", RestrictionOf(*loaded_, bank_));
  Boxes().Critical(Caption(),
                   RestrictionOf(*loaded_, bank_) + "\r\n\r\nNothing was saved: look at what is shown now.");
  return false;
}

// A warning for each line that cleared before the period.
std::string FrmEditDepositsPost::ClearedEarlier(const Period& accounting) {
  std::string warnings;
  for (int row = 1; row <= kDepositItems; ++row) {
    const int item = ItemOf(row);
    if (item == 0 || !loaded_) continue;
    const Period& statement = loaded_->items[static_cast<std::size_t>(item) - 1].statement;
    if (statement.IsEmpty() || MakeKey(accounting) <= MakeKey(statement)) continue;
    warnings += (warnings.empty() ? "" : "\r\n") + std::string("WARNING - Accounting period ") +
                ShortForm(accounting) + " is after the cleared period " + ShortForm(statement) + " on line " +
                std::to_string(row) + " ...";
  }
  return warnings;
}

// --- The register ---

void FrmEditDepositsPost::ListDeposits() {
  shows_items_ = false;
  deposits_->Refresh();
  SetSource("lstDepositDates", deposits_);
  RowsChanged("lstDepositDates");
}

void FrmEditDepositsPost::ListItems(std::string_view status) {
  shows_items_ = true;
  items_->ShowStatus(status);
  SetSource("lstDepositDates", items_);
  RowsChanged("lstDepositDates");
}

void FrmEditDepositsPost::RefreshRegister() {
  if (shows_items_) {
    items_->Refresh();
  } else {
    deposits_->Refresh();
  }
  RowsChanged("lstDepositDates");
}

}  // namespace tallwick
