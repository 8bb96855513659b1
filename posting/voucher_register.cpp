#include "posting/voucher_register.h"

#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/keys.h"
#include "tables/status_text.h"

namespace tallwick {

bool VoucherRegister::Open(std::string_view bank_code) {
  if (vouchers_.Open(bank_code) <= 0) return false;
  CountAgain();
  return true;
}

void VoucherRegister::ShowStatus(std::string_view status) {
  status_ = status;
  CountAgain();
}

bool VoucherRegister::IsWanted() {
  return vouchers_.Data().GetStringFieldValueByPointer(vouchers_.Handle(), vouchers_.Field("VCHRSTATUS")) ==
         status_;
}

VoucherRegister::Shown VoucherRegister::ReadRow() {
  const VoucherRecord voucher = vouchers_.Read();
  return {{voucher.number, DisplayDate(voucher.dated), voucher.payee, AmountText(voucher.amount),
           voucher.file_number, VoucherStatusText(voucher.status), voucher.check_number},
          StatusStyle(voucher.status)};
}

std::vector<VoucherRegister::SearchKey> VoucherRegister::KeysFor(std::string_view text) const {
  return {{"VCHRNUMBER", StoredNumber(text)},
          {"VCHRFILENO", std::string(text)},
          {"VCHRPAYEE", std::string(text)}};
}

std::vector<std::string> VoucherRegister::Headings() const {
  return {"Number", "Dated", "Payee", "Amount", "File", "Status", "Check"};
}

std::string VoucherRegister::NumberAt(std::size_t row) {
  return GoToRow(row) ? vouchers_.Read().number : "";
}

}  // namespace tallwick
