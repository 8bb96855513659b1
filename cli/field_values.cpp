#include "cli/field_values.h"

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

}  // namespace tallwick::cli
