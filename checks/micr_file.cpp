#include "checks/micr_file.h"

#include <optional>
#include <vector>

#include "core/text.h"
#include "posting/bank_settings.h"
#include "posting/item_number.h"

namespace tallwick {
namespace {

constexpr int kMostDigits = 12;  // of a check number

bool TakeDigits(std::string_view value, MicrSettings& settings) {
  if (!IsAllDigits(value) || value.size() > 2) return false;
  settings.number_digits = std::stoi(std::string(value));
  return settings.number_digits >= 1 && settings.number_digits <= kMostDigits;
}

struct MicrSetting {
  std::string_view name;
  std::string_view wanted;  // as values
  bool (*take)(std::string_view value, MicrSettings& settings);
};
constexpr MicrSetting kSettings[] = {
    {"Font", "the name of an installed font",
     [](std::string_view value, MicrSettings& settings) {
       settings.font = value;
       return true;
     }},
    {"OnUs", "the on-us field, such as {account}C",
     [](std::string_view value, MicrSettings& settings) {
       settings.on_us = value;
       return !value.empty();
     }},
    {"AuxiliaryOnUs", "the auxiliary on-us field, such as C{number}C",
     [](std::string_view value, MicrSettings& settings) {
       settings.auxiliary_on_us = value;
       return true;
     }},
    {"NumberDigits", "a number from 1 to 12", TakeDigits},
    {kNextCheckNumber, "a check number of digits",
     [](std::string_view value, MicrSettings&) { return NumberValue(value).has_value(); }},
};

std::string Problem(const BankSettings& file, MicrSettings& settings) {
  if (std::string problem = file.Problem(); !problem.empty()) return problem;
  std::vector<std::string_view> names;
  for (const MicrSetting& known : kSettings) names.push_back(known.name);
  if (const std::string line = file.UnknownLine(names); !line.empty())
    return "The line " + Quoted(line) + " of " + file.Name() +
           " in the company's data folder is no setting of the MICR line, or a second one of its name.  "
           "Correct it.";
  for (const MicrSetting& known : kSettings) {
    const std::optional<std::string> value = file.Get(known.name);
    if (value && !known.take(*value, settings))
      return "The line " + Quoted(std::string(known.name) + "=" + *value) + " of " + file.Name() +
             " in the company's data folder should be " + std::string(known.wanted) + ".";
  }
  return {};
}

}  // namespace

MicrReading ReadMicrFile(FileSystem& files, std::string_view data_path, std::string_view bank_code) {
  MicrReading reading;
  reading.problem = Problem(BankSettings(files, data_path, kMicrSettings, bank_code), reading.settings);
  return reading;
}

}  // namespace tallwick
