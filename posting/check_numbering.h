// Numbers of new checks: the last one posted, the next one to propose, and what to warn of.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/file_system.h"
#include "posting/item_number.h"
#include "shell/session.h"
#include "tables/bank_table.h"
#include "tables/check_table.h"

namespace tallwick {

// What the proposal and the warnings start from.
struct CheckNumbering {
  long long last_posted = 0;  // the highest number posted; 0 = none
  long long next_set = 0;     // the bank's next-check-number setting; 0 = none
  std::string problem{};      // why the setting is not known; "" when it is
  bool last_known = true;     // false where the checks could not be read: nothing can be proposed then

  bool SettingRules() const { return next_set > last_posted; }
  // The number that counts as the last one.
  long long Last() const { return SettingRules() ? next_set - 1 : last_posted; }
  long long Next() const { return Last() + 1; }
  // The next number as it is proposed; "" where it is not known, or would have more digits than a number can.
  std::string Proposal() const;
  // "Last Check Number: 10451" or "Next Check Number: 10460"; it says so when the setting is not known.
  std::string Label() const;
};

// Reads both facts of a bank: from its open check table, and from its MICR settings in the data path.
CheckNumbering ReadCheckNumbering(CheckTable& checks, FileSystem& files, std::string_view data_path,
                                  std::string_view bank_code);

// Sets the number that the next check of the session's selected bank gets. Why it was not set; "" when it
// was.
std::string SetNextCheckNumber(Session& session, std::string_view number);

// The warning for a number outside the stock that the bank's inventory range names; "" when there is none, or
// the range is not in force.
std::string InventoryWarning(std::string_view number, const BankRecord& bank);

// "Greater than Last Check Number of 10451 by 49" for a number that leaves a gap; "" for any other. `kind`:
// "Check" or "Voucher".
std::string GapWarning(std::string_view kind, std::string_view number, long long last);

}  // namespace tallwick
