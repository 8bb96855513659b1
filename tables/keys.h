// Pieces of index keys and stored numbers.
#pragma once

#include <string>
#include <string_view>

#include "core/date.h"

namespace tallwick {

// Upper case by the rule of the index keys, accented letters included.
std::string UpperKey(std::string_view text);

// The text (trailing blanks cut) blank-padded to `width` characters, upper-cased. Longer texts stay as they
// are.
std::string KeyPart(std::string_view text, int width);

// A check or voucher number as it is stored: trimmed; right-aligned in 12 characters when it is made of
// digits.
std::string StoredNumber(std::string_view number);

// A deposit item's reference: date "CCYYMMDD", sequence and item, each right-aligned: "20240315 1 1".
std::string DepositReference(std::string_view dated, std::string_view sequence, int item);

// True for two file numbers that the index takes for the same: case and trailing blanks do not count.
bool SameKey(std::string_view left, std::string_view right);

}  // namespace tallwick
