#include "checks/layout_file.h"

#include "core/encoding.h"
#include "core/text.h"
#include "posting/bank_settings.h"

namespace tallwick {

LayoutReading ReadLayoutFile(const FileSystem& files, std::string_view data_path, const BankRecord& bank,
                             std::optional<CheckStock> stock) {
  const std::string name = std::string(kCheckLayoutSettings) + std::string(Trim(bank.code)) + ".dat";
  const std::string path = std::string(data_path) + name;
  const std::optional<std::string> text = files.ReadIfThere(path);
  if (!text) return {{}, CannotBeReadText(path)};
  LayoutReading reading = ReadLayout(FromTextFile(*text), bank, stock);
  if (!reading.problem.empty()) {
    reading.problem =
        "The check layout " + name + " in the company's data folder cannot be used.  " + reading.problem;
  }
  return reading;
}

}  // namespace tallwick
