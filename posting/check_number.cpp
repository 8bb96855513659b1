// The number on the check screen: which check it names, what is said about it, and what may be entered then;
// and the voucher that the check names.
#include <algorithm>

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

// Entries that a reconciled period closes.
constexpr std::string_view kRestricted[] = {"txtCheckDated",         "txtCheckAmount",
                                            "txtCheckFileNumber",    "txtCheckAcctPeriod",
                                            "txtCheckVoucherNumber", "chkHandwritten"};

}  // namespace

void FrmEditChecksPost::LookUpNumber() {
  if (renumbering_) return;
  const std::string number = Text(kNumber);
  if (number != looked_up_number_) {
    const bool looks_up = ShowsOther(number);
    if ((looks_up || printed_) && !MayLeaveCheck()) {
      SetText(kNumber, looked_up_number_);
      // A refused post has put the cursor into the field that it names.
      if (Focus() == &At(kNumber)) SetFocus(kNumber);
      return;
    }
    if (looks_up) {
      SetSelected(kList, 0);
      return OpenNumber(number);
    }
    looked_up_number_ = number;
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
    if (CheckNumberValue(number) == 0 && Is(CheckMode::Kind::kPosting)) OfferRemovalOfZero();
    return;
  }
  SetText(kNumber, number);
  looked_up_number_ = number;
  ClearEntries();
  ReadNumbering();
  WarnOfNumber();
}

void FrmEditChecksPost::ShowCheck(const CheckRecord& check) {
  loaded_ = check;
  for (const CheckEntryField& entry : CheckEntryFields()) {
    SetText(entry.control, ShownEntry(entry, check));
  }
  SetValue("chkHandwritten", check.status == "H" ? 1 : 0);
  SetText("txtCheckStmtPeriod", ShownValue(check.statement));
  SetText("txtCheckReason", check.reason);
  SetText("txtCheckStatus", StatusWord(check));
  looked_up_number_ = check.number;
  SetCaption("lblHighestCheckNumber", {});
  SetCaption("lblVoucherInformation", {});
  looked_up_voucher_ = check.voucher_number;
  if (!check.voucher_number.empty() && tables_.vouchers.SeekNumber(check.voucher_number)) {
    SetCaption("lblVoucherInformation", VoucherSummary(tables_.vouchers.Read()));
  }
  ShowState();
  Audit(kAuditSnapshot, {});
  // Proposed behind the snapshot, so that the trail shows it as a change.
  if (SetsStatus() && IsOutstanding(check)) SetText("txtCheckStmtPeriod", ShownValue(bank_.accounting));
  KeepState();
}

void FrmEditChecksPost::ClearEntries() {
  loaded_.reset();
  SetSelected(kList, 0);
  for (const CheckEntryField& entry : CheckEntryFields()) {
    if (entry.control != kNumber) SetText(entry.control, {});
  }
  const bool enters = EntersNew();
  const std::string period = ShownValue(bank_.accounting);
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
  ShowState();
  KeepState();
}

void FrmEditChecksPost::BeginNewCheck() {
  ReadNumbering();
  looked_up_number_ = std::to_string(numbering_.Next());
  warned_number_.clear();
  SetText(kNumber, looked_up_number_);
  ClearEntries();
}

void FrmEditChecksPost::BeginNext() {
  printed_ = false;
  if (Is(CheckMode::Kind::kPosting)) {
    BeginNewCheck();
    SetFocus("txtCheckPayee");
    return;
  }
  looked_up_number_.clear();
  warned_number_.clear();
  SetText(kNumber, {});
  ClearEntries();
  SetCaption("lblCheckStatus", {});
  SetFocus(kNumber);
}

void FrmEditChecksPost::OfferRemovalOfZero() {
  const CheckRecord check = *loaded_;
  const std::string question =
      "Check Number '0' (zero) posted in error...\r\n\r\nFile Number: " + check.file_number +
      "\r\nAmount: " + AmountText(check.amount) + "\r\n\r\nData will be removed.";
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kOkCancel, BoxAnswer::kCancel});
  if (answer == BoxAnswer::kOk && MayWrite() && Remove(check)) AfterWriting();
}

bool FrmEditChecksPost::Remove(const CheckRecord& check) {
  const PostOutcome outcome = RemoveCheck(tables_, session_.Company().xrefs, bank_code_, check);
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
  if (loaded_ || !enters || number == warned_number_) return;
  warned_number_ = number;
  const bool gap_wanted = IsOn("mnuOptionsWarnHigherNumber");
  SetCaption("lblHighestCheckNumber", gap_wanted ? GapWarning(number, numbering_.Last()) : "");
  const std::string warning = InventoryWarning(number, bank_);
  if (!warning.empty()) Boxes().Exclaim(Caption(), warning);
}

// --- What may be entered ---

