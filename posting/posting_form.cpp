#include "posting/posting_form.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "core/date.h"
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
    : LookUpForm(std::string(screen.name), session, opener),
      bank_code_(session.BankCode()),
      tables_(session.Home()),
      screen_(screen) {
  SetFormCaption(std::string(screen.caption) + session.BankName());
}

bool PostingForm::OpenTables() {
  return ReadBank() && tables_.Open(bank_code_) && OpenRegister();
}

bool PostingForm::MayWrite() {
  if (!session_.MayUse(Right()) || !session_.MayUseBank(bank_code_)) {
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

PostGuard PostingForm::SameReconciliation() {
  return [this] {
    const std::optional<BankRecord> now = session_.Company().banks.Find(bank_code_);
    return now && now->reconciled == bank_.reconciled ? engine::kSuccess : kReconciledElsewhere;
  };
}

bool PostingForm::DateIsGood(std::string_view control, std::string_view label) {
  const std::string& typed = Text(control);
  if (IsPosted() && StandsAsLoaded(At(control))) return true;
  const std::optional<Date> date = ParseDisplayDate(typed);
  if (!date) return true;  // refused with the other texts that can not be read
  if (date->IsEmpty())
    return Passes({control, std::string(label) + " is missing.  Type it like 03/15/2024."});
  return Passes({control, YearProblem(label, typed, *date)});
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

bool PostingForm::StandsAsLoaded(const Control& wanted) {
  std::size_t place = 0;
  for (const Control& control : Controls()) {
    if (&control == &wanted) return unchanged_[place].first == control.text;
    if (IsEntry(control)) ++place;
  }
  return false;
}

bool PostingForm::ClosedEntriesStand(std::string_view why) {
  const Picture mine = TakePicture();
  Values values = mine.values;
  std::size_t place = 0;
  for (const Control& control : Controls()) {
    if (!IsEntry(control)) continue;
    if (!control.enabled) values[place] = unchanged_[place];
    ++place;
  }
  if (values == mine.values) return true;
  PutValues(values);
  Boxes().Critical(Caption(), std::string(why) + "\r\n\r\nNothing was saved: look at what is shown now.\r\n" +
                                  Differences(mine, TakePicture(), "stored"));
  return false;
}

bool PostingForm::IsChanged() {
  return TakeValues() != unchanged_;
}

void PostingForm::GoToFirstEntry(std::string_view key_control) {
  if (Focus() != nullptr) return;
  const auto first = std::find_if(Controls().begin(), Controls().end(), [this](const Control& control) {
    return IsEntry(control) && control.enabled && control.visible;
  });
  first != Controls().end() ? SetFocus(first->name, first->index) : SetFocus(key_control);
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

void PostingForm::OnChange(Control& control) {
  if (IsKey(control)) key_.Typed();
  LookUpForm::OnChange(control);
}

void PostingForm::OnRetype(Control& control) {
  if (IsKey(control)) key_.Typed();
}

bool PostingForm::OnKey(std::string_view key) {
  if (LookUpForm::OnKey(key)) return true;
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

void PostingForm::TellPosted() {
  if (const int code = session_.Data().UnitWaits(); code != engine::kSuccess) {
    const std::string advice(clsKVRData::StandstillAdvice(code));
    Boxes().Exclaim(
        Caption(),
        "This is done and kept, so do not post it again.  Only the tables could not be written yet "
        "(error code " +
            std::to_string(code) + ")." + (advice.empty() ? "" : "\r\r" + advice + "."));
  }
  RefreshRegister();
  session_.NotifyChanged(SessionChange::kPosted);
}

std::string PostingForm::FailureText(const PostOutcome& outcome, std::string_view not_added) const {
  const bool says_why = outcome.code == kChangedElsewhere || outcome.code == kReconciledElsewhere ||
                        !outcome.field_problem.empty();
  return IsPosted() && !says_why ? "Failed to update transaction..." + AdviceFor(outcome)
                                 : std::string(not_added);
}

void PostingForm::TellFailure(const PostOutcome& outcome, const std::string& message, std::string_view field,
                              std::string_view number) {
  const std::string_view to_blame = outcome.NumberIsTaken() ? number : field;
  if (to_blame.empty()) return Boxes().Critical(Caption(), message);
  Refuse(message, to_blame);
}

// --- Another workstation was quicker ---

bool PostingForm::TakesNext(std::string_view taken, std::string_view next) {
  if (any_number_) return true;
  const std::string question = std::string(taken) +
                               " was posted on another workstation in the meantime.\r\nPost this one as " +
                               std::string(next) + " ?";
  return Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kYes}) ==
         BoxAnswer::kYes;
}

PostingForm::Settled PostingForm::SettleChange(std::string_view item,
                                               const std::function<void()>& show_theirs,
                                               std::string_view not_over) {
  const Picture mine = TakePicture();
  show_theirs();
  const auto go_back = [&] {
    PutValues(mine.values);
    unchanged_ = mine.as_loaded;
    return Settled::kBack;
  };
  const std::string changed = std::string(item) +
                              " was changed on another workstation since it was loaded.\r\n" +
                              Differences(mine, TakePicture()) + "\r\n\r\n";
  const auto ask = [&](const std::string& words, BoxButtons buttons, BoxAnswer safe) {
    return Boxes().Show({BoxIcon::kQuestion, Caption(), changed + words, buttons, safe});
  };
  if (!not_over.empty()) {
    const std::string words = std::string(not_over) + "  Yes shows theirs, No goes back to your entry.";
    return ask(words, BoxButtons::kYesNo, BoxAnswer::kNo) == BoxAnswer::kYes ? Settled::kTheirs : go_back();
  }
  const BoxAnswer answer =
      ask("Yes saves your changes over theirs, No shows theirs, Cancel goes back to your entry.",
          BoxButtons::kYesNoCancel, BoxAnswer::kCancel);
  if (answer == BoxAnswer::kNo) return Settled::kTheirs;
  if (answer != BoxAnswer::kYes) return go_back();
  PutValues(Merged(mine, TakeValues()));
  return Settled::kMine;
}

PostingForm::Values PostingForm::Merged(const Picture& mine, const Values& theirs) {
  Values merged = theirs;
  for (std::size_t place = 0; place < merged.size(); ++place) {
    if (mine.values[place] != mine.as_loaded[place]) merged[place] = mine.values[place];
  }
  return merged;
}

void PostingForm::ShowChanged(std::string_view item, std::string_view not_done,
                              const std::function<void()>& show_theirs) {
  const Picture mine = TakePicture();
  show_theirs();
  Boxes().Critical(Caption(), std::string(item) +
                                  " was changed on another workstation since it was loaded.  Nothing was " +
                                  std::string(not_done) + ": look at what is shown now.\r\n" +
                                  Differences(mine, TakePicture()));
}

std::string PostingForm::Differences(const Picture& mine, const Picture& theirs, std::string_view other) {
  std::string lines;
  const auto add = [&](const std::string& name, bool is_mine, const std::string& one,
                       const std::string& two) {
    lines += "\r\n" + name + (is_mine ? ": yours " : ": was ") + one + ", " + std::string(other) + " " + two;
  };
  std::size_t place = 0;
  for (const Control& control : Controls()) {
    if (!IsEntry(control)) continue;
    const auto& one = mine.values[place];
    const auto& two = theirs.values[place];
    const bool is_mine = one != mine.as_loaded[place];
    if (one != two) add(NameOf(control), is_mine, ValueWord(one, control), ValueWord(two, control));
    ++place;
  }
  if (mine.status != theirs.status)
    add("Status", false, std::string(TrimRight(mine.status)), std::string(TrimRight(theirs.status)));
  return lines.empty() ? "\r\nWhat you see is the same on both." : lines;
}

// --- The look-up of files ---

void PostingForm::AddFileLookUp(std::string_view entry) {
  AddLookUp(
      {entry, "txtFindFile", "lstFiles", "cmdUseFile", "cmdCloseFiles", [this] { return FilesAreKnown(); },
       files_, [this](std::string_view text) { files_->Find(text); },
       [this, entry](std::size_t row, int index) {
         SetText(entry, files_->FileAt(row), index);
         return true;
       }},
      {"Find File", "Files", "Use File", "Close Files"});
}

bool PostingForm::FilesAreKnown() {
  if (files_->Begin()) return true;
  Boxes().Inform(Caption(),
                 "No escrow file is known here yet: the suite offers no list of files, and nothing has been "
                 "posted.  Type the file number.");
  return false;
}

// --- Commands that screens share ---

BankSettings PostingForm::Options() {
  return BankSettings(session_.Files(), session_.DataPath(), kUserOptions, session_.Login());
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
  CloseLookUp();  // what is searched for is no part of the entry
  WriteAuditTrail(AuditTargetOf(session_, bank_code_, bank_.audit_trail), *this, action, audit_tx, reference);
}

}  // namespace tallwick
