// Numbers as tables hold them (text, by digits) and as STR shows them.
#pragma once

#include <cstdint>
#include <string_view>

namespace tallwick::engine {

// The number a text begins with, leading blanks skipped: "  12.50", "-3", "+.5", "12AB" (12). Correctly
// rounded. 0 for a text that begins with no number (blank, "****") and for one beyond the range of a double.
double NumberFromText(std::string_view text);

// Writes a number right-aligned with a fixed count of decimals into `width` (at least 1) characters. Halves
// are rounded away from zero, judged by the number's shortest decimal form: 1.005 with 2 decimals is "1.01".
// Zero has no sign. Asterisks when it does not fit.
void FormatNumber(double number, int width, int decimals, std::uint8_t* text);

}  // namespace tallwick::engine