void FrmEditChecksPost::ShowState() {
  renumbering_ = false;
  SetCaption("lblCheckStatus", loaded_ ? CheckStatusText(loaded_->status) : "Not Posted");
  SetCaption("cmdOk", !loaded_ && EntersNew() ? "P&ost Check" : "&Ok");
  ShowWhatMayBeEntered();
}

// Whether a number without a record is a new check here: in "Voiding" it is spoiled stock.
bool FrmEditChecksPost::EntersNew() const {
  return Is(CheckMode::Kind::kPosting) || (Is(CheckMode::Kind::kVoiding) && !looked_up_number_.empty());
}

void FrmEditChecksPost::ShowWhatMayBeEntered() {
  const std::string restriction = loaded_ ? RestrictionText(*loaded_, bank_) : "";
  SetCaption("lblEditMessage", restriction);
  for (const Control& control : Controls()) {
    const bool beside = control.name == "txtRemittanceAdvice" || control.name == "txtCheckStmtPeriod" ||
                        control.name == "txtCheckReason";
    if (IsEntry(control) || beside) {
      SetEnabled(control.name, MayEnter(control, !restriction.empty()));
    }
  }
  SetEnabled("cmdOk", !Is(CheckMode::Kind::kViewing));
  SetEnabled("cmdRolodex", At("txtCheckPayee").enabled);
  SetEnabled("cmdCalendar", At("txtCheckDated").enabled);
  const bool prints = ports_.printer != nullptr && ports_.printer->WhyNot().empty();
  SetEnabled("cmdPrint", prints && Is(CheckMode::Kind::kPosting));
  SetEnabled("mnuFilePrint", At("cmdPrint").enabled);
  SetEnabled("mnuEditRenumberCheck", Is(CheckMode::Kind::kPosting));
  SetEnabled("mnuEditRemoveCheck", Is(CheckMode::Kind::kPosting));
}

bool FrmEditChecksPost::MayEnter(const Control& control, bool restricted) const {
  if (control.name == "txtCheckStmtPeriod" || control.name == "txtCheckReason") return SetsStatus();
  const bool new_void = Is(CheckMode::Kind::kVoiding) && !loaded_ && EntersNew();
  if (!Is(CheckMode::Kind::kPosting)) return new_void && control.name != "chkHandwritten";
  if (control.name == "chkHandwritten" && loaded_ && !IsOutstanding(*loaded_)) return false;
  const bool closed =
      std::find(std::begin(kRestricted), std::end(kRestricted), control.name) != std::end(kRestricted);
  return !(restricted && closed);
}

// --- The voucher ---

void FrmEditChecksPost::LookUpVoucher() {
  const std::string number = Text("txtCheckVoucherNumber");
  if (number == looked_up_voucher_) return;
  looked_up_voucher_ = number;
  SetCaption("lblVoucherInformation", {});
  if (number.empty()) return;
  if (!tables_.vouchers.SeekNumber(number)) {
    return Boxes().Inform(Caption(), "Voucher Number " + number + " is NOT posted.");
  }
  const VoucherRecord voucher = tables_.vouchers.Read();
  SetCaption("lblVoucherInformation", VoucherSummary(voucher));
  FillFrom(voucher);
  const Currency amount = Currency::ParseTyped(Text("txtCheckAmount")).value_or(Currency());
  const std::string warnings = VoucherWarnings(voucher, amount, Text("txtCheckFileNumber"), Text(kNumber));
  if (!warnings.empty()) Boxes().Inform(Caption(), warnings);
}

// The file's next voucher that no check has used, from the one that is entered on, and around.
void FrmEditChecksPost::OfferVoucher() {
  const std::string file = Text("txtCheckFileNumber");
  const std::string entered = Text("txtCheckVoucherNumber");
  std::string first;
  std::string next;
  bool passed = false;
  for (bool on = !file.empty() && tables_.vouchers.FirstOfFile(file); on;
       on = tables_.vouchers.NextOfFile(file)) {
    const VoucherRecord voucher = tables_.vouchers.Read();
    if (voucher.number == entered) {
      passed = true;
    } else if (voucher.check_number.empty() && voucher.status != "C") {
      if (first.empty()) first = voucher.number;
      if (passed && next.empty()) next = voucher.number;
    }
  }
  if (first.empty()) {
    Boxes().Inform(Caption(), file.empty() ? "Enter the file number first: its vouchers are offered then."
                                           : "File " + file + " has no other voucher that is unused.");
    return;
  }
  SetText("txtCheckVoucherNumber", next.empty() ? first : next);
  LookUpVoucher();
}

// What is blank in a new check comes from its voucher.
void FrmEditChecksPost::FillFrom(const VoucherRecord& voucher) {
  if (loaded_) return;
  if (Text("txtCheckAmount").empty()) SetText("txtCheckAmount", AmountText(voucher.amount));
  if (Text("txtCheckPayee").empty()) SetText("txtCheckPayee", voucher.payee);
}

}  // namespace tallwick
