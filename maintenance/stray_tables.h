// Tables of bank accounts whose bank is not in the bank table: of a bank that was made after the copy that
// has been restored, for one. A new bank with their code would take them for its own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tables/table_base.h"

namespace tallwick {

struct StrayTable {
  std::string name;       // "ESCROW_CHECKS_NEW"
  std::string bank_code;  // "NEW"
  std::int64_t records = 0;

  // False for a code that no bank can have, as of a copy "ESCROW_CHECKS_NEW - Copy".
  bool MayBeOfABank() const;
};

// Those that hold records, of banks that are not among these (trimmed codes).
std::vector<StrayTable> FindStrayTables(const TableHome& home, const std::vector<std::string>& bank_codes);
// Tables with records that a new bank with this code would find.
std::vector<StrayTable> TablesLeftOf(const TableHome& home, std::string_view bank_code);

// "ESCROW_CHECKS_NEW (3 records), ESCROW_WIRES_NEW (1 record)".
std::string ListOf(const std::vector<StrayTable>& tables);

}  // namespace tallwick
