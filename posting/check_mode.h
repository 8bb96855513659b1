// The modes of the check screen, as data: what each is called, what it needs, and the status that it gives.
#pragma once

#include <string>
#include <string_view>

#include "tables/bank_table.h"
#include "tables/check_table.h"

namespace tallwick {

struct CheckMode {
  enum class Kind { kPosting, kViewing, kClearing, kVoiding, kStopPayment };
  Kind kind;
  int audit_tx;              // the audit trail's transaction of the change of status
  std::string_view name;     // as the screen is opened: "Stop Payment"
  std::string_view caption;  // before the bank's name
  std::string_view status;   // that cmdOk gives to a posted check; "" where it changes none
  int right;                 // 0 = none
  std::string_view done;     // to a check that gets the status: "cleared"
};

// The mode of this name; the usual one for "". Null for an unknown name.
const CheckMode* FindCheckMode(std::string_view name);
const CheckMode& CheckModeOf(CheckMode::Kind kind);

// "Cleared", without the blank that the display text of a status may end with.
std::string StatusWord(const CheckRecord& check);

// Why the check cannot be given the status "C", "V", "S" or "O"; "" when it can.
std::string StatusRefusal(const CheckRecord& check, std::string_view status, const BankRecord& bank);

// Why a check that is posted to `accounting` cannot count as `status` ("C", "V" or "S") on the statement of an
// earlier period, which no reconciliation could then meet; "" when it can, and for any other status.
std::string StatementRefusal(std::string_view status, const Period& accounting, const Period& statement);

// Why the check cannot be removed or renumbered; "" when it can.
std::string RemovalRefusal(const CheckRecord& check, const BankRecord& bank);

}  // namespace tallwick
