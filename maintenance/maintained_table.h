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

// Banks, cross-references and notes.
std::vector<MaintainedTable> CompanyWideTables();
// A bank's checks, deposits, deposit cross-references, vouchers and wires.
std::vector<MaintainedTable> TablesOfBank(std::string_view bank_code);
// Codes of every bank, active or not, in the order of their records; those that can name no table are left
// out.
std::vector<std::string> EveryBankCode(const Session& session);

// All of them, in the order in which maintenance goes through them.
std::vector<MaintainedTable> EveryMaintainedTable(const Session& session);
// The same with the agent's table, which has no index and needs no maintenance.
std::vector<MaintainedTable> EveryTable(const Session& session);

// How reports spell a table: "Escrow_Banks"; of a bank's table the prefix, "Escrow_Checks_".
std::string_view ReportName(const TableLayout& layout);
// The layout of a table by its file's name without extension; null for a table that is not ours.
const TableLayout* LayoutOfTable(std::string_view name);

}  // namespace tallwick
