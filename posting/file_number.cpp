#include "posting/file_number.h"

#include "core/text.h"
#include "posting/entry_problems.h"
#include "shell/company_tables.h"

namespace tallwick {

bool IsOnFile(Session& session, std::string_view file_number) {
  const std::string_view file = Trim(file_number);
  if (session.TheSuite().KnowsFile(file).value_or(false)) return true;
  return !session.Company().xrefs.LookUpFile(file).banks.empty();
}

bool CanBeFile(std::string_view file_number) {
  return TextProblem("File Number", file_number, WidthOf(kXrefLayout, "XRFSFILENO")).empty();
}

bool IsVoidFile(std::string_view file_number) {
  return EqualsIgnoreCase(Trim(file_number), "VOID");
}

}  // namespace tallwick
