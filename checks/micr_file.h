// How a bank wants its MICR line, as the office keeps it in "MICR_Print_<bank>.dat" of the company's data
// folder.
#pragma once

#include <string>
#include <string_view>

#include "checks/micr_line.h"
#include "core/file_system.h"

namespace tallwick {

struct MicrReading {
  MicrSettings settings;
  std::string problem;  // why the settings are not known, in words for a person; "" when they are
};

// The program's own where the office has no file. A line that is no known setting is a problem: passed over,
// it would put another line on the checks than the bank wants. `data_path` ends with "\".
MicrReading ReadMicrFile(FileSystem& files, std::string_view data_path, std::string_view bank_code);

}  // namespace tallwick
