#include "recon/reconciliation.h"

namespace tallwick {
namespace {

bool IsInPeriod(const ReconTerms& terms, std::int32_t statement_key, std::int32_t key) {
  if (terms.date_type == 0) return key == statement_key;
  return terms.last_key < key && key <= statement_key;
}

// The day on which the item counts as cleared, voided or stopped.
std::int32_t ClearedKey(const ReconTerms& terms, const Period& cleared) {
  const bool takes_day = terms.date_type == 1 && terms.month_statements &&
                         cleared.year == terms.statement.year && cleared.month == terms.statement.month;
  return MakeKey(cleared.year, cleared.month, takes_day ? terms.statement.day : cleared.day);
}

// A check or wire whose status is not known has not been seen by the bank, as far as anyone can tell.
ReconBucket BucketOf(ReconKind kind, char status) {
  if (kind == ReconKind::kDeposit) {
    return status == 'O' ? kReconOutstanding : status == 'C' ? kReconCleared : kReconNone;
  }
  if (status == 'C') return kReconCleared;
  if (kind == ReconKind::kWire) return status == ' ' ? kReconCleared : kReconOutstanding;
  return status == 'V' ? kReconVoided : status == 'S' ? kReconStopped : kReconOutstanding;
}

inline ReconPlace PlaceBy(const ReconTerms& terms, std::int32_t statement_key, const ReconItem& item) {
  ReconPlace place;
  if (item.accounting_key > statement_key) return place;
  place.bucket = BucketOf(item.kind, item.status);
  if (place.bucket == kReconNone) return place;

  const std::int32_t cleared_key = ClearedKey(terms, item.statement);
  // What happens after the statement date has not happened yet: such a check still stands, voided or not.
  if (cleared_key > statement_key) place.bucket = kReconOutstanding;
  place.cleared_here = place.bucket == kReconCleared && cleared_key == statement_key;
  bool in_period = IsInPeriod(terms, statement_key, item.accounting_key);
  if (place.bucket == kReconVoided || place.bucket == kReconStopped) {
    place.written_in_period = in_period;
    in_period = IsInPeriod(terms, statement_key, cleared_key);
  }
  if (in_period) place.period_bucket = place.bucket;
  return place;
}

}  // namespace

ReconPlace PlaceOf(const ReconTerms& terms, const ReconItem& item) {
  return PlaceBy(terms, MakeKey(terms.statement), item);
}

ReconPlace Reconciliation::Add(const ReconItem& item) {
  const ReconPlace place = PlaceBy(terms_, statement_key_, item);
  if (place.bucket == kReconNone) return place;
  ReconSums& sums = sums_[static_cast<std::size_t>(item.kind)];
  sums.by_bucket[place.bucket] += item.amount;
  if (place.cleared_here) {
    sums.cleared_here += item.amount;
    ++sums.cleared_count;
  }
  if (place.written_in_period) sums.in_period[kReconOutstanding] += item.amount;
  if (place.period_bucket != kReconNone) sums.in_period[place.period_bucket] += item.amount;
  return place;
}

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
