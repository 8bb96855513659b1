// The arithmetic of a bank reconciliation: every check, wire and deposit item of the account is sorted into
// what the bank has seen on the statement and what it has not, and into what the check book gained and lost
// since the last reconciliation. Both sides must meet.
//
// Pure: items are streamed in, in any order; nothing here knows of tables. Dates are compared as period keys
// (see MakeKey). Sums keep four decimals; one that leaves the range becomes Currency::Overflow.
#pragma once

#include <array>
#include <cstdint>

#include "core/currency.h"
#include "core/period.h"

namespace tallwick {

// What the account is reconciled to, and by which rules.
struct ReconTerms {
  Period statement;
  std::int32_t last_key = 0;  // of the last reconciliation; 0 = there was none
  // BANKDTETYP. 0: an item is in the period when its accounting date equals the statement's exactly;
  // 1: when it lies after the last reconciliation and not after the statement.
  std::int32_t date_type = 0;
  // MDYMoStmts, of date type 1: an item cleared in the statement's month counts as cleared on its day.
  bool month_statements = false;
};

enum class ReconKind : std::uint8_t { kCheck, kWire, kDeposit };

// A check, a wire, or one item of a deposit with its deposit's accounting date.
struct ReconItem {
  ReconKind kind = ReconKind::kCheck;
  char status = ' ';  // "H", "O", "C", "V", "S", a blank for none; anything else is no known status
  Currency amount;
  std::int32_t accounting_key = 0;
  Period statement;
};

// Buckets. The numbers are the slots of the accumulators.
enum ReconBucket : std::uint8_t {
  kReconNone = 0,  // posted after the statement date, or an unused deposit item: counts nowhere
  kReconOutstanding = 1,
  kReconCleared = 2,
  kReconVoided = 3,
  kReconStopped = 4,
};

// Where an item counts.
struct ReconPlace {
  ReconBucket bucket = kReconNone;
  ReconBucket period_bucket = kReconNone;  // in the period; kReconNone = not in it
  // Of a voided or stopped check: it was written in the period, so it is a disbursement of the period too.
  bool written_in_period = false;
  bool cleared_here = false;  // cleared on this statement
};

// The figures on the screen that an item is part of, as bits.
enum ReconFigure : std::uint8_t {
  kFigureOutstanding = 1,  // on the bank's side
  kFigureBooked = 2,       // deposits, or disbursements, of the period
  kFigureReturned = 4,     // checks voided or stopped in the period
  kFigureCleared = 8,      // cleared on this statement
};
inline std::uint8_t FiguresOf(const ReconPlace& place) {
  unsigned figures = 0;
  if (place.bucket == kReconOutstanding) figures |= kFigureOutstanding;
  if (place.cleared_here) figures |= kFigureCleared;
  const bool booked = place.period_bucket == kReconOutstanding || place.period_bucket == kReconCleared;
  if (booked || place.written_in_period) figures |= kFigureBooked;
  if (place.period_bucket > kReconCleared) figures |= kFigureReturned;
  return static_cast<std::uint8_t>(figures);
}

// Sums of one kind by bucket, the slots being those of ReconBucket; slot 0 is not used.
struct ReconSums {
  std::array<Currency, 5> by_bucket;
  std::array<Currency, 5> in_period;
  Currency cleared_here;
  std::int64_t cleared_count = 0;
};

// The figures of the statement and of the check book, as a person enters them.
struct ReconEntries {
  Currency statement_balance;
  Currency adjustments;
  Currency beginning_balance;  // of the check book
  Currency credits;
  Currency charges;
  friend bool operator==(const ReconEntries&, const ReconEntries&) = default;
};

struct ReconResults {
  Currency outstanding_deposits;
  Currency outstanding_checks;
  Currency outstanding_wires;
  Currency adjusted_balance;
  Currency deposits;       // of the period
  Currency voided_checks;  // voided or stopped in the period
  Currency disbursements;  // of the period
  Currency ending_balance;
  Currency difference;  // never negative

  Currency cleared_checks;  // on this statement
  Currency cleared_wires;
  Currency cleared_deposits;
  std::int64_t cleared_check_count = 0;
  std::int64_t cleared_wire_count = 0;

  bool IsBalanced() const { return difference.IsZero(); }
  friend bool operator==(const ReconResults&, const ReconResults&) = default;
};

class Reconciliation {
 public:
  explicit Reconciliation(const ReconTerms& terms)
      : terms_(terms), statement_key_(MakeKey(terms.statement)) {}

  // Counts the item and says where.
  ReconPlace Add(const ReconItem& item);

  const ReconTerms& Terms() const { return terms_; }
  const ReconSums& Sums(ReconKind kind) const { return sums_[static_cast<std::size_t>(kind)]; }
  ReconResults ResultsFor(const ReconEntries& entries) const;

 private:
  ReconTerms terms_;
  std::int32_t statement_key_;
  std::array<ReconSums, 3> sums_;
};

// The rules item by item stand here, to be built into the passes over millions of items.
namespace recon_rules {

inline bool IsInPeriod(const ReconTerms& terms, std::int32_t statement_key, std::int32_t key) {
  if (terms.date_type == 0) return key == statement_key;
  return terms.last_key < key && key <= statement_key;
}

// The day on which the item counts as cleared, voided or stopped.
inline std::int32_t ClearedKey(const ReconTerms& terms, const Period& cleared) {
  const bool takes_day = terms.date_type == 1 && terms.month_statements &&
                         cleared.year == terms.statement.year && cleared.month == terms.statement.month;
  return MakeKey(cleared.year, cleared.month, takes_day ? terms.statement.day : cleared.day);
}

// A check or wire whose status is not known has not been seen by the bank, as far as anyone can tell. A wire
// without a status has: an outstanding one is stored as "O". A file's ledger, which calls cleared only what
// says so, shows it as outstanding all the same.
inline ReconBucket BucketOf(ReconKind kind, char status) {
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

}  // namespace recon_rules

inline ReconPlace Reconciliation::Add(const ReconItem& item) {
  const ReconPlace place = recon_rules::PlaceBy(terms_, statement_key_, item);
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

}  // namespace tallwick
