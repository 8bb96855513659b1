// The number on the check screen: which check it names, and what is said about it.
#include "audit/audit_trail.h"
#include "core/text.h"
#include "posting/check_posting.h"
#include "posting/check_voucher.h"
#include "posting/entry_problems.h"
#include "shell/company_tables.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr std::string_view kNumber = "txtCheckNumber";
constexpr std::string_view kList = "lstCheckNumbers";  // marks the check that is shown, where it led to it

}  // namespace

// The number that the typed one stands for: a posted one, or as a new one is stored.
std::string FrmEditChecksPost::TypedNumber() {
  std::string typed = Text(kNumber);
  if (typed.empty() || key_.Stands(typed)) return typed;
  const bool posted = !renumbering_ && SeekCounted(tables_.checks, typed);
  return posted ? tables_.checks.Read().number : CountedNumber(typed);
}

void FrmEditChecksPost::LookUpNumber() {
  const std::string number = TypedNumber();
  SetText(kNumber, number);
  if (renumbering_) return WarnOfNumber();
  if (!key_.Stands(number)) {
    const bool looks_up = ShowsOther(number);
    if ((looks_up || printed_) && !MayLeaveCheck()) {
      RestoreKey();
      // A refused post has put the cursor into the field that it names.
      if (Focus() == &At(kNumber)) SetFocus(kNumber);
      return;
    }
    if (looks_up) {
      SetSelected(kList, 0);
      return OpenNumber(number);
    }
    key_.Set(number);
  }
  WarnOfNumber();
}

// A new check keeps its entries under another free number; anything else shows other entries.
bool FrmEditChecksPost::ShowsOther(const std::string& number) {
  if (loaded_ || !Is(CheckMode::Kind::kPosting)) return true;
  return !number.empty() && tables_.checks.SeekNumber(number);
}

// Where the work on the check that is shown begins.
void FrmEditChecksPost::GoToFirst() {
  if (Focus() == nullptr && SetsStatus()) SetFocus("txtCheckStmtPeriod");
  GoToFirstEntry(kNumber);
}

void FrmEditChecksPost::OpenNumber(const std::string& number) {
  printed_ = false;
  if (!number.empty() && tables_.checks.SeekNumber(number)) {
    ShowCheck(tables_.checks.Read());
    if (NumberValue(number) == 0 && Is(CheckMode::Kind::kPosting)) OfferRemovalOfZero();
    return;
  }
  SetText(kNumber, number);
  key_.Set(number);
  ClearEntries();
  ReadNumbering();
  WarnOfNumber();
}

void FrmEditChecksPost::ShowCheck(const CheckRecord& check) {
  loaded_ = check;
  ForgetFilled();
  for (const CheckEntryField& entry : CheckEntryFields()) {
    SetText(entry.control, ShownEntry(entry, check));
  }
  SetValue("chkHandwritten", check.status == "H" ? 1 : 0);
  SetText("txtCheckStmtPeriod", ShownValue(check.statement));
  SetText("txtCheckReason", check.reason);
  SetText("txtCheckStatus", StatusWord(check));
  key_.Set(check.number);
  SetCaption("lblHighestCheckNumber", {});
  SetCaption("lblVoucherInformation", {});
  looked_up_voucher_ = check.voucher_number;
  const std::optional<VoucherRecord> voucher = FindVoucher(check.voucher_number);
  if (voucher) SetCaption("lblVoucherInformation", VoucherSummary(*voucher));
  // A voided check may find its voucher used by another one: nobody has been warned of that yet.
  seen_voucher_ = check.status == "V" ? VoucherRecord{} : voucher;
  ShowState();
  Audit(kAuditSnapshot, {});
  // Proposed behind the snapshot, so that the trail shows it as a change.
  if (SetsStatus() && IsOutstanding(check.status))
    SetText("txtCheckStmtPeriod", ShownValue(ProposedPeriod()));
  KeepState();
}

