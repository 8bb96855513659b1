// The tables that the whole company shares, open for the run of the program.
#pragma once

#include <array>

#include "tables/agent_table.h"
#include "tables/bank_table.h"
#include "tables/notes_table.h"
#include "tables/xref_table.h"

namespace tallwick {

struct CompanyTables {
  explicit CompanyTables(const TableHome& home) : banks(home), xrefs(home), notes(home), agent(home) {}

  std::array<TableBase*, 4> All() { return {&banks, &xrefs, &notes, &agent}; }

  BankTable banks;
  XrefTable xrefs;
  NotesTable notes;
  AgentTable agent;
};

}  // namespace tallwick
