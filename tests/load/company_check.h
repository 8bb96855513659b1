// A company that nobody works on any more: its tables are whole, hold exactly what was acknowledged, and
// every item and its cross-references find each other.
#pragma once

#include <string>

#include "tests/load/tally.h"
#include "tests/load/workplace.h"

namespace tallwick::load {

// What is wrong, one sentence a line; "" for nothing.
std::string WrongInTables(Workplace& place);
std::string WrongInReferences(Workplace& place);
std::string WrongAgainst(Workplace& place, const Tally& tally);

}  // namespace tallwick::load
