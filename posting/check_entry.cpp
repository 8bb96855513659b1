#include "posting/check_entry.h"

namespace tallwick {
namespace {

constexpr CheckEntryField kFields[] = {
    {"txtCheckNumber", ControlKind::kText, "Chec&k Number", "Check Number", "CHXNUMBER",
     &CheckRecord::number},
    {"txtCheckDated", ControlKind::kDate, "&Dated", "Check Date", "CHXDATED", &CheckRecord::dated},
    {"txtCheckPayee", ControlKind::kCombo, "&Payee", "Payee", "CHXPAYEE", &CheckRecord::payee},
    {"txtCheckAddr1", ControlKind::kText, "Address", "Address Line 1", "CHXADDR1", &CheckRecord::address1},
    {"txtCheckAddr2", ControlKind::kText, "", "Address Line 2", "CHXADDR2", &CheckRecord::address2},
    {"txtCheckCityState", ControlKind::kText, "Cit&y, State ZIP", "City and State", "CHXCITYST",
     &CheckRecord::city_state},
    {"txtCheckAmount", ControlKind::kAmount, "&Amount", "Check Amount", "CHXAMOUNT", &CheckRecord::amount},
    {"txtCheckFileNumber", ControlKind::kText, "File Num&ber", "File Number", "CHXFILENO",
     &CheckRecord::file_number},
    {"txtCheckAcctPeriod", ControlKind::kPeriod, "Acco&unting Period", "Accounting Period", "",
     &CheckRecord::accounting},
    {"txtCheckVoucherNumber", ControlKind::kText, "Vouc&her Number", "Voucher Number", "CHXVCHRNO",
     &CheckRecord::voucher_number},
    {"txtTIN", ControlKind::kText, "&TIN", "TIN", "CHXTINNO", &CheckRecord::tin},
    {"txtCheckControl", ControlKind::kText, "&Control", "Control Number", "CHXCONTROL",
     &CheckRecord::control},
    {"txtRemittanceAdvice", ControlKind::kText, "Re&mittance Advice", "Remittance Advice", ""},
};

}  // namespace

std::span<const CheckEntryField> CheckEntryFields() {
  return kFields;
}

}  // namespace tallwick
