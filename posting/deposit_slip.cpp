#include "posting/deposit_slip.h"

#include "core/text.h"
#include "core/text_format.h"
#include "posting/deposit_facts.h"
#include "posting/entry_problems.h"

namespace tallwick {
namespace {

// Twips; the whole fits between the margins of letter paper.
constexpr const char* kItemColumns = ">+600|<+2200|<+4800|>+1800|^+1000";
constexpr const char* kHeadColumns = "<+2000|<+8400";

}  // namespace

PrintDocument MakeDepositSlip(std::string_view company, const BankRecord& bank,
                              const DepositRecord& deposit) {
  PrintDocument slip;
  const Date date = ParseStoredDate(deposit.dated).value_or(Date{});
  slip.name = "Deposit " + bank.code + " " + FormatDate(date, "yyyy-mm-dd") + " " + deposit.sequence;
  slip.rows.push_back({PrintStyle::kTitle, "", {"Deposit Slip"}});
  const auto head = [&](std::string_view name, std::string value) {
    if (!value.empty()) slip.rows.push_back({PrintStyle::kText, kHeadColumns, {std::string(name), value}});
  };
  head("Depositor", std::string(company));
  head("Bank", bank.name);
  head("", bank.address1);
  head("", bank.address2);
  head("", bank.city_state);
  head("Account No.", bank.account_number);
  head("Date", FormatDate(date, "mmmm d, yyyy"));
  head("Deposit", DepositName(deposit.dated, deposit.sequence));
  slip.rows.push_back({PrintStyle::kText, "", {""}});
  slip.rows.push_back(
      {PrintStyle::kHeading, kItemColumns, {"Item", "File Number", "Received from", "Amount", "By wire"}});
  int items = 0;
  for (int item = 1; item <= kDepositItems; ++item) {
    const DepositItem& one = deposit.items[static_cast<std::size_t>(item) - 1];
    if (one.file_number.empty() && one.amount.IsZero()) continue;
    ++items;
    slip.rows.push_back({PrintStyle::kRow,
                         kItemColumns,
                         {std::to_string(item), one.file_number, one.source, AmountText(one.amount),
                          IsWireIn(deposit, item) ? "X" : ""}});
  }
  const std::string count = std::to_string(items) + (items == 1 ? " item" : " items");
  slip.rows.push_back({PrintStyle::kStrong,
                       kItemColumns,
                       {"", "", "Total, " + count, AmountText(DepositTotal(deposit)), ""}});
  return slip;
}

}  // namespace tallwick
