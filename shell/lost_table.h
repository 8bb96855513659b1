// Whether a missing table was there before. An empty table in the place of a lost one would show no money
// where there is some, so it is made only when nothing speaks against it, or when a person wants it.
#pragma once

#include <string>
#include <string_view>

#include "tables/table_base.h"

namespace tallwick {

// What speaks for it, behind "is missing, but ": "it was there: the last copy holds it", or that it can not
// be told; "" for a table that is only now wanted. `table` is its name, as "ESCROW_CHECKS_FNB".
std::string WhyLost(const TableHome& home, std::string_view table);

}  // namespace tallwick
