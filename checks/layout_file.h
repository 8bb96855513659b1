// The check layout of a bank as the office keeps it, in "Check_Print_<bank>.dat" of the company's data
// folder.
#pragma once

#include <optional>
#include <string_view>

#include "checks/check_layout.h"
#include "core/file_system.h"

namespace tallwick {

// The stock's own layout where the office has no file. The problem names the file: a line of it is wrong, or
// it is there and cannot be read. `data_path` ends with "\".
LayoutReading ReadLayoutFile(const FileSystem& files, std::string_view data_path, const BankRecord& bank,
                             std::optional<CheckStock> stock = std::nullopt);

}  // namespace tallwick
