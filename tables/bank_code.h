// Bank codes name tables and folders, so they must be harmless as part of a file name on every platform.
#pragma once

#include <string>
#include <string_view>

namespace tallwick {

// Cut to what is joined to names: without blanks around it.
std::string TrimmedBankCode(std::string_view code);

// "" for a code that may be used; else a sentence that says what is wrong with it and what would do.
std::string BankCodeProblem(std::string_view code);
bool IsValidBankCode(std::string_view code);

}  // namespace tallwick
