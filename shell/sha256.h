// SHA-256 over bytes.
#pragma once

#include <string>
#include <string_view>

namespace tallwick {

// The digest as 64 upper-case hexadecimal digits.
std::string Sha256Hex(std::string_view bytes);

}  // namespace tallwick
