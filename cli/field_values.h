// Field values on the command line: "FIELD=VALUE", the value written as a person writes it.
#pragma once

#include <string>
#include <vector>

#include "cli/output.h"
#include "maintenance/field_assignment.h"

namespace tallwick::cli {

// Splits each text at its first "=". False after saying which text is none.
bool ParseAssignments(const std::vector<std::string>& texts, std::vector<FieldAssignment>* assignments,
                      Output& out);

}  // namespace tallwick::cli
