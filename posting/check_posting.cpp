#include "posting/check_posting.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "core/text.h"
#include "posting/check_voucher.h"
#include "posting/entry_problems.h"
#include "shell/company_tables.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr PostingScreen kScreen{"frmEditChecksPost", "Post Checks - ", "Bank ID Code no longer valid...",
                                kAuditPostCheck};

// Entries that a reconciled period closes.
constexpr std::string_view kRestricted[] = {"txtCheckDated",         "txtCheckAmount",
                                            "txtCheckFileNumber",    "txtCheckAcctPeriod",
                                            "txtCheckVoucherNumber", "chkHandwritten"};

bool IsReturnedOrCleared(const CheckRecord& check) {
  return check.status == "C" || check.status == "V" || check.status == "S";
}

std::string StatusWord(std::string_view status) {
  if (status == "C") return "Cleared";
  return status == "V" ? "Voided" : "Stop Payment";
}

// Why changes to the check are restricted; "" when they are not.
std::string RestrictionText(const CheckRecord& check, const BankRecord& bank) {
  const std::int32_t reconciled = MakeKey(bank.reconciled);
  const std::int32_t statement = MakeKey(check.statement);
  if (IsReturnedOrCleared(check) && statement != 0 && statement <= reconciled) {
    return StatusWord(check.status) + " and reconciled.\r\nChanges are restricted.";
  }
  if (MakeKey(check.accounting) > reconciled) return {};
  return "Accounting period " + ShortForm(check.accounting) +
         " has been reconciled.\r\nChanges are restricted.";
}

}  // namespace

FrmEditChecksPost::FrmEditChecksPost(Session& session)
    : PostingForm(session, kScreen), register_(std::make_shared<CheckRegister>(session.Home())) {
  AddControls();
}

void FrmEditChecksPost::AddControls() {
  for (const CheckEntryField& entry : CheckEntryFields()) {
    Add(entry.kind, std::string(entry.control), std::string(entry.caption)).max_length =
        TypedWidth(entry.kind, kCheckLayout, entry.field);
  }
  Add(ControlKind::kCheck, "chkHandwritten", "&Handwritten");
  for (std::string_view label : {"lblLastCheckNumber", "lblHighestCheckNumber", "lblCheckStatus",
                                 "lblVoucherInformation", "lblEditMessage"}) {
    Add(ControlKind::kLabel, std::string(label));
  }
  Add(ControlKind::kGrid, "lstCheckNumbers", "Checks");
  Add(ControlKind::kButton, "cmdOk", "P&ost Check");
  Add(ControlKind::kButton, "cmdDone", "Do&ne");
  Add(ControlKind::kMenu, "mnuEditUseNextHigherCheckNumber", "Use Next &Higher Check Number");
  Add(ControlKind::kMenu, "mnuOptionsWarnHigherNumber", "&Warn of Higher Number").value = 1;
}

void FrmEditChecksPost::OnOpen() {
  SetSource("lstCheckNumbers", register_);
  BeginNewCheck();
  SetFocus("txtCheckPayee");
}

void FrmEditChecksPost::OnEnter(Control& control) {
  if (control.name == "txtCheckNumber" && !loaded_) ReadNumbering();
}

void FrmEditChecksPost::OnLeave(Control& control) {
  for (const CheckEntryField& entry : CheckEntryFields()) {
    if (entry.control == control.name) {
      SetText(control.name, FormattedEntry(entry.kind, control.text, bank_.accounting.day));
    }
  }
  if (control.name == "txtCheckNumber") LookUpNumber();
  if (control.name == "txtCheckVoucherNumber") LookUpVoucher();
}

void FrmEditChecksPost::OnChoose(Control& control) {
  if (control.name != "lstCheckNumbers" || control.selected == 0) return;
  const std::string number = register_->NumberAt(static_cast<std::size_t>(control.selected) - 1);
  if (number.empty()) {
    register_->Refresh();
    RowsChanged("lstCheckNumbers");
  } else if (MayDropChanges()) {
    OpenNumber(number);
  }
}

void FrmEditChecksPost::OnClick(Control& control) {
  if (control.name == "cmdOk") Post();
  if (control.name == "cmdDone") Close();
}

void FrmEditChecksPost::OnMenu(Control& control) {
  if (control.name == "mnuOptionsWarnHigherNumber") SetValue(control.name, control.value == 0 ? 1 : 0);
  if (control.name == "mnuEditUseNextHigherCheckNumber") {
    ReadNumbering();
    SetText("txtCheckNumber", std::to_string(numbering_.Next()));
    LookUpNumber();
  }
}

// --- The number ---

void FrmEditChecksPost::LookUpNumber() {
  const std::string number = Text("txtCheckNumber");
  if (number != looked_up_number_) {
    // A new check keeps its entries under another free number; anything else shows other entries.
    const bool shows_other = loaded_ || (!number.empty() && tables_.checks.SeekNumber(number));
    if (shows_other && !MayDropChanges()) {
      SetText("txtCheckNumber", looked_up_number_);
      // A refused post has put the cursor into the field that it names.
      if (Focus() == &At("txtCheckNumber")) SetFocus("txtCheckNumber");
      return;
    }
    if (shows_other) return OpenNumber(number);
    looked_up_number_ = number;
  }
  WarnOfNumber();
}

