// What stands on the reconcile screen, as data: its texts, which control holds which figure, and which items
// are behind it.
#pragma once

#include <string_view>

#include "recon/recon_items.h"
#include "recon/reconciliation.h"

namespace tallwick {

inline constexpr std::string_view kReconSteps[] = {
    "Step 1.  Post all checks, wire transfers (outgoing only), and deposits.",
    "Step 2.  Clear all checks, wire transfers and deposits that appear on the statement.",
    "Step 3.  Fill in the ending balance, bank charges and credits from the statement.",
    "Step 4.  Click on the Compute button; the computer totals the transactions on file.",
    {"Step 5.  If a zero difference is found then the account is reconciled.  "
     "Use the Preview button to print a reconciliation report."}};

inline constexpr std::string_view kReconBalanced = "Account Balanced to a Zero Difference...";
inline constexpr std::string_view kReconNotBalanced = "Account Not Balanced...";

struct ReconEntryLook {
  std::string_view control;
  std::string_view caption;  // with its mnemonic
  std::string_view label;    // as messages name it
  Currency ReconEntries::*member;
};
inline constexpr ReconEntryLook kReconEntryLooks[] = {
    {"txtBankStatementBalance", "E&nding Balance from Statement", "Ending Balance from Statement",
     &ReconEntries::statement_balance},
    {"txtAdjustmentsinTransit", "Ad&justments in Transit", "Adjustments in Transit",
     &ReconEntries::adjustments},
    {"txtBeginningCheckBookBalance", "&Beginning Check Book Balance", "Beginning Check Book Balance",
     &ReconEntries::beginning_balance},
    {"txtPlusBankCredits", "plus Bank Cre&dits", "Bank Credits", &ReconEntries::credits},
    {"txtLessBankCharges", "less Bank Char&ges", "Bank Charges", &ReconEntries::charges},
};

inline constexpr std::string_view kReasonNeeded = "Enter why it is taken back.";

struct ReconResultLook {
  std::string_view control;
  std::string_view caption;
  Currency ReconResults::*member;
};
inline constexpr ReconResultLook kReconResultLooks[] = {
    {"txtPlusOutstandingDeposits", "plus Outstanding Deposits", &ReconResults::outstanding_deposits},
    {"txtLessOutstandingChecks", "less Outstanding Checks", &ReconResults::outstanding_checks},
    {"txtLessOutstandingWires", "less Outstanding Wire Transfers", &ReconResults::outstanding_wires},
    {"txtAdjustedBalance", "Adjusted Statement Balance", &ReconResults::adjusted_balance},
    {"txtPlusDeposits", "plus Deposits", &ReconResults::deposits},
    {"txtPlusVoidedChecks", "plus Voided Checks", &ReconResults::voided_checks},
    {"txtLessDisbursements", "less Disbursements", &ReconResults::disbursements},
    {"txtEndingCheckBookBalance", "Ending Check Book Balance", &ReconResults::ending_balance},
    {"txtDifferenceBalances", "Difference of", &ReconResults::difference},
    {"txtClearedChecksThisBankStmt", "Cleared Checks", &ReconResults::cleared_checks},
    {"txtClearedWiresThisBankStmt", "Cleared Wire Transfers", &ReconResults::cleared_wires},
    {"txtClearedDepositsThisBankStmt", "Cleared Deposits", &ReconResults::cleared_deposits},
};

// Buttons behind the figures.
inline constexpr ReconList kReconLists[] = {
    {"cmdOutstandingDeposits", "plus Outstanding Deposits", false, false, true, kFigureOutstanding},
    {"cmdOutstandingChecks", "less Outstanding Checks", true, false, false, kFigureOutstanding},
    {"cmdOutstandingWires", "less Outstanding Wire Transfers", false, true, false, kFigureOutstanding},
    {"cmdDeposits", "plus Deposits", false, false, true, kFigureBooked},
    {"cmdVoidedChecks", "plus Voided Checks", true, false, false, kFigureReturned},
    {"cmdDisbursements", "less Disbursements", true, true, false, kFigureBooked},
    {"cmdClearedChecks", "Cleared Checks", true, false, false, kFigureCleared},
    {"cmdClearedWires", "Cleared Wire Transfers", false, true, false, kFigureCleared},
    {"cmdClearedDeposits", "Cleared Deposits", false, false, true, kFigureCleared},
};

}  // namespace tallwick
