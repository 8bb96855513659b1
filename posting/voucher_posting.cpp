#include "posting/voucher_posting.h"

#include <algorithm>
#include <iterator>

#include "posting/check_numbering.h"
#include "posting/file_number.h"
#include "posting/post_check.h"
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
                                kRightPostChecks,      "lblVCHRStatus"};

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
constexpr std::string_view kRestricted[] = {"txtVCHRFileNumber", "txtVCHRDated", "txtVCHRPayee",
                                            "txtVCHRAmount", "txtVCHRAcctPeriod"};

// A new number so far beyond the last one is more likely mistyped than meant; the numbers would go on from
// it.
constexpr long long kFarJump = 100'000;

const ItemScreen<VoucherRecord, VoucherTable> kItem{kScreen,
                                                    "Voucher",
                                                    true,
                                                    kVoucherLayout,
                                                    kFields,
                                                    &BankTables::vouchers,
                                                    &VoucherRecord::number,
                                                    "txtVCHRPayee",
                                                    "txtVCHRFileNumber",
                                                    "lstVCHRNumbers",
                                                    "mnuEditRemoveVoucher"};

}  // namespace

FrmEditVouchersPost::FrmEditVouchersPost(Session& session, ScreenOpener* opener, bool viewing)
    : ItemPostingForm(session, opener, kItem, VoucherRows()), viewing_(viewing) {
  Add(ControlKind::kCheck, "chkVCHRCleared", "&Cleared");
  Add(ControlKind::kLabel, "lblVCHRStatus");
  Add(ControlKind::kLabel, "lblEditMessage");
  Add(ControlKind::kButton, "cmdNextVCHRNumber", "Ne&xt Number");
  AddRegister("Vouchers", "&Add", viewing_);
}

void FrmEditVouchersPost::OnOpen() {
  if (viewing_) SetFormCaption("View Vouchers - " + session_.BankName());
  ItemPostingForm::OnOpen();
  SetFocus(viewing_ ? "txtVCHRNumber" : "txtVCHRFileNumber");
}

void FrmEditVouchersPost::OnLeave(Control& control) {
  ItemPostingForm::OnLeave(control);
  const bool beside = control.name == NumberControl() || control.name == "txtVCHRAcctPeriod";
  if (beside && !loaded_) ShowBeside(nullptr);
  if (control.name != "txtVCHRCheckNumber" || (loaded_ && control.text == loaded_->check_number)) return;
  SetText(control.name, CountedNumber(control.text));
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
  if (!bank) return {};
  bank_.last_voucher = bank->last_voucher;
  const std::int64_t next = NextVoucherNumber(tables_.vouchers, bank->last_voucher);
  return tables_.vouchers.ReadFailed() ? "" : std::to_string(next);
}

std::string FrmEditVouchersPost::Gap() {
  const std::string warning = GapWarning("Voucher", Text(NumberControl()), bank_.last_voucher);
  return warning.empty() ? "" : "\r\n" + warning;
}

bool FrmEditVouchersPost::MayGoOn() {
  const long long value = NumberValue(Text(NumberControl())).value_or(0);
  if (loaded_ || value <= bank_.last_voucher + kFarJump) return true;
  const std::string question = GapWarning("Voucher", Text(NumberControl()), bank_.last_voucher) +
                               ".\r\nThe numbers that are proposed go on from there.  Post it?";
  if (Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) ==
      BoxAnswer::kYes) {
    return true;
  }
  MarkRefused(NumberControl());
  return false;
}

VoucherRecord FrmEditVouchersPost::BlankRecord() {
  VoucherRecord voucher;
  voucher.dated = session_.TheClock().Now().date;
  voucher.accounting = ProposedPeriod();
  return voucher;
}

void FrmEditVouchersPost::ShowMarks(const VoucherRecord* voucher) {
  SetValue("chkVCHRCleared", voucher != nullptr && voucher->status == "C" ? 1 : 0);
}

bool FrmEditVouchersPost::IsHeldByCheck(const VoucherRecord& voucher) {
  if (voucher.check_number.empty() || !SeekCounted(tables_.checks, voucher.check_number)) return false;
  const CheckRecord check = tables_.checks.Read();
  return UsesVoucher(check) && check.voucher_number == voucher.number;
}

void FrmEditVouchersPost::ShowBeside(const VoucherRecord* voucher) {
  const std::string restriction = voucher != nullptr ? RestrictionOf(*voucher, bank_) : "";
  const bool closed = !restriction.empty();
  const bool held = voucher != nullptr && IsHeldByCheck(*voucher);
  for (const EntryField<VoucherRecord>& entry : kFields) {
    const bool restricted =
        std::find(std::begin(kRestricted), std::end(kRestricted), entry.control) != std::end(kRestricted);
    if (entry.control != NumberControl()) SetEnabled(entry.control, !viewing_ && !(closed && restricted));
  }
  SetEnabled("txtVCHRCheckNumber", !viewing_ && !held);
  for (std::string_view control : {"chkVCHRCleared", "cmdOk", "cmdNextVCHRNumber", "cmdRolodex"})
    SetEnabled(control, !viewing_);
  SetCaption("cmdOk", voucher != nullptr ? "&Ok" : "&Add");
  if (voucher == nullptr) {
    SetCaption("lblVCHRStatus", "Not Posted");
    SetCaption("lblEditMessage", viewing_ ? "Choose a posted voucher in the list, or type its number."
                                          : "\r\nTransaction will be posted to the Accounting Period " +
                                                Text("txtVCHRAcctPeriod") + " ." + Gap());
    return;
  }
  SetCaption("lblVCHRStatus", VoucherStatusText(voucher->status));
  const std::string use = held ? "Check " + voucher->check_number + " uses this voucher." : "";
  SetCaption("lblEditMessage", closed && held ? restriction + "\r\n" + use : restriction + use);
}

void FrmEditVouchersPost::Complete(VoucherRecord* voucher) {
  const bool cleared = At("chkVCHRCleared").value == 1;
  if (loaded_ && cleared == (loaded_->status == "C")) return;
  voucher->status = cleared ? "C" : "O";
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
  return PostVoucher(tables_, session_.Company().banks, session_.Company().xrefs, bank_code_, voucher,
                     SameReconciliation());
}

PostOutcome FrmEditVouchersPost::WriteChanged(const VoucherRecord& before, const VoucherRecord& after) {
  return RewriteVoucher(tables_, session_.Company().xrefs, bank_code_, before, after, SameReconciliation());
}

std::string FrmEditVouchersPost::RemovalRefusal(const VoucherRecord& voucher) const {
  if (std::string restricted = RestrictionOf(voucher, bank_); !restricted.empty()) return restricted;
  const std::string name = "Voucher " + voucher.number;
  if (!voucher.check_number.empty()) return name + " was used by check " + voucher.check_number + ".";
  return voucher.status == "C" ? name + " is marked cleared.  Take the mark off first." : "";
}

PostOutcome FrmEditVouchersPost::WriteRemoved(const VoucherRecord& voucher) {
  return RemoveVoucher(tables_, session_.Company().xrefs, bank_code_, voucher, SameReconciliation());
}

std::string FrmEditVouchersPost::NotAdded(const PostOutcome& outcome, const std::string& number) const {
  return VoucherFailureMessage(outcome, number);
}

}  // namespace tallwick
