// A check's amount in words.
#pragma once

#include <string>
#include <string_view>

#include "core/currency.h"

namespace tallwick {

// The words line of a check: "One Thousand Two Hundred Thirty Four dollars & Fifty Six cents " (the trailing
// blank belongs to it); "Zero dollars and no cents" for zero. Below one dollar no number stands before
// " dollars"; from 16 characters of dollars on (sign included) neither. An overflow gives "". Never fails.
std::string AmountInWords(Currency amount);

// The integer part of a decimal figure in words, "" when it has more than 15 characters. Never fails.
std::string NumberToWords(std::string_view text);

}  // namespace tallwick
