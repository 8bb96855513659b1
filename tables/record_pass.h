// A pass over all live records of an open table in the order in which they stand, read in large blocks: for
// figures over millions of records.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tables/packed_record.h"

namespace tallwick {

// `done` of `total` records of the table that is being read ("Checks") have been read. False stops the pass.
using PassProgress = std::function<bool(std::string_view what, std::int64_t done, std::int64_t total)>;

enum class PassEnd {
  kDone,
  kStopped,
  kUnreadable,  // after a message: the table is damaged, lacks a field, or holds an amount that is no number
};

// "Record 12 of ESCROW_CHECKS_FNB holds an amount that is no number"
std::string NoNumberText(const TableBase& table, std::int32_t record);

// Reads the amounts of a pass over one table.
class AmountsOfPass {
 public:
  explicit AmountsOfPass(TableBase& table) : table_(table) {}
  Currency In(const PackedField& field, RecordView record, std::int32_t number) {
    const Currency amount = MoneyIn(field.Text(record));
    if (!amount.IsValid() && first_bad_ == 0) first_bad_ = number;
    return amount;
  }
  // How the pass has ended by that: kUnreadable after a message where one was no number.
  PassEnd End(PassEnd end) const;

 private:
  TableBase& table_;
  std::int32_t first_bad_ = 0;
};

// Gets records that lie one behind the other, deleted ones too, each of `length` bytes, and the number of the
// first.
using RunVisit = std::function<void(RecordView run, std::size_t length, std::int32_t number)>;

// `fields` names what the visitor reads; where one is missing nothing is read.
PassEnd PassOverRuns(TableBase& table, const PackedFields& fields, std::string_view what,
                     const PassProgress& progress, const RunVisit& visit);

// The same for single live records; `visit` gets each with its number.
template <class Visit>
PassEnd PassOver(TableBase& table, const PackedFields& fields, std::string_view what,
                 const PassProgress& progress, Visit visit) {
  return PassOverRuns(table, fields, what, progress,
                      [&](RecordView run, std::size_t length, std::int32_t number) {
                        for (std::size_t at = 0; at < run.size(); at += length, ++number) {
                          const RecordView record = run.subspan(at, length);
                          if (IsLive(record)) visit(record, number);
                        }
                      });
}

}  // namespace tallwick
