#include "posting/deposit_slip.h"

#include "core/text.h"
#include "core/text_format.h"
#include "posting/deposit_facts.h"
#include "posting/entry_problems.h"

namespace tallwick {
namespace {

// Twips; the whole fits between the margins of letter paper.
constexpr const char* kItemColumns = "^+700|<+2100|<+4800|>+1800|^+1000";
constexpr const char* kAccountColumns = "<+2000|<+8400";

PrintSection ItemsOf(const DepositRecord& deposit) {
  PrintSection section;
  section.heading = {
      {PrintStyle::kHeading, kItemColumns, {"Item", "File Number", "Received from", "Amount", "By wire"}}};
  int items = 0;
  for (int item = 1; item <= kDepositItems; ++item) {
    const DepositItem& one = deposit.items[static_cast<std::size_t>(item) - 1];
    if (!IsUsed(one)) continue;
    ++items;
    section.rows.push_back({PrintStyle::kRow,
                            kItemColumns,
                            {std::to_string(item), one.file_number, one.source, AmountText(one.amount),
                             IsWireIn(deposit, item) ? "X" : ""}});
  }
  const std::string count = std::to_string(items) + (items == 1 ? " item" : " items");
  section.rows.push_back(
      {PrintStyle::kTotal, kItemColumns, {"", "", "Total, " + count, AmountText(DepositTotal(deposit)), ""}});
  return section;
}

}  // namespace

PrintDocument MakeDepositSlip(std::string_view company, const BankRecord& bank,
                              const DepositRecord& deposit) {
  PrintDocument slip;
  const Date date = ParseStoredDate(deposit.dated).value_or(Date{});
  slip.name = "Deposit " + bank.code + " " + FormatDate(date, "yyyy-mm-dd") + " " + deposit.sequence;
  slip.footer = std::string(company);
  PrintSection& account = slip.sections.emplace_back();
  account.rows.push_back({PrintStyle::kTitle, "", {"Deposit Slip"}});
  const auto say = [&](const char* name, const std::string& value) {
    if (!value.empty()) account.rows.push_back({PrintStyle::kText, kAccountColumns, {name, value}});
  };
  say("Depositor", slip.footer);
  say("Bank", bank.name);
  say("", bank.address1);
  say("", bank.address2);
  say("", bank.city_state);
  say("Account No.", bank.account_number);
  say("Date", FormatDate(date, "mmmm d, yyyy"));
  say("Deposit", DepositName(deposit.dated, deposit.sequence));
  account.rows.push_back({PrintStyle::kText, "", {""}});
  slip.sections.push_back(ItemsOf(deposit));
  return slip;
}

}  // namespace tallwick
