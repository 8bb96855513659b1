#include "recon/reconciliation.h"

namespace tallwick {

ReconResults Reconciliation::ResultsFor(const ReconEntries& entries) const {
  const ReconSums& checks = Sums(ReconKind::kCheck);
  const ReconSums& wires = Sums(ReconKind::kWire);
  const ReconSums& deposits = Sums(ReconKind::kDeposit);
  const auto booked = [](const ReconSums& sums) {
    return sums.in_period[kReconOutstanding] + sums.in_period[kReconCleared];
  };
  ReconResults results;
  results.outstanding_deposits = deposits.by_bucket[kReconOutstanding];
  results.outstanding_checks = checks.by_bucket[kReconOutstanding];
  results.outstanding_wires = wires.by_bucket[kReconOutstanding];
  results.adjusted_balance = entries.statement_balance + results.outstanding_deposits -
                             (results.outstanding_checks + results.outstanding_wires) + entries.adjustments;
  results.deposits = booked(deposits);
  results.voided_checks = checks.in_period[kReconVoided] + checks.in_period[kReconStopped];
  results.disbursements = booked(checks) + booked(wires);
  results.ending_balance = entries.beginning_balance + (results.deposits + results.voided_checks) -
                           results.disbursements + entries.credits - entries.charges;
  results.difference = (results.ending_balance - results.adjusted_balance).Abs();
  results.cleared_checks = checks.cleared_here;
  results.cleared_check_count = checks.cleared_count;
  results.cleared_wires = wires.cleared_here;
  results.cleared_wire_count = wires.cleared_count;
  results.cleared_deposits = deposits.cleared_here;
  return results;
}

}  // namespace tallwick
