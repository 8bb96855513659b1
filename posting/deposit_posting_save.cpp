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
  if (!MayWrite() || !MayPost()) return false;
  CloseGaps();
  const DepositRecord deposit = Record();
  if (loaded_ && deposit.item_count == 0) {
    const BoxAnswer answer =
        Boxes().Show({BoxIcon::kQuestion, Caption(), "No line is left in this deposit.  Remove it?",
                      BoxButtons::kYesNo, BoxAnswer::kNo});
    if (answer != BoxAnswer::kYes || !RemovePosted()) return false;
    AfterWriting();
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
                      date.has_value(),
                      Rows(),
                      Text("txtDepositAcctPeriod"),
                      {},
                      false,
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
    const auto item = static_cast<std::size_t>(origin_[static_cast<std::size_t>(row)]);
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
  const PostOutcome outcome = loaded_ ? RewriteDeposit(tables_, xrefs, bank_code_, *loaded_, deposit)
                                      : PostDeposit(tables_, xrefs, bank_code_, deposit);
  if (!outcome.Done()) return SettleFailure(outcome, deposit);
  last_posted_ = deposit.dated + deposit.sequence;
  Audit(loaded_ ? kAuditSave : kAuditAdd, DepositName(deposit.dated, deposit.sequence));
  if (pasted_) buffer_.clear();
  AfterWriting();
  return true;
}

// The posted deposit goes from the table; its lines stay on the screen.
bool FrmEditDepositsPost::RemovePosted() {
  if (!MayWrite()) return false;
  const DepositRecord deposit = *loaded_;
  if (IsReconciled(deposit.accounting)) {
    const std::string question = "WARNING - Accounting period " + ShortForm(deposit.accounting) +
                                 " has been reconciled.  Ok to make changes?";
    if (Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) !=
        BoxAnswer::kYes) {
      return false;
    }
  }
  const PostOutcome outcome = RemoveDeposit(tables_, session_.Company().xrefs, bank_code_, deposit);
  if (!outcome.Done()) {
    // Whoever removes lines shall have seen them, also what another workstation has made of them.
    const std::optional<DepositRecord> theirs = FindPosted(deposit.dated, deposit.sequence);
    if (outcome.code == kChangedElsewhere && theirs) {
      ShowChanged("Deposit " + DepositName(deposit.dated, deposit.sequence), "removed",
                  [&] { ShowDeposit(*theirs); });
      return false;
    }
    Refuse(FailureText(outcome, deposit), "txtDateSequence");
    return false;
  }
  Audit(kAuditDelete, DepositName(deposit.dated, deposit.sequence));
  loaded_.reset();
  origin_.fill(0);
  RefreshRegister();
  session_.NotifyChanged(SessionChange::kPosted);
  return true;
}

std::string FrmEditDepositsPost::FailureText(const PostOutcome& outcome, const DepositRecord& deposit) {
  return PostingForm::FailureText(
      outcome, DepositFailureMessage(outcome, DepositName(deposit.dated, deposit.sequence)));
}

// True when the deposit was posted after all.
bool FrmEditDepositsPost::SettleFailure(const PostOutcome& outcome, const DepositRecord& deposit) {
  if (outcome.code == kChangedElsewhere) return SettleElsewhere(deposit);
  const std::string name = DepositName(deposit.dated, deposit.sequence);
  const int next = NextSequence(tables_.deposits, deposit.dated);
  if (loaded_ || outcome.code != engine::kUnique) {
    Refuse(FailureText(outcome, deposit), "txtDateSequence");
    return false;
  }
  if (next > kLastSequence) {
    Refuse("Deposit " + name + " was posted on another workstation in the meantime, and all " +
               std::to_string(kLastSequence) + " sequence numbers of the date are used.  Type another date.",
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

bool FrmEditDepositsPost::SettleElsewhere(const DepositRecord& deposit) {
  const std::string name = "Deposit " + DepositName(deposit.dated, deposit.sequence);
  const std::optional<DepositRecord> theirs = FindPosted(loaded_->dated, loaded_->sequence);
  if (!theirs) {
    loaded_.reset();
    origin_.fill(0);
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
      HaveSameLines(*before, *theirs)
          ? ""
          : "Lines were added, removed or cleared there, so yours can not be saved over them.";
  switch (SettleChange(
      name, [&] { ShowDeposit(*theirs); }, not_over)) {
    case Settled::kMine:
      return Post();
    case Settled::kBack:
      loaded_ = before;
      origin_ = before_origin;
      ShowRows();
      return false;
    case Settled::kTheirs:
      break;
  }
  return false;
}

void FrmEditDepositsPost::AfterWriting() {
  RefreshRegister();
  session_.NotifyChanged(SessionChange::kPosted);
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
