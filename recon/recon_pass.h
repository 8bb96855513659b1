// The passes of a reconciliation over a bank's tables: checks, wires, deposits, each from the first record to
// the last, read in large blocks, with only the needed fields decoded. Beside the figures they give the items
// that each figure is made of, and what every escrow file holds on the statement date.
//
// What a file holds: its deposit items, less its wires and its checks, items posted after the statement date
// left out; a check voided or stopped by then has come back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "recon/file_totals.h"
#include "recon/reconciliation.h"
#include "tables/bank_tables.h"
#include "tables/record_pass.h"

namespace tallwick {

// An item that is part of at least one figure.
struct ReconEntry {
  std::int32_t record = 0;  // in its table
  ReconKind kind = ReconKind::kCheck;
  std::uint8_t item = 0;     // of a deposit, 1 to 15
  std::uint8_t figures = 0;  // ReconFigure bits
  Currency amount;
};

struct ReconFindings {
  explicit ReconFindings(const ReconTerms& terms) : recon(terms) {}

  Reconciliation recon;
  std::vector<ReconEntry> entries;  // in the order of the passes
  FileTotals files;
  std::int64_t records = 0;  // live ones, of all three tables
};

// Adds everything in the bank's open tables to `findings`. Findings of passes that were not done say nothing.
PassEnd RunReconPasses(BankTables& tables, const PassProgress& progress, ReconFindings& findings);

}  // namespace tallwick
