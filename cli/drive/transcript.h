// The words in which a drive transcript tells what a step caused.
#pragma once

#include <string>
#include <string_view>

#include "cli/boxes.h"
#include "core/form.h"

namespace tallwick::cli {

// A text in double quotes with \r, \n, \" and \\ for what cannot stand in a line.
std::string QuotedText(std::string_view text);
// box critical "TITLE" "TEXT" -> OK
std::string BoxLine(const ShownBox& shown);
// Rows of a list or a grid.
std::size_t RowCount(const Control& control);
// cmdOk = "P&ost Check" (disabled): value or caption, then the states that are out of the ordinary. A check
// box or an option tells whether it is checked, a list how many rows it has, a grid only that.
std::string ControlLine(const Control& control);
// Row `row` (from 1) of a list or a grid: lstBankNames(1) = "First   (1)", a grid's cells parted by " | ".
std::string RowLine(const Control& control, int row);

}  // namespace tallwick::cli
