// A pass over all live records of an open table in the order in which they stand, read in large blocks: for
// figures over millions of records.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "tables/packed_record.h"

namespace tallwick {

// `done` of `total` records of the table that is being read ("Checks") have been read. False stops the pass.
using PassProgress = std::function<bool(std::string_view what, std::int64_t done, std::int64_t total)>;

enum class PassEnd {
  kDone,
  kStopped,
  kUnreadable,  // after a message: the table is damaged, or lacks a field
};

// Gets a record and its number.
using RecordVisit = std::function<void(RecordView record, std::int32_t number)>;

// `fields` names what the visitor reads; where one is missing nothing is read.
PassEnd PassOver(TableBase& table, const PackedFields& fields, std::string_view what,
                 const PassProgress& progress, const RecordVisit& visit);

}  // namespace tallwick
