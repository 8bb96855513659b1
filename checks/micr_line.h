// The line at the foot of a check that machines read. Positions count from the right edge: 1 to 12 hold the
// amount, which the bank that takes the check prints; 14 to 31 the on-us field (the account), 33 to 43 the
// routing number between transit symbols, 45 and on the auxiliary on-us field (the check number).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/sheet.h"

namespace tallwick {

inline constexpr double kMicrPitch = 0.125 * kMillimetresPerInch;  // from character to character
// From the check's right edge to that of position 1.
inline constexpr double kMicrRightMargin = 0.3125 * kMillimetresPerInch;
// At the foot of the check, for nothing but the line.
inline constexpr double kMicrClearBand = 0.625 * kMillimetresPerInch;
// From the check's lower edge to that of the characters: in the middle of the band from 3/16 to 7/16 inch.
inline constexpr double kMicrBaseline = 0.254 * kMillimetresPerInch;

// How a bank wants its line. In the texts "{account}" and "{number}" stand for the account and the check
// number, A to D for the symbols (micr_glyphs.h).
struct MicrSettings {
  std::string font;  // an installed font that draws the line; "" = the program's own characters
  std::string on_us = "{account}C";
  std::string auxiliary_on_us = "C{number}C";
  int number_digits = 6;  // shorter check numbers get leading zeros
};

struct MicrCharacter {
  int position = 1;
  char code = '0';
  friend bool operator==(const MicrCharacter&, const MicrCharacter&) = default;
};

struct MicrLine {
  std::vector<MicrCharacter> characters;  // from the left to the right
  std::string problem;                    // why there is no line, and what to do; "" when there is one
};

MicrLine MakeMicrLine(std::string_view routing, std::string_view account, std::string_view check_number,
                      const MicrSettings& settings);

// Puts the line on a page. `right` and `bottom` are the edges of the check.
void PlaceMicrLine(const MicrLine& line, const MicrSettings& settings, double right, double bottom,
                   SheetPage& page);

}  // namespace tallwick
