// The posting half of the deposit screen: tests, writing, and what follows a commit.
#include "audit/audit_trail.h"
#include "posting/deposit_facts.h"
#include "posting/deposit_posting.h"
#include "posting/deposit_slip.h"
#include "posting/file_number.h"
#include "posting/post_deposit.h"
#include "shell/company_tables.h"

namespace tallwick {

bool FrmEditDepositsPost::IsEntry(const Control& control) const {
  if (control.index != 0) return control.kind != ControlKind::kLabel;
  return control.name == "txtDepositAcctPeriod";
}

bool FrmEditDepositsPost::Post() {
  if (!MayWrite() || !PeriodStands() || !MayPost()) return false;
  CloseGaps();
  const DepositRecord deposit = Record();
  if (loaded_ && deposit.item_count == 0) {
    const BoxAnswer answer =
        Boxes().Show({BoxIcon::kQuestion, Caption(), "No line is left in this deposit.  Remove it?",
                      BoxButtons::kYesNo, BoxAnswer::kNo});
    if (answer != BoxAnswer::kYes || !RemovePosted()) return false;
    BeginNext();
    return true;
  }
  if (loaded_ && deposit == *loaded_) {
    Boxes().Inform(Caption(),
                   "Deposit " + DepositName(deposit.dated, deposit.sequence) + " was not added or updated.");
    return false;
  }
  return Write(deposit);
}

bool FrmEditDepositsPost::MayPost() {
  const std::optional<Date> date = TypedDate();
  DepositCase deposit{Text("txtDepositDated"),
                      Text("txtDateSequence"),
                      date,
                      Rows(),
                      {},
                      false,
                      date && Trim(Text("txtDateSequence")).empty() &&
                          SequencesOf(tables_.deposits, StoredDate(*date)).Next() > kLastSequence,
                      loaded_.has_value(),
                      loaded_ ? loaded_->accounting : Period{},
                      bank_,
                      {}};
  deposit.period = PeriodIn("txtDepositAcctPeriod", &deposit.period_valid);
  if (IsOn("mnuOptionsFileCheck")) {
    deposit.on_file = [this](const std::string& file) { return IsOnFile(session_, file); };
  }
  for (const DepositTest test : DepositTests()) {
    if (!Accepts(test(deposit))) return false;
  }
  return true;
}

bool FrmEditDepositsPost::Accepts(const DepositFinding& finding) {
  if (finding.message.empty()) return true;
  switch (finding.kind) {
    case DepositFinding::Kind::kNote:
      Boxes().Inform(Caption(), finding.message);
      return true;
    case DepositFinding::Kind::kQuestion:
      if (Boxes().Show({BoxIcon::kQuestion, Caption(), finding.message, BoxButtons::kYesNo,
                        BoxAnswer::kNo}) == BoxAnswer::kYes) {
        return true;
      }
      SetFocus(finding.control, finding.index);
      return false;
    case DepositFinding::Kind::kRefusal:
      break;
  }
  Refuse(finding.message, finding.control, finding.index);
  return false;
}

// The entries have passed their tests, and the lines stand without gaps.
DepositRecord FrmEditDepositsPost::Record() {
  DepositRecord deposit = loaded_.value_or(DepositRecord{});
  const std::array<DepositItem, kDepositItems> posted = deposit.items;
  bool valid = false;
  if (!loaded_) {
    deposit.dated = StoredDate(TypedDate().value_or(Date{}));
    deposit.sequence = Text("txtDateSequence");
  }
  deposit.accounting = PeriodIn("txtDepositAcctPeriod", &valid);
  deposit.item_count = 0;
  for (int row = 1; row <= kDepositItems; ++row) {
    const DepositRow values = RowAt(row);
    const auto item = static_cast<std::size_t>(ItemOf(row));
    DepositItem& line = deposit.items[static_cast<std::size_t>(row) - 1];
    line = item != 0 ? posted[item - 1] : DepositItem{};
    const bool wire_in = values.IsUsed() && values.wire_in;
    if (wire_in != IsWireIn(deposit, row)) SetWireIn(&deposit, row, wire_in);
    if (!values.IsUsed()) continue;
    if (item == 0) line.status = "O";
    line.number = std::to_string(row);
    line.file_number = values.file_number;
    line.source = values.source;
    if (line.status != "C") line.amount = Currency::ParseTyped(values.amount).value_or(Currency());
    ++deposit.item_count;
  }
  return deposit;
}

bool FrmEditDepositsPost::Write(const DepositRecord& deposit) {
  XrefTable& xrefs = session_.Company().xrefs;
  const PostGuard guard = SameReconciliation();
  const PostOutcome outcome = loaded_ ? RewriteDeposit(tables_, xrefs, bank_code_, *loaded_, deposit, guard)
                                      : PostDeposit(tables_, xrefs, bank_code_, deposit, guard);
  if (!outcome.Done()) return SettleFailure(outcome, deposit);
  last_posted_ = deposit.dated + deposit.sequence;
  Audit(loaded_ ? kAuditSave : kAuditAdd, DepositName(deposit.dated, deposit.sequence));
  TakePostedFromBuffer();
  AfterWriting();
  return true;
}

// What a post asks, for a cut.
bool FrmEditDepositsPost::MayChangeReconciled() {
  if (!IsReconciled(loaded_->accounting)) return true;
  return Boxes().Show({BoxIcon::kQuestion, Caption(), ReconciledQuestion(loaded_->accounting),
                       BoxButtons::kYesNo, BoxAnswer::kNo}) == BoxAnswer::kYes;
}

// The posted deposit goes from the table; its lines stay on the screen.
bool FrmEditDepositsPost::RemovePosted() {
  const DepositRecord deposit = *loaded_;
  const PostOutcome outcome =
      RemoveDeposit(tables_, session_.Company().xrefs, bank_code_, deposit, SameReconciliation());
  if (!outcome.Done()) {
    // Whoever removes lines shall have seen them, also what another workstation has made of them.
    const std::optional<DepositRecord> theirs = FindPosted(deposit.dated, deposit.sequence);
    if (outcome.code == kChangedElsewhere && theirs) {
      ShowChanged("Deposit " + DepositName(deposit.dated, deposit.sequence), "removed",
                  [&] { ShowDeposit(*theirs); });
      return false;
    }
    TellFailure(outcome, FailureText(outcome, deposit), {}, "txtDateSequence");
    return false;
  }
  Audit(kAuditDelete, DepositName(deposit.dated, deposit.sequence));
  loaded_.reset();
  origin_.fill({});
  TellPosted();
  return true;
}

std::string FrmEditDepositsPost::FailureText(const PostOutcome& outcome, const DepositRecord& deposit) {
  return PostingForm::FailureText(
      outcome, DepositFailureMessage(outcome, DepositName(deposit.dated, deposit.sequence)));
}

// True when the deposit was posted after all.
bool FrmEditDepositsPost::SettleFailure(const PostOutcome& outcome, const DepositRecord& deposit) {
  if (outcome.code == kChangedElsewhere) return SettleElsewhere(deposit);
  if (outcome.code == kReconciledElsewhere) return Post();
  const std::string name = DepositName(deposit.dated, deposit.sequence);
  const int next = SequencesOf(tables_.deposits, deposit.dated).Next();
  if (loaded_ || !outcome.NumberIsTaken()) {
    TellFailure(outcome, FailureText(outcome, deposit), {}, "txtDateSequence");
    return false;
  }
  key_.Lose();
  if (next > kLastSequence) {
    Refuse("Deposit " + name + " was posted on another workstation in the meantime.  " +
               AllSequencesUsed(deposit.dated),
           "txtDepositDated");
    return false;
  }
  if (!TakesNext("Deposit " + name, std::to_string(next))) {
    MarkRefused("txtDateSequence");
    return false;
  }
  SetText("txtDateSequence", std::to_string(next));
  KeepKey();
  return Write(Record());
}

// A line that has moved, or a new one in the place of a posted one, stands beside another line of the stored
// deposit.
bool FrmEditDepositsPost::HaveMoved() {
  for (int row = 1; row <= kDepositItems; ++row) {
    const bool posted = IsUsed(loaded_->items[static_cast<std::size_t>(row) - 1]);
    if (ItemOf(row) == 0 ? posted && RowAt(row).IsUsed() : ItemOf(row) != row) return true;
  }
  return false;
}

bool FrmEditDepositsPost::SettleElsewhere(const DepositRecord& deposit) {
  const std::string name = "Deposit " + DepositName(deposit.dated, deposit.sequence);
  const std::optional<DepositRecord> theirs = FindPosted(loaded_->dated, loaded_->sequence);
  if (!theirs) {
    loaded_.reset();
    origin_.fill({});
    ShowState();
    Refuse(
        name +
            " was removed on another workstation since it was loaded.  Nothing was saved: post it to enter "
            "it anew.",
        "txtDateSequence");
    return false;
  }
  const std::optional<DepositRecord> before = loaded_;
  const auto before_origin = origin_;
  const std::string_view not_over =
      !HaveSameLines(*before, *theirs)
          ? "Lines were added, removed or cleared there, so yours can not be saved over them."
      : HaveMoved() ? "Your lines have moved up or been replaced, so they can not be saved over theirs."
                    : "";
  switch (SettleChange(
      name, [&] { ShowDeposit(*theirs); }, not_over)) {
    case Settled::kMine:
      return Post();
    case Settled::kBack:
      loaded_ = before;
      origin_ = before_origin;
      ShowState();
      return false;
    case Settled::kTheirs:
      break;
  }
  return false;
}

void FrmEditDepositsPost::AfterWriting() {
  TellPosted();
  BeginNext();
}

void FrmEditDepositsPost::BeginNext() {
  BeginNew(session_.TheClock().Now().date);
  SetFocus("txtFileNumbers", 1);
}

void FrmEditDepositsPost::PrintSlip() {
  if (IsChanged()) {
    return Boxes().Critical(Caption(),
                            "The deposit has changes that are not posted.  Post it, then print its "
                            "slip.");
  }
  session_.Documents()->Preview(MakeDepositSlip(session_.TheSuite().CompanyName(), bank_, *loaded_));
}

}  // namespace tallwick
