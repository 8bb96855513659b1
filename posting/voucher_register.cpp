#include "posting/voucher_register.h"

#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/keys.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

std::vector<std::string> Cells(const VoucherRecord& voucher) {
  return {voucher.number,      DisplayDate(voucher.dated), voucher.payee,       AmountText(voucher.amount),
          voucher.file_number, VoucherStatusText(voucher), voucher.check_number};
}

std::vector<SearchKey> Keys(std::string_view text) {
  return {{"VCHRNUMBER", StoredNumber(text)},
          {"VCHRFILENO", std::string(text)},
          {"VCHRPAYEE", std::string(text)}};
}

}  // namespace

ItemRows<VoucherRecord> VoucherRows() {
  return {"VCHRNUMBER",
          "VCHRSTATUS",
          "VCHRAMOUNT",
          &VoucherRecord::number,
          &VoucherRecord::status,
          {"Number", "Dated", "Payee", "Amount", "File", "Status", "Check"},
          {0, 3, 6},
          Cells,
          Keys,
          StatusStyle,
          "VCHRCHKNUM"};
}

}  // namespace tallwick
