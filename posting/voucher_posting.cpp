#include "posting/voucher_posting.h"

#include <algorithm>
#include <iterator>

#include "posting/file_number.h"
#include "posting/post_voucher.h"
#include "posting/voucher_register.h"
#include "posting/voucher_validation.h"
#include "shell/company_tables.h"
#include "shell/rights.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

// The audit trail has no transaction for vouchers.
constexpr PostingScreen kScreen{"frmEditVouchersPost", "Post Vouchers - ", "Bank ID Code no longer valid.", 0,
                                kRightPostChecks};

constexpr EntryField<VoucherRecord> kFields[] = {
    {"txtVCHRNumber", ControlKind::kText, "Vouc&her Number", "Voucher Number", "VCHRNUMBER",
     &VoucherRecord::number},
    {"txtVCHRFileNumber", ControlKind::kText, "File Num&ber", "File Number", "VCHRFILENO",
     &VoucherRecord::file_number},
    {"txtVCHRDated", ControlKind::kDate, "&Dated", "Voucher Date", "VCHRDATED", &VoucherRecord::dated},
    {"txtVCHRPayee", ControlKind::kCombo, "&Payee", "Payee", "VCHRPAYEE", &VoucherRecord::payee},
    {"txtVCHRReason", ControlKind::kText, "&Reason", "Reason", "VCHRREASON", &VoucherRecord::reason},
    {"txtVCHRAmount", ControlKind::kAmount, "A&mount", "Voucher Amount", "VCHRAMOUNT",
     &VoucherRecord::amount},
    {"txtVCHRAcctPeriod", ControlKind::kPeriod, "Acco&unting Period", "Accounting Period", "",
     &VoucherRecord::accounting},
    {"txtVCHRCheckNumber", ControlKind::kText, "Chec&k Number", "Check Number", "VCHRCHKNUM",
     &VoucherRecord::check_number},
};

// Entries that a reconciled period closes.
constexpr std::string_view kRestricted[] = {"txtVCHRFileNumber", "txtVCHRDated", "txtVCHRAmount",
                                            "txtVCHRAcctPeriod"};

const ItemScreen<VoucherRecord, VoucherTable> kItem{kScreen,
                                                    "Voucher",
                                                    kVoucherLayout,
                                                    kFields,
                                                    &BankTables::vouchers,
                                                    &VoucherRecord::number,
                                                    "txtVCHRPayee",
                                                    "txtVCHRFileNumber",
                                                    "lstVCHRNumbers"};

}  // namespace

FrmEditVouchersPost::FrmEditVouchersPost(Session& session, ScreenOpener* opener, bool viewing)
    : ItemPostingForm(session, opener, kItem, VoucherRows()), viewing_(viewing) {
  Add(ControlKind::kCheck, "chkVCHRCleared", "&Cleared");
  Add(ControlKind::kLabel, "lblVCHRStatus");
  Add(ControlKind::kLabel, "lblEditMessage");
  Add(ControlKind::kButton, "cmdNextVCHRNumber", "Ne&xt Number");
  AddRegister("Vouchers", "&Add");
}

void FrmEditVouchersPost::OnOpen() {
  if (viewing_) SetFormCaption("View Vouchers - " + session_.BankName());
  ItemPostingForm::OnOpen();
  SetFocus(viewing_ ? "txtVCHRNumber" : "txtVCHRFileNumber");
}

void FrmEditVouchersPost::OnLeave(Control& control) {
  ItemPostingForm::OnLeave(control);
  if (control.name == "txtVCHRAcctPeriod" && !loaded_) ShowBeside(nullptr);
}

void FrmEditVouchersPost::OnClick(Control& control) {
  if (control.name == "cmdNextVCHRNumber") TakeNextNumber();
  ItemPostingForm::OnClick(control);
}

void FrmEditVouchersPost::TakeNextNumber() {
  if (!ReadBank()) return;
  SetText("txtVCHRNumber", ProposedNumber());
  LookUpNumber();
}

bool FrmEditVouchersPost::IsEntry(const Control& control) const {
  return control.name == "chkVCHRCleared" || ItemPostingForm::IsEntry(control);
}

std::string FrmEditVouchersPost::ProposedNumber() {
  if (viewing_) return {};
  const std::optional<BankRecord> bank = session_.Company().banks.Find(bank_code_);
  return bank ? std::to_string(NextVoucherNumber(tables_.vouchers, bank->last_voucher)) : "";
}

VoucherRecord FrmEditVouchersPost::BlankRecord() {
  VoucherRecord voucher;
  voucher.dated = session_.TheClock().Now().date;
  voucher.accounting = bank_.accounting;
  return voucher;
}

void FrmEditVouchersPost::ShowMarks(const VoucherRecord* voucher) {
  SetValue("chkVCHRCleared", voucher != nullptr && voucher->status == "C" ? 1 : 0);
}

void FrmEditVouchersPost::ShowBeside(const VoucherRecord* voucher) {
  const bool closed = voucher != nullptr && IsReconciled(voucher->accounting);
  for (const EntryField<VoucherRecord>& entry : kFields) {
    const bool restricted =
        std::find(std::begin(kRestricted), std::end(kRestricted), entry.control) != std::end(kRestricted);
    if (entry.control != NumberControl()) SetEnabled(entry.control, !viewing_ && !(closed && restricted));
  }
  for (std::string_view control : {"chkVCHRCleared", "cmdOk", "cmdNextVCHRNumber", "cmdRolodex"})
    SetEnabled(control, !viewing_);
  SetCaption("cmdOk", voucher != nullptr ? "&Ok" : "&Add");
  if (voucher == nullptr) {
    SetCaption("lblVCHRStatus", "Not Posted");
    SetCaption("lblEditMessage", viewing_ ? "Choose a posted voucher in the list, or type its number."
                                          : "\r\nTransaction will be posted to the Accounting Period " +
                                                Text("txtVCHRAcctPeriod") + " .");
    return;
  }
  SetCaption("lblVCHRStatus", VoucherStatusText(voucher->status));
  SetCaption("lblEditMessage", closed ? "Accounting period " + ShortForm(voucher->accounting) +
                                            " has been reconciled.\r\nChanges are restricted."
                                      : "");
}

void FrmEditVouchersPost::Complete(VoucherRecord* voucher) {
  voucher->status = At("chkVCHRCleared").value == 1 ? "C" : "O";
}

bool FrmEditVouchersPost::MayPost() {
  if (viewing_) return false;
  VoucherCase voucher{Entries(), bank_, {}, false, At("txtVCHRAcctPeriod").enabled, [this] {
                        return IsOnFile(session_, Text("txtVCHRFileNumber"));
                      }};
  voucher.period = PeriodIn("txtVCHRAcctPeriod", &voucher.period_valid);
  return PassesTests(VoucherTests(), voucher) && PeriodIsReadable("txtVCHRAcctPeriod");
}

PostOutcome FrmEditVouchersPost::WriteNew(const VoucherRecord& voucher) {
  return PostVoucher(tables_, session_.Company().banks, session_.Company().xrefs, bank_code_, voucher);
}

PostOutcome FrmEditVouchersPost::WriteChanged(const VoucherRecord& before, const VoucherRecord& after) {
  return RewriteVoucher(tables_, session_.Company().xrefs, bank_code_, before, after);
}

std::string FrmEditVouchersPost::NotAdded(const PostOutcome& outcome, const std::string& number) const {
  return VoucherFailureMessage(outcome, number);
}

}  // namespace tallwick
