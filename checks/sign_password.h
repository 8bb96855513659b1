// The password that is asked for before checks of a bank are printed. The line "SignPassword=" of the bank's
// check layout holds its digest; where there is none, nothing is asked.
#pragma once

#include <string>
#include <string_view>

#include "shell/session.h"

namespace tallwick {

// SHA-256 of the bank code in upper case, a colon and the password, as 64 hexadecimal digits.
std::string SignPasswordDigest(std::string_view bank_code, std::string_view password);

// Writes the line into the bank's layout; "" takes it out. Asks for the administrator's right. False after a
// message.
bool SetSignPassword(Session& session, std::string_view bank_code, std::string_view password);

}  // namespace tallwick
