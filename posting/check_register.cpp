#include "posting/check_register.h"

#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/keys.h"
#include "tables/status_text.h"

namespace tallwick {

bool CheckRegister::Open(std::string_view bank_code) {
  if (checks_.Open(bank_code) <= 0) return false;
  BeginAgain();
  return true;
}

void CheckRegister::ShowOrder(Order order) {
  if (order == order_) return;
  order_ = order;
  UseTag(order == Order::kPayee ? "CHXPAYEE" : "CHXNUMBER", order == Order::kPayee);
  BeginAgain();
}

void CheckRegister::ShowOnly(Only only) {
  if (only == only_) return;
  only_ = only;
  BeginAgain();
}

std::vector<int> CheckRegister::WantedParts() {
  const std::string status =
      checks_.Data().GetStringFieldValueByPointer(checks_.Handle(), checks_.Field("CHXSTATUS"));
  const auto shown = [&] {
    switch (only_) {
      case Only::kCleared:
        return status == "C";
      case Only::kVoided:
        return status == "V";
      case Only::kStopped:
        return status == "S";
      case Only::kOutstanding:
        return IsOutstanding(status);
      case Only::kAll:
        break;
    }
    return true;
  };
  return shown() ? std::vector{0} : std::vector<int>();
}

Currency CheckRegister::Amount(int) {
  return checks_.Data().GetCurrencyFieldValueByPointer(checks_.Handle(), checks_.Field("CHXAMOUNT"));
}

CheckRegister::Shown CheckRegister::ReadRow(int) {
  clsKVRData& data = checks_.Data();
  const DataHandle table = checks_.Handle();
  const auto text = [&](std::string_view field) {
    return data.GetStringFieldValueByPointer(table, checks_.Field(field));
  };
  const std::string status = text("CHXSTATUS");
  return {
      {text("CHXNUMBER"), DisplayDate(data.GetDateByPointer(table, checks_.Field("CHXDATED"))),
       text("CHXPAYEE"), AmountText(data.GetCurrencyFieldValueByPointer(table, checks_.Field("CHXAMOUNT"))),
       text("CHXFILENO"), CheckStatusText(status)},
      StatusStyle(status)};
}

std::optional<std::size_t> CheckRegister::FindRow(std::string_view text) {
  const std::optional<Currency> wanted = IsSorted() ? Currency::ParseTyped(text) : std::nullopt;
  if (!wanted) return TableRegister::FindRow(text);
  std::size_t first = 0;  // greatest first: the rows before it have more
  for (std::size_t end = RowCount(); first < end;) {
    const std::size_t middle = first + (end - first) / 2;
    if (GoToRow(middle) && Amount(0) > *wanted) {
      first = middle + 1;
    } else {
      end = middle;
    }
  }
  const bool found = GoToRow(first) && Amount(0) == *wanted;
  return found ? std::optional(first) : TableRegister::FindRow(text);
}

std::vector<SearchKey> CheckRegister::KeysFor(std::string_view text) const {
  return {
      {"CHXNUMBER", StoredNumber(text)}, {"CHXFILENO", std::string(text)}, {"CHXPAYEE", std::string(text)}};
}

std::vector<std::string> CheckRegister::Headings() const {
  return {"Number", "Dated", "Payee", "Amount", "File", "Status"};
}

bool CheckRegister::IsNumeric(std::size_t column) const {
  return column == 0 || column == 3;
}

std::string CheckRegister::NumberAt(std::size_t row) {
  const std::vector<std::string> cells = Row(row);
  return cells.empty() ? "" : cells.front();
}

}  // namespace tallwick
