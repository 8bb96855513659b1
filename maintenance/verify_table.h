// The store's examination of one table, as problems that name it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "maintenance/verify_problem.h"
#include "store/clsKVRData.h"

namespace tallwick {

// `name` stands in the problems. A table that cannot be examined is a problem itself.
std::vector<CompanyProblem> VerifyTable(clsKVRData& store, DataHandle data, std::string_view name);

// A table that does not open, by the engine's code. `path` is its data file's.
CompanyProblem NotOpenedProblem(const FileSystem& files, const std::string& path, std::string_view name,
                                int code);

}  // namespace tallwick
