// What an open table lacks of what the program needs of it. A walk along a tag that is not there would end at
// once, as in an empty table, and a field that is not there would read as 0 or blank.
#pragma once

#include <span>
#include <string>

#include "store/clsKVRData.h"
#include "tables/layout.h"

namespace tallwick {

struct TableLack {
  // engine::kErrorFieldName, engine::kErrorTagName, engine::kErrorIndexMissing for a table without any index,
  // or 0 for nothing.
  int code = 0;
  std::string text;  // "It lacks the field WIREAMOUNT"; "" for nothing

  explicit operator bool() const { return code != 0; }
};

// What to do about a table that lacks a field.
inline constexpr std::string_view kFieldAdvice =
    "Update Database Versions adds it, empty, where the table is of an older program.  Where it has been "
    "lost, "
    "restore the table from a copy.";

// The first of the tags that the table lacks. An index file beside a table that does not say it has one
// counts for nothing: it may be of another time.
TableLack FindMissingTag(clsKVRData& data, DataHandle table, std::span<const TagLayout> tags);

// The first field of the layout that the table lacks, or else the first tag.
TableLack FindLack(clsKVRData& data, DataHandle table, const TableLayout& layout);

}  // namespace tallwick
