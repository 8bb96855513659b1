#include "cli/field_values.h"

#include "cli/json_values.h"
#include "core/text.h"

namespace tallwick::cli {

bool ParseAssignments(const std::vector<std::string>& texts, std::vector<FieldAssignment>* assignments,
                      Output& out) {
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
      out.Fail(Quoted(text) + " is no FIELD=VALUE");
      return false;
    }
    assignments->push_back({ToUpper(Trim(text.substr(0, equals))), text.substr(equals + 1)});
  }
  return true;
}

namespace {

// The store reads dates with separators; "20240315" is taken here.
std::string DateText(const std::string& value) {
  if (value.size() != 8 || !IsAllDigits(value)) return value;
  return value.substr(0, 4) + "-" + value.substr(4, 2) + "-" + value.substr(6, 2);
}

}  // namespace

bool Assign(clsKVRData& store, DataHandle data, const std::vector<FieldAssignment>& assignments,
            Output& out) {
  for (const FieldAssignment& assignment : assignments) {
    const FieldHandle field = store.FindField(data, assignment.field);
    if (field == 0) {
      out.Fail(store.DatabaseName(data) + " has no field " + Quoted(assignment.field));
      return false;
    }
    const bool date = store.GetFieldTypeByPointer(data, field) == 'D';
    if (store.SetFieldTextByPointer(data, field, date ? DateText(assignment.value) : assignment.value) != 0) {
      out.Fail(store.LastFieldProblem().text);
      return false;
    }
  }
  return true;
}

}  // namespace tallwick::cli
