#include "tables/status_text.h"

#include "core/text.h"

namespace tallwick {

namespace {

std::string Undefined(std::string_view code) {
  return "undefined status code (" + std::string(code) + ")";
}

}  // namespace

std::string CheckStatusText(std::string_view code) {
  code = Trim(code);
  if (code == "H") return "Handwritten";
  if (code == "O") return "Outstanding";
  if (code == "V") return "Voided ";
  if (code == "C") return "Cleared ";
  if (code == "S") return "Stopped Payment ";
  return Undefined(code);
}

bool IsOutstanding(std::string_view status) {
  return status != "C" && status != "V" && status != "S";
}

std::string WireStatusText(std::string_view code) {
  code = Trim(code);
  if (code == "O") return "Outstanding";
  if (code == "C") return "Cleared ";
  return Undefined(code);
}

std::string VoucherStatusText(std::string_view code) {
  code = Trim(code);
  if (code == "O") return "Outstanding";
  if (code == "C") return "Cleared";
  return Undefined(code);
}

std::string VoucherStatusText(const VoucherRecord& voucher) {
  const bool used = voucher.status != "C" && !voucher.check_number.empty();
  return used ? "Used" : VoucherStatusText(voucher.status);
}

std::string DepositStatusText(const DepositRecord& deposit) {
  int used = 0;
  int cleared = 0;
  for (const DepositItem& item : deposit.items) {
    used += IsUsed(item) ? 1 : 0;
    cleared += IsUsed(item) && item.status == "C" ? 1 : 0;
  }
  if (cleared > 0 && cleared < used) return "Partly Cleared";
  return VoucherStatusText(cleared > 0 ? "C" : "O");
}

}  // namespace tallwick
