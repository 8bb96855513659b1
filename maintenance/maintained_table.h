// The tables that maintenance goes through, in its order, and the names under which reports show them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/session.h"
#include "tables/layout.h"

namespace tallwick {

struct MaintainedTable {
  const TableLayout* layout = nullptr;
  std::string bank_code;  // trimmed; "" for a table of the whole company

  std::string Name() const;  // "ESCROW_CHECKS_FNB"
  std::string Path(const Session& session) const;
};

// Whether a walk takes the agent's table, whose layout may change, but which has no index and nothing to
// pack.
enum class WithAgent { kNo, kYes };

// Banks, cross-references and notes, and the agent.
std::vector<MaintainedTable> CompanyWideTables(WithAgent agent);
// A bank's checks, deposits, deposit cross-references, vouchers and wires.
std::vector<MaintainedTable> TablesOfBank(std::string_view bank_code);
// Codes of every bank, active or not, by name; those that can name no table are left out. `whole` says
// whether the banks' table could be read to its end; where not, some may be missing.
std::vector<std::string> EveryBankCode(const TableHome& home, bool* whole = nullptr);

// All of them, in the order in which maintenance goes through them.
std::vector<MaintainedTable> EveryTable(const TableHome& home, WithAgent agent);

// How reports spell a table: "Escrow_Banks"; of a bank's table the prefix, "Escrow_Checks_".
std::string_view ReportName(const TableLayout& layout);
// The layout of a table by its file's name without extension; null for a table that is not ours.
const TableLayout* LayoutOfTable(std::string_view name);

}  // namespace tallwick
