// The voucher on the check screen: what is said about it, when it is looked up and again where it has changed
// by the time of a post, and what it fills into a new check.
#include "core/text.h"
#include "posting/check_posting.h"
#include "posting/check_voucher.h"
#include "posting/entry_problems.h"

namespace tallwick {

std::optional<VoucherRecord> FrmEditChecksPost::FindVoucher(const std::string& number) {
  if (number.empty() || !SeekCounted(tables_.vouchers, number)) return std::nullopt;
  VoucherRecord voucher = tables_.vouchers.Read();
  if (voucher.check_number == OwnNumber()) voucher.check_number.clear();
  return voucher;
}

// The number of the check; "" where it is another check's by now.
std::string FrmEditChecksPost::OwnNumber() {
  if (loaded_) return loaded_->number;
  const std::string& typed = Text("txtCheckNumber");
  return tables_.checks.SeekNumber(typed) ? "" : typed;
}

void FrmEditChecksPost::LookUpVoucher() {
  const std::string typed = Text("txtCheckVoucherNumber");
  if (typed == looked_up_voucher_) return;
  const std::optional<VoucherRecord> voucher = FindVoucher(typed);
  looked_up_voucher_ = voucher ? voucher->number : CountedNumber(typed);
  SetText("txtCheckVoucherNumber", looked_up_voucher_);
  FillFrom(voucher.value_or(VoucherRecord{}));
  TellVoucher(voucher);
}

void FrmEditChecksPost::WarnOfChangedVoucher() {
  const std::optional<VoucherRecord> now = FindVoucher(looked_up_voucher_);
  if (now != seen_voucher_) TellVoucher(now);
}

void FrmEditChecksPost::TellVoucher(const std::optional<VoucherRecord>& voucher) {
  seen_voucher_ = voucher;
  SetCaption("lblVoucherInformation", voucher ? VoucherSummary(*voucher) : "");
  if (looked_up_voucher_.empty()) return;
  if (!voucher) return Boxes().Inform(Caption(), "Voucher Number " + looked_up_voucher_ + " is NOT posted.");
  const Currency amount = Currency::ParseTyped(Text("txtCheckAmount")).value_or(Currency());
  const std::string warnings = VoucherWarnings(*voucher, amount, Text("txtCheckFileNumber"));
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

// What is blank in a new check comes from its voucher, and what came from another voucher goes with that.
void FrmEditChecksPost::FillFrom(const VoucherRecord& voucher) {
  if (loaded_) return;
  Fill("txtCheckAmount", &filled_amount_, voucher.amount.IsZero() ? "" : AmountText(voucher.amount));
  const std::string payee = Text("txtCheckPayee");
  Fill("txtCheckPayee", &filled_payee_, voucher.payee);
  if (payee.empty() || Text("txtCheckPayee") == payee) return;
  // The address was that of the other payee.
  for (std::string_view line : {"txtCheckAddr1", "txtCheckAddr2", "txtCheckCityState"}) SetText(line, {});
}

void FrmEditChecksPost::Fill(std::string_view entry, std::string* filled, const std::string& now) {
  const bool typed = !Text(entry).empty() && Text(entry) != *filled;
  *filled = typed ? "" : now;
  if (!typed) SetText(entry, now);
}

}  // namespace tallwick
