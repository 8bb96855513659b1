// The store's examination of one table, as problems that name it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "maintenance/verify_problem.h"
#include "store/clsKVRData.h"
#include "tables/table_base.h"

namespace tallwick {

// `name` stands in the problems. A table that cannot be examined is a problem itself.
std::vector<CompanyProblem> VerifyTable(clsKVRData& store, DataHandle data, std::string_view name);

// A table that has not opened, by the code of the open and what it lacks.
CompanyProblem NotOpenedProblem(const FileSystem& files, const TableBase& table, int code);

}  // namespace tallwick