void FrmEditChecksPost::ClearEntries() {
  loaded_.reset();
  SetSelected(kList, 0);
  for (const CheckEntryField& entry : CheckEntryFields()) {
    if (entry.control != kNumber) SetText(entry.control, {});
  }
  const bool enters = EntersNew();
  const std::string period = ShownValue(ProposedPeriod());
  SetText("txtCheckDated", enters ? DisplayDate(session_.TheClock().Now().date) : "");
  SetText("txtCheckAcctPeriod", enters ? period : "");
  // Spoiled stock belongs to no file.
  if (enters && Is(CheckMode::Kind::kVoiding)) SetText("txtCheckFileNumber", "VOID");
  SetText("txtCheckStmtPeriod", SetsStatus() ? period : "");
  SetText("txtCheckReason", {});
  SetText("txtCheckStatus", {});
  SetRows("txtCheckPayee", {});
  SetValue("chkHandwritten", 0);
  SetCaption("lblHighestCheckNumber", {});
  SetCaption("lblVoucherInformation", {});
  looked_up_voucher_.clear();
  seen_voucher_.reset();
  filled_amount_.clear();
  filled_payee_.clear();
  ForgetFilled();
  ShowState();
  KeepState();
}

void FrmEditChecksPost::BeginNewCheck() {
  ReadNumbering();
  key_.Set(numbering_.Proposal());
  warned_number_.clear();
  SetText(kNumber, key_.Get());
  ClearEntries();
}

void FrmEditChecksPost::BeginNext() {
  printed_ = false;
  if (Is(CheckMode::Kind::kPosting)) {
    BeginNewCheck();
    SetFocus("txtCheckPayee");
    return;
  }
  key_.Set({});
  warned_number_.clear();
  SetText(kNumber, {});
  ClearEntries();
  SetCaption("lblCheckStatus", {});
  SetFocus(kNumber);
}

void FrmEditChecksPost::OfferRemovalOfZero() {
  const CheckRecord check = *loaded_;
  if (const std::string why = RemovalRefusal(check, bank_); !why.empty()) {
    return Boxes().Inform(Caption(), why);
  }
  const std::string question =
      "Check Number '0' (zero) posted in error...\r\n\r\nFile Number: " + check.file_number +
      "\r\nAmount: " + AmountText(check.amount) + "\r\n\r\nData will be removed.";
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kOkCancel, BoxAnswer::kCancel});
  if (answer != BoxAnswer::kOk || !MayWrite()) return;
  if (Passes({kNumber, RemovalRefusal(check, bank_)}) && Remove(check)) AfterWriting();
}

bool FrmEditChecksPost::Remove(const CheckRecord& check) {
  const PostOutcome outcome =
      RemoveCheck(tables_, session_.Company().xrefs, bank_code_, check, SameReconciliation());
  if (outcome.code == kChangedElsewhere && tables_.checks.SeekNumber(check.number)) {
    const CheckRecord theirs = tables_.checks.Read();
    ShowChanged("Check " + check.number, "removed", [&] { ShowCheck(theirs); });
    return false;
  }
  if (!outcome.Done()) {
    ReportFailure(outcome, check.number);
    return false;
  }
  last_posted_ = check.number;
  Audit(kAuditDelete, check.number);
  TellPositivePay(check, true);
  return true;
}

void FrmEditChecksPost::ReadNumbering() {
  numbering_ = ReadCheckNumbering(tables_.checks, session_.Files(), session_.DataPath(), bank_code_);
  SetCaption("lblLastCheckNumber", numbering_.Label());
}

void FrmEditChecksPost::WarnOfNumber() {
  const std::string& number = Text(kNumber);
  const bool enters = Is(CheckMode::Kind::kPosting) || Is(CheckMode::Kind::kVoiding);
  const bool is_new = loaded_ ? renumbering_ && number != loaded_->number : enters;
  if (!is_new || number == warned_number_) return;
  warned_number_ = number;
  const bool gap_wanted = numbering_.last_known && IsOn("mnuOptionsWarnHigherNumber");
  SetCaption("lblHighestCheckNumber", gap_wanted ? GapWarning("Check", number, numbering_.Last()) : "");
  const std::string warning = InventoryWarning(number, bank_);
  if (!warning.empty()) Boxes().Exclaim(Caption(), warning);
}

// --- How the check stands ---

void FrmEditChecksPost::ShowState() {
  renumbering_ = false;
  SetCaption("lblCheckStatus", loaded_ ? CheckStatusText(loaded_->status) : "Not Posted");
  SetCaption("cmdOk", !loaded_ && EntersNew() ? "P&ost Check" : "&Ok");
  ShowWhatMayBeEntered();
}

// Whether a number without a record is a new check here: in "Voiding" it is spoiled stock.
bool FrmEditChecksPost::EntersNew() const {
  return Is(CheckMode::Kind::kPosting) || (Is(CheckMode::Kind::kVoiding) && !key_.Get().empty());
}

}  // namespace tallwick
