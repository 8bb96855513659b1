// Field values on the command line: "FIELD=VALUE", the value written as a person writes it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/output.h"
#include "store/clsKVRData.h"

namespace tallwick::cli {

struct FieldAssignment {
  std::string field;
  std::string value;
};

// Splits each text at its first "=". False after saying which text is none.
bool ParseAssignments(const std::vector<std::string>& texts, std::vector<FieldAssignment>* assignments,
                      Output& out);

// Sets fields of the current record by their type: plain decimals, dates as YYYY-MM-DD, MM/DD/YYYY or
// CCYYMMDD, T or F. At the first value that its field refuses (or the first unknown field) it says so and
// gives false; the caller then drops the record's changes.
bool Assign(clsKVRData& store, DataHandle data, const std::vector<FieldAssignment>& assignments, Output& out);

}  // namespace tallwick::cli
