// The printed reconciliation: both sides row beside row, what cleared on the statement, the three-way proof
// and the escrow files that hold money.
#pragma once

#include <string>
#include <vector>

#include "recon/file_totals.h"
#include "recon/reconciliation.h"
#include "reports/report_document.h"

namespace tallwick {

struct ReconReport {
  std::string bank_code;
  std::string bank_name;
  std::string account_number;
  Period statement;
  Period last;  // the reconciliation before; empty for the first
  ReconEntries entries;
  ReconResults results;
  Currency file_total;
  std::vector<FileBalance> files;  // with a balance other than zero
  bool charges_note = false;       // bank charges or credits are, or may have been, in the balance
  ReportOrigin origin;
};

ReportDocument MakeReconReport(const ReconReport& facts);

// The three-way proof in a sentence: that it holds, or where the three part.
std::string ProofText(const ReconResults& results, Currency file_total);

}  // namespace tallwick
