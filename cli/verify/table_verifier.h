// The store's examination of one table, as problems that name it.
#pragma once

#include <string_view>
#include <vector>

#include "cli/verify/problem.h"
#include "store/clsKVRData.h"

namespace tallwick::cli {

// `name` stands in the problems. A table that cannot be examined is a problem itself.
std::vector<Problem> VerifyTable(clsKVRData& store, DataHandle data, std::string_view name);

}  // namespace tallwick::cli
