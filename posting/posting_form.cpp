#include "posting/posting_form.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "shell/company_tables.h"
#include "shell/transactions_switch.h"

namespace tallwick {
namespace {

// How a message names a control: "Line 3 Amount".
std::string NameOf(const Control& control) {
  const std::string caption = WithoutMnemonic(control.caption);
  return control.index == 0 ? caption : "Line " + std::to_string(control.index) + " " + caption;
}

std::string ValueWord(const std::pair<std::string, int>& value, const Control& control) {
  if (control.kind == ControlKind::kCheck) return value.second == 1 ? "marked" : "not marked";
  return value.first.empty() ? "blank" : value.first;
}

}  // namespace

PostingForm::PostingForm(Session& session, const PostingScreen& screen, ScreenOpener* opener)
    : RoutedForm(std::string(screen.name), session, opener),
      bank_code_(session.BankCode()),
      tables_(session.Home()),
      screen_(screen) {
  SetFormCaption(std::string(screen.caption) + session.BankName());
}

bool PostingForm::OpenTables() {
  return ReadBank() && tables_.Open(bank_code_) && OpenRegister();
}

bool PostingForm::MayWrite() {
  if (!session_.MayUse(Right())) {
    Boxes().Critical(
        Caption(),
        "You do not have the right to do this any more.  Nothing was saved: ask the administrator "
        "for the right.");
    return false;
  }
  if (TransactionsOpen(session_)) return ReadBank();
  Boxes().Exclaim(Caption(), kTransactionsLocked);
  return false;
}

bool PostingForm::ReadBank() {
  std::optional<BankRecord> bank = session_.Company().banks.Find(bank_code_);
  if (!bank) {
    Boxes().Critical(Caption(), screen_.bank_gone);
    return false;
  }
  bank_ = std::move(*bank);
  for (Control& control : Controls()) {
    if (control.kind == ControlKind::kPeriod) control.month_only = bank_.accounting.day == 0;
  }
  if (Find("lblLastReconciled") != nullptr) {
    SetCaption("lblLastReconciled",
               "Last Reconciled: " + (bank_.reconciled.IsEmpty() ? "none" : ShortForm(bank_.reconciled)));
  }
  return true;
}

EntryText PostingForm::Entries() {
  return [this](std::string_view control) { return Text(control); };
}

Period PostingForm::PeriodIn(std::string_view control, bool* valid) {
  const Period period = ParsePeriod(Text(control), bank_.accounting.day, session_.Run());
  *valid = session_.Run().period_valid;
  return period;
}

bool PostingForm::PeriodIsReadable(std::string_view control) {
  bool valid = false;
  PeriodIn(control, &valid);
  if (valid || Trim(Text(control)).empty()) return true;
  ReportInvalidPeriod(Text(control), bank_.accounting.day, Boxes());
  MarkRefused(control);
  return false;
}

bool PostingForm::IsReconciled(const Period& period) const {
  return MakeKey(period) <= MakeKey(bank_.reconciled);
}

bool PostingForm::Passes(const EntryRefusal& finding) {
  if (finding.message.empty()) return true;
  Refuse(finding.message, finding.control);
  return false;
}

// --- Changes that are not posted yet ---

PostingForm::Values PostingForm::TakeValues() {
  Values values;
  for (const Control& control : Controls()) {
    if (IsEntry(control)) values.emplace_back(control.text, control.value);
  }
  return values;
}

void PostingForm::PutValues(const Values& values) {
  auto next = values.begin();
  for (const Control& control : Controls()) {
    if (!IsEntry(control)) continue;
    SetText(control.name, next->first, control.index);
    SetValue(control.name, next->second, control.index);
    ++next;
  }
}

void PostingForm::KeepState() {
  unchanged_ = TakeValues();
}

bool PostingForm::IsChanged() {
  return TakeValues() != unchanged_;
}

bool PostingForm::MayDropChanges(std::string_view question) {
  if (!IsChanged()) return true;
  const BoxAnswer answer = Boxes().Show(
      {BoxIcon::kQuestion, Caption(), std::string(question), BoxButtons::kYesNoCancel, BoxAnswer::kYes});
  if (answer == BoxAnswer::kNo) return true;
  if (answer != BoxAnswer::kYes) return false;
  RestoreKey();
  return Post();
}

bool PostingForm::OnKey(std::string_view key) {
  if (key == "F5") {
    RefreshRegister();
    return true;
  }
  if (key != "Esc") return false;
  Close();
  return true;
}

bool PostingForm::OnClose() {
  return MayDropChanges();
}

std::string PostingForm::FailureText(const PostOutcome& outcome, std::string_view not_added) const {
  const bool says_why = outcome.code == kChangedElsewhere || !outcome.field_problem.empty();
  return IsPosted() && !says_why ? "Failed to update transaction..." : std::string(not_added);
}

// --- Another workstation was quicker ---

bool PostingForm::TakesNext(std::string_view taken, std::string_view next) {
  const std::string question = std::string(taken) +
                               " was posted on another workstation in the meantime.\r\nPost this one as " +
                               std::string(next) + " ?";
  return Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kYes}) ==
         BoxAnswer::kYes;
}

