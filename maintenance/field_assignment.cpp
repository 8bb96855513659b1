#include "maintenance/field_assignment.h"

#include <algorithm>

#include "core/text.h"

namespace tallwick {
namespace {

// The store reads dates with separators; "20240315" is taken here.
std::string DateText(const std::string& value) {
  if (value.size() != 8 || !IsAllDigits(value)) return value;
  return value.substr(0, 4) + "-" + value.substr(4, 2) + "-" + value.substr(6, 2);
}

}  // namespace

bool Names(const std::vector<FieldAssignment>& assignments, std::string_view field) {
  return std::any_of(assignments.begin(), assignments.end(),
                     [&](const FieldAssignment& assignment) { return assignment.field == field; });
}

std::string AssignFields(clsKVRData& store, DataHandle data,
                         const std::vector<FieldAssignment>& assignments) {
  for (const FieldAssignment& assignment : assignments) {
    const FieldHandle field = store.FindField(data, assignment.field);
    if (field == 0) return store.DatabaseName(data) + " has no field " + Quoted(assignment.field);
    const bool date = store.GetFieldTypeByPointer(data, field) == 'D';
    if (store.SetFieldTextByPointer(data, field, date ? DateText(assignment.value) : assignment.value) != 0)
      return store.LastFieldProblem().text;
  }
  return {};
}

}  // namespace tallwick
