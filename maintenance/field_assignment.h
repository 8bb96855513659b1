// Fields of a record by name, with values as a person writes them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/clsKVRData.h"

namespace tallwick {

struct FieldAssignment {
  std::string field;  // in capitals
  std::string value;
};

bool Names(const std::vector<FieldAssignment>& assignments, std::string_view field);

// Sets fields of the current record by their type: plain decimals, dates as YYYY-MM-DD, MM/DD/YYYY or
// CCYYMMDD, T or F. "" when all were taken; else why the first value was refused (or that there is no such
// field), and the caller then drops the record's changes.
std::string AssignFields(clsKVRData& store, DataHandle data, const std::vector<FieldAssignment>& assignments);

}  // namespace tallwick
