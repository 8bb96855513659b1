// The fourteen characters of the E-13B type, as cells of the standard's grid.
//
// A character is up to 7 cells wide and 9 high; a cell is 0.013 inch. Narrow ones stand at the right edge of
// their grid, as characters are placed and read from the right. Symbols go by the letters that E-13B fonts
// give them: A transit, B amount, C on-us, D dash.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "core/sheet.h"

namespace tallwick {

inline constexpr double kMicrCell = 0.013 * kMillimetresPerInch;
inline constexpr int kMicrColumns = 7;
inline constexpr int kMicrRows = 9;

// "#" is ink. Null for a character that the type does not have.
const std::array<std::string_view, kMicrRows>* MicrGlyph(char code);

// The ink as bars that overlap, so that no seam shows between them. `right` and `baseline` are the grid's
// lower right corner in millimetres.
std::vector<SheetRect> MicrBars(char code, double right, double baseline);

}  // namespace tallwick