PostingForm::Settled PostingForm::SettleChange(std::string_view item,
                                               const std::function<void()>& show_theirs) {
  const Values mine = TakeValues();
  show_theirs();
  const std::string question = std::string(item) +
                               " was changed on another workstation since it was loaded.\r\n" +
                               Differences(mine, TakeValues()) +
                               "\r\n\r\nYes saves your entry over theirs, No shows theirs, Cancel goes back "
                               "to your entry.";
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNoCancel, BoxAnswer::kCancel});
  if (answer == BoxAnswer::kNo) return Settled::kTheirs;
  PutValues(mine);
  return answer == BoxAnswer::kYes ? Settled::kMine : Settled::kBack;
}

void PostingForm::ShowChanged(std::string_view item, std::string_view not_done,
                              const std::function<void()>& show_theirs) {
  const Values mine = TakeValues();
  show_theirs();
  Boxes().Critical(Caption(), std::string(item) +
                                  " was changed on another workstation since it was loaded.  Nothing was " +
                                  std::string(not_done) + ": look at what is shown now.\r\n" +
                                  Differences(mine, TakeValues()));
}

std::string PostingForm::Differences(const Values& mine, const Values& theirs) {
  std::string lines;
  std::size_t place = 0;
  for (const Control& control : Controls()) {
    if (!IsEntry(control)) continue;
    if (mine[place] != theirs[place]) {
      lines += "\r\n" + NameOf(control) + ": yours " + ValueWord(mine[place], control) + ", theirs " +
               ValueWord(theirs[place], control);
    }
    ++place;
  }
  return lines.empty() ? "\r\nWhat you see is the same on both." : lines;
}

// --- Commands that screens share ---

BankSettings PostingForm::Options() {
  return BankSettings(session_.Files(), session_.DataPath(), kUserOptions, session_.TheSuite().Login());
}

void PostingForm::AddOption(std::string_view command, std::string_view caption, bool at_first) {
  const std::optional<std::string> kept = Options().Get(command);
  Add(ControlKind::kMenu, std::string(command), std::string(caption)).value =
      (kept ? *kept == "1" : at_first) ? 1 : 0;
  options_.emplace_back(command);
}

// A choice that cannot be kept holds for this screen all the same.
bool PostingForm::ToggleOption(std::string_view command) {
  if (std::find(options_.begin(), options_.end(), command) == options_.end()) return false;
  SetValue(command, IsOn(command) ? 0 : 1);
  Options().Set(command, IsOn(command) ? "1" : "0");
  return true;
}

void PostingForm::AuditAs(int audit_tx, int action, std::string_view reference) {
  if (audit_tx == 0) return;
  WriteAuditTrail(AuditTargetOf(session_, bank_code_, bank_.audit_trail), *this, action, audit_tx, reference);
}

}  // namespace tallwick