void FrmEditChecksPost::OpenNumber(const std::string& number) {
  if (!number.empty() && tables_.checks.SeekNumber(number)) {
    ShowCheck(tables_.checks.Read());
    if (CheckNumberValue(number) == 0) OfferRemovalOfZero();
    return;
  }
  SetText("txtCheckNumber", number);
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
  looked_up_number_ = check.number;
  SetCaption("lblHighestCheckNumber", {});
  SetCaption("lblVoucherInformation", {});
  looked_up_voucher_ = check.voucher_number;
  if (!check.voucher_number.empty() && tables_.vouchers.SeekNumber(check.voucher_number)) {
    SetCaption("lblVoucherInformation", VoucherSummary(tables_.vouchers.Read()));
  }
  ShowState();
  KeepState();
  Audit(kAuditSnapshot, {});
}

void FrmEditChecksPost::ClearEntries() {
  loaded_.reset();
  for (const CheckEntryField& entry : CheckEntryFields()) {
    if (entry.control != "txtCheckNumber") SetText(entry.control, {});
  }
  SetText("txtCheckDated", DisplayDate(session_.TheClock().Now().date));
  if (!bank_.accounting.IsEmpty()) SetText("txtCheckAcctPeriod", ShortForm(bank_.accounting));
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
  SetText("txtCheckNumber", looked_up_number_);
  ClearEntries();
}

void FrmEditChecksPost::OfferRemovalOfZero() {
  const CheckRecord check = *loaded_;
  const std::string question =
      "Check Number '0' (zero) posted in error...\r\n\r\nFile Number: " + check.file_number +
      "\r\nAmount: " + AmountText(check.amount) + "\r\n\r\nData will be removed.";
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kOkCancel, BoxAnswer::kCancel});
  if (answer != BoxAnswer::kOk) return;
  const PostOutcome outcome = RemoveCheck(tables_, session_.Company().xrefs, bank_code_, check);
  if (!outcome.Done()) return ReportFailure(outcome, check.number);
  Audit(kAuditDelete, check.number);
  AfterWriting();
}

void FrmEditChecksPost::ReadNumbering() {
  numbering_ = ReadCheckNumbering(tables_.checks, session_.Files(), session_.DataPath(), bank_code_);
  SetCaption("lblLastCheckNumber", numbering_.Label());
}

void FrmEditChecksPost::WarnOfNumber() {
  const std::string& number = Text("txtCheckNumber");
  if (loaded_ || number == warned_number_) return;
  warned_number_ = number;
  const bool gap_wanted = At("mnuOptionsWarnHigherNumber").value != 0;
  SetCaption("lblHighestCheckNumber", gap_wanted ? GapWarning(number, numbering_.Last()) : "");
  const std::string warning = InventoryWarning(number, bank_);
  if (!warning.empty()) Boxes().Exclaim(Caption(), warning);
}

void FrmEditChecksPost::ShowState() {
  SetCaption("lblCheckStatus", loaded_ ? CheckStatusText(loaded_->status) : "Not Posted");
  SetCaption("cmdOk", loaded_ ? "&Ok" : "P&ost Check");
  ShowRestrictions();
}

void FrmEditChecksPost::ShowRestrictions() {
  const std::string restriction = loaded_ ? RestrictionText(*loaded_, bank_) : "";
  SetCaption("lblEditMessage", restriction);
  for (std::string_view control : kRestricted) SetEnabled(control, restriction.empty());
  if (loaded_ && IsReturnedOrCleared(*loaded_)) SetEnabled("chkHandwritten", false);
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
  FillAmountFrom(voucher);
  const Currency amount = Currency::ParseTyped(Text("txtCheckAmount")).value_or(Currency());
  const std::string warnings =
      VoucherWarnings(voucher, amount, Text("txtCheckFileNumber"), Text("txtCheckNumber"));
  if (!warnings.empty()) Boxes().Inform(Caption(), warnings);
}

void FrmEditChecksPost::FillAmountFrom(const VoucherRecord& voucher) {
  if (!loaded_ && Text("txtCheckAmount").empty()) SetText("txtCheckAmount", AmountText(voucher.amount));
}

// --- Changes that are not posted yet ---

bool FrmEditChecksPost::IsEntry(const Control& control) const {
  if (control.name == "chkHandwritten") return true;
  if (control.name == "txtRemittanceAdvice") return !loaded_;  // a posted check does not hold it
  const std::span<const CheckEntryField> entries = CheckEntryFields();
  return control.name != "txtCheckNumber" &&
         std::any_of(entries.begin(), entries.end(),
                     [&](const CheckEntryField& entry) { return entry.control == control.name; });
}

void FrmEditChecksPost::RestoreKey() {
  SetText("txtCheckNumber", looked_up_number_);
}

}  // namespace tallwick
