#include "posting/check_numbering.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"
#include "posting/bank_settings.h"

namespace tallwick {
namespace {

constexpr int kNumberWidth = 12;

// Numbers that another program stored left-aligned, and those with letters, stand behind the right-aligned
// ones. That many of them are looked through for a higher one before the search is given up.
constexpr int kMostStrays = 1000;

long long HighestPosted(CheckTable& checks) {
  const FieldHandle field = checks.Field("CHXNUMBER");
  long long highest = 0;
  int looked_at = 0;
  for (bool on = checks.Bottom("CHXNUMBER"); on && looked_at < kMostStrays;
       on = checks.Skip(-1), ++looked_at) {
    const std::string stored = checks.Data().GetStringFieldRawValueByPointer(checks.Handle(), field);
    const std::optional<long long> value = CheckNumberValue(stored);
    highest = std::max(highest, value.value_or(0));
    if (value && stored.back() != ' ') break;
  }
  return highest;
}

}  // namespace

std::string CheckNumbering::Label() const {
  if (SettingRules()) return "Next Check Number: " + std::to_string(next_set);
  return "Last Check Number: " + std::to_string(last_posted) +
         (problem.empty() ? "" : " (the next one is not known)");
}

std::optional<long long> CheckNumberValue(std::string_view number) {
  number = Trim(number);
  if (!IsAllDigits(number) || number.size() > kNumberWidth) return std::nullopt;
  long long value = 0;
  for (char digit : number) value = value * 10 + (digit - '0');
  return value;
}

CheckNumbering ReadCheckNumbering(CheckTable& checks, FileSystem& files, std::string_view data_path,
                                  std::string_view bank_code) {
  const BankSettings settings(files, data_path, kMicrSettings, bank_code);
  const std::string next = settings.Get(kNextCheckNumber).value_or("");
  return {HighestPosted(checks), CheckNumberValue(next).value_or(0), settings.Problem()};
}

std::string InventoryWarning(std::string_view number, const BankRecord& bank) {
  const std::optional<long long> value = CheckNumberValue(number);
  const std::optional<long long> low = CheckNumberValue(bank.lowest_check);
  const std::optional<long long> high = CheckNumberValue(bank.highest_check);
  if (!bank.check_inventory || !value || !low || !high) return {};
  if (*value >= *low && *value <= *high) return {};
  return "WARNING - Check Number " + std::string(Trim(number)) +
         (*value < *low ? " is lower" : " is higher") + " than inventory range of " + bank.lowest_check +
         " thru " + bank.highest_check + " ...";
}

std::string GapWarning(std::string_view number, long long last) {
  const std::optional<long long> value = CheckNumberValue(number);
  if (!value || *value <= last + 1) return {};
  return "Greater than Last Check Number of " + std::to_string(last) + " by " +
         FormatNumber(*value - last, "##,###,###,###");
}

}  // namespace tallwick
