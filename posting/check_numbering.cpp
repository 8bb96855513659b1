#include "posting/check_numbering.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"
#include "posting/bank_settings.h"
#include "shell/rights.h"
#include "shell/transactions_switch.h"

namespace tallwick {
namespace {

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
    const std::optional<long long> value = NumberValue(stored);
    highest = std::max(highest, value.value_or(0));
    if (value && stored.back() != ' ') break;
  }
  return highest;
}

}  // namespace

std::string CheckNumbering::Label() const {
  if (!last_known) return "Last Check Number: not known";
  if (SettingRules()) return "Next Check Number: " + std::to_string(next_set);
  return "Last Check Number: " + std::to_string(last_posted) +
         (problem.empty() ? "" : " (the next one is not known)");
}

std::string CheckNumbering::Proposal() const {
  return last_known && Next() <= kGreatestNumber ? std::to_string(Next()) : "";
}

CheckNumbering ReadCheckNumbering(CheckTable& checks, FileSystem& files, std::string_view data_path,
                                  std::string_view bank_code) {
  const BankSettings settings(files, data_path, kMicrSettings, bank_code);
  const std::string next = settings.Get(kNextCheckNumber).value_or("");
  const long long highest = HighestPosted(checks);
  return {highest, NumberValue(next).value_or(0), settings.Problem(), !checks.ReadFailed()};
}

std::string SetNextCheckNumber(Session& session, std::string_view number) {
  if (!session.MayUse(kRightPostChecks)) return std::string(kCommandNotGranted);
  if (!TransactionsOpen(session)) return std::string(kTransactionsLocked);
  if (!NumberValue(number)) return Quoted(number) + " is not a check number of digits";
  BankSettings settings(session.Files(), session.DataPath(), kMicrSettings, session.BankCode());
  if (settings.Set(kNextCheckNumber, number)) return {};
  return Quoted(number) + " could not be kept in " + settings.Name() +
         " of the company's data folder.  Make sure that you may read and write it, and that there is room";
}

std::string InventoryWarning(std::string_view number, const BankRecord& bank) {
  const std::optional<long long> value = NumberValue(number);
  const std::optional<long long> low = NumberValue(bank.lowest_check);
  const std::optional<long long> high = NumberValue(bank.highest_check);
  if (!bank.check_inventory || !value || !low || !high) return {};
  if (*value >= *low && *value <= *high) return {};
  return "WARNING - Check Number " + std::string(Trim(number)) +
         (*value < *low ? " is lower" : " is higher") + " than inventory range of " + bank.lowest_check +
         " thru " + bank.highest_check + " ...";
}

std::string GapWarning(std::string_view kind, std::string_view number, long long last) {
  const std::optional<long long> value = NumberValue(number);
  if (!value || *value <= last + 1) return {};
  return "Greater than Last " + std::string(kind) + " Number of " + std::to_string(last) + " by " +
         FormatNumber(*value - last, "##,###,###,###");
}

}  // namespace tallwick
