#include "maintenance/stray_tables.h"

#include <algorithm>
#include <functional>

#include "core/text.h"
#include "maintenance/maintained_table.h"
#include "maintenance/table_measures.h"
#include "tables/bank_code.h"

namespace tallwick {
namespace {

std::vector<StrayTable> FindTables(const TableHome& home,
                                   const std::function<bool(std::string_view code)>& wanted) {
  const std::string folder = WithBackslash(home.folder);
  std::vector<StrayTable> strays;
  for (const std::string& file : home.files.List(folder, "ESCROW_*_*.DBF")) {
    const std::string name(BaseNameOf(file));
    const TableLayout* layout = LayoutOfTable(name);
    if (layout == nullptr || !layout->per_bank) continue;
    const std::string code = name.substr(layout->name.size());
    const std::int64_t records = wanted(code) ? LiveRecordsIn(home.files, folder + file) : 0;
    if (records > 0) strays.push_back({name, code, records});
  }
  return strays;
}

}  // namespace

bool StrayTable::MayBeOfABank() const {
  return IsValidBankCode(bank_code);
}

std::vector<StrayTable> FindStrayTables(const TableHome& home, const std::vector<std::string>& bank_codes) {
  return FindTables(home, [&](std::string_view code) {
    return std::none_of(bank_codes.begin(), bank_codes.end(),
                        [code](const std::string& one) { return EqualsIgnoreCase(one, code); });
  });
}

std::vector<StrayTable> TablesLeftOf(const TableHome& home, std::string_view bank_code) {
  return FindTables(home, [bank_code](std::string_view code) { return EqualsIgnoreCase(code, bank_code); });
}

std::string ListOf(const std::vector<StrayTable>& tables) {
  std::string text;
  for (const StrayTable& table : tables) {
    text += (text.empty() ? "" : ", ") + table.name + " (" + std::to_string(table.records) +
            (table.records == 1 ? " record)" : " records)");
  }
  return text;
}

}  // namespace tallwick
