#include "maintenance/maintained_table.h"

#include <algorithm>

#include "core/text.h"
#include "shell/company_tables.h"
#include "tables/bank_code.h"
#include "tables/bank_tables.h"

namespace tallwick {
namespace {

struct Spelling {
  const TableLayout* layout;
  std::string_view name;
};

constexpr Spelling kSpellings[] = {{&kBankLayout, "Escrow_Banks"},
                                   {&kXrefLayout, "Escrow_Xrfs"},
                                   {&kNotesLayout, "Escrow_Notes"},
                                   {&kAgentLayout, "Escrow_Agent"},
                                   {&kCheckLayout, "Escrow_Checks_"},
                                   {&kDepositLayout, "Escrow_Deposits_"},
                                   {&kDepositXrefLayout, "Escrow_DepoXRFS_"},
                                   {&kVoucherLayout, "Escrow_Vouchers_"},
                                   {&kWireLayout, "Escrow_Wires_"}};

}  // namespace

std::string MaintainedTable::Name() const {
  return std::string(layout->name) + bank_code;
}

std::string MaintainedTable::Path(const Session& session) const {
  return session.DataPath() + Name() + ".DBF";
}

std::vector<MaintainedTable> CompanyWideTables(WithAgent agent) {
  std::vector<MaintainedTable> tables = {{&kBankLayout, {}}, {&kXrefLayout, {}}, {&kNotesLayout, {}}};
  if (agent == WithAgent::kYes) tables.push_back({&kAgentLayout, {}});
  return tables;
}

std::vector<MaintainedTable> TablesOfBank(std::string_view bank_code) {
  std::vector<MaintainedTable> tables;
  for (const TableLayout* layout :
       {&kCheckLayout, &kDepositLayout, &kDepositXrefLayout, &kVoucherLayout, &kWireLayout})
    tables.push_back({layout, TrimmedBankCode(bank_code)});
  return tables;
}

// In record order and whatever the table lacks: maintenance may be about to mend it.
std::vector<std::string> EveryBankCode(const TableHome& home, bool* whole) {
  std::vector<std::pair<std::string, std::string>> found;  // the key of the order by name, the code
  BankTable banks(home);
  banks.OpenAsItIs({}, false);
  const bool read = banks.ForEachLive([&] {
    const BankRecord bank = banks.Read();
    std::string code = TrimmedBankCode(bank.code);
    const bool known = std::any_of(found.begin(), found.end(),
                                   [&](const auto& one) { return EqualsIgnoreCase(one.second, code); });
    if (!known && IsValidBankCode(code)) found.emplace_back(BankTable::NameKey(bank), std::move(code));
    return true;
  });
  if (whole != nullptr) *whole = read;
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  std::vector<std::string> codes;
  codes.reserve(found.size());
  for (auto& [key, code] : found) codes.push_back(std::move(code));
  return codes;
}

std::vector<MaintainedTable> EveryTable(const TableHome& home, WithAgent agent) {
  std::vector<MaintainedTable> tables = CompanyWideTables(agent);
  for (const std::string& code : EveryBankCode(home)) {
    for (MaintainedTable& table : TablesOfBank(code)) tables.push_back(std::move(table));
  }
  return tables;
}

std::string_view ReportName(const TableLayout& layout) {
  for (const Spelling& spelling : kSpellings) {
    if (spelling.layout == &layout) return spelling.name;
  }
  return layout.name;
}

const TableLayout* LayoutOfTable(std::string_view name) {
  const std::string upper = ToUpper(name);
  for (const Spelling& spelling : kSpellings) {
    const bool fits =
        spelling.layout->per_bank ? upper.starts_with(spelling.layout->name) : upper == spelling.layout->name;
    if (fits) return spelling.layout;
  }
  return nullptr;
}

}  // namespace tallwick
