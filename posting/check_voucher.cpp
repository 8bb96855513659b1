#include "posting/check_voucher.h"

#include "core/text.h"
#include "core/text_format.h"
#include "tables/keys.h"

namespace tallwick {
namespace {

std::string Dollars(Currency amount) {
  return FormatNumber(amount, "$###,###.00");
}

}  // namespace

std::string VoucherSummary(const VoucherRecord& voucher) {
  std::string text = "Voucher dated " + FormatDate(voucher.dated, "mmmm dd, yyyy") + " to " + voucher.payee;
  if (!voucher.reason.empty()) text += "\r\nbecause " + voucher.reason;
  return text + "\r\nfor " + Dollars(voucher.amount);
}

std::string VoucherWarnings(const VoucherRecord& voucher, Currency check_amount,
                            std::string_view file_number) {
  std::string text;
  const auto add = [&text](const std::string& line) { text += (text.empty() ? "" : "\r\n") + line; };
  if (check_amount > voucher.amount) {
    add("Check amount is more than vouchered funds.  Voucher was posted for " + Dollars(voucher.amount) +
        " .");
  }
  if (!Trim(file_number).empty() && !SameKey(voucher.file_number, Trim(file_number))) {
    add("Voucher Number " + voucher.number + " is posted to file number " + voucher.file_number + " .");
  }
  if (!voucher.check_number.empty()) {
    add("Voucher number " + voucher.number + " has already been reduced by check number " +
        voucher.check_number + " .");
  }
  return text;
}

}  // namespace tallwick
