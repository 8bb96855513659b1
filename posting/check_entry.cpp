#include "posting/check_entry.h"

#include "core/text.h"
#include "posting/entry_problems.h"

namespace tallwick {
namespace {

constexpr CheckEntryField kFields[] = {
    {"txtCheckNumber", ControlKind::kText, "Chec&k Number", "Check Number", "CHXNUMBER",
     &CheckRecord::number},
    {"txtCheckDated", ControlKind::kDate, "&Dated", "Check Date", "CHXDATED"},
    {"txtCheckPayee", ControlKind::kText, "&Payee", "Payee", "CHXPAYEE", &CheckRecord::payee},
    {"txtCheckAddr1", ControlKind::kText, "Add&ress", "Address Line 1", "CHXADDR1", &CheckRecord::address1},
    {"txtCheckAddr2", ControlKind::kText, "", "Address Line 2", "CHXADDR2", &CheckRecord::address2},
    {"txtCheckCityState", ControlKind::kText, "C&ity, State ZIP", "City and State", "CHXCITYST",
     &CheckRecord::city_state},
    {"txtCheckAmount", ControlKind::kAmount, "&Amount", "Check Amount", "CHXAMOUNT"},
    {"txtCheckFileNumber", ControlKind::kText, "&File Number", "File Number", "CHXFILENO",
     &CheckRecord::file_number},
    {"txtCheckAcctPeriod", ControlKind::kPeriod, "Acco&unting Period", "Accounting Period", ""},
    {"txtCheckVoucherNumber", ControlKind::kText, "&Voucher Number", "Voucher Number", "CHXVCHRNO",
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

std::string_view ControlOfCheckField(std::string_view field) {
  for (const CheckEntryField& entry : kFields) {
    if (!field.empty() && EqualsIgnoreCase(entry.field, field)) return entry.control;
  }
  return {};
}

int WidthOfEntry(const CheckEntryField& entry) {
  return WidthOf(kCheckLayout, entry.field);
}

std::string CheckEntryProblem(const CheckEntryField& entry, std::string_view text) {
  const int width = WidthOfEntry(entry);
  if (width == 0) return {};
  switch (entry.kind) {
    case ControlKind::kAmount:
      return AmountProblem(entry.label, text, width);
    case ControlKind::kDate:
      return DateProblem(entry.label, text);
    default:
      return TextProblem(entry.label, text, width);
  }
}

void ApplyCheckEntry(const EntryText& text, const Period& accounting, CheckRecord* check) {
  for (const CheckEntryField& entry : kFields) {
    if (entry.text != nullptr) check->*entry.text = Trim(text(entry.control));
  }
  check->dated = ParseDisplayDate(text("txtCheckDated")).value_or(Date{});
  check->amount = Currency::ParseTyped(text("txtCheckAmount")).value_or(Currency());
  check->accounting = accounting;
}

std::string CheckEntryText(const CheckEntryField& entry, const CheckRecord& check) {
  if (entry.text != nullptr) return check.*entry.text;
  switch (entry.kind) {
    case ControlKind::kAmount:
      return AmountText(check.amount);
    case ControlKind::kDate:
      return DisplayDate(check.dated);
    case ControlKind::kPeriod:
      return check.accounting.IsEmpty() ? "" : ShortForm(check.accounting);
    default:
      return {};
  }
}

std::string FormattedEntry(ControlKind kind, std::string_view text, std::int32_t bank_day) {
  std::string trimmed(Trim(text));
  if (trimmed.empty()) return {};
  if (kind == ControlKind::kAmount) {
    const std::optional<Currency> amount = Currency::ParseTyped(trimmed);
    return amount ? AmountText(*amount) : trimmed;
  }
  if (kind == ControlKind::kDate) {
    const std::optional<Date> date = ParseDisplayDate(trimmed);
    return date ? DisplayDate(*date) : trimmed;
  }
  if (kind == ControlKind::kPeriod) {
    RunState scratch;
    const Period period = ParsePeriod(trimmed, bank_day, scratch);
    return scratch.period_valid ? ShortForm(period) : trimmed;
  }
  return trimmed;
}

}  // namespace tallwick
