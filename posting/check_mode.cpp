#include "posting/check_mode.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "core/text.h"
#include "posting/file_number.h"
#include "posting/reconciled_rule.h"
#include "shell/rights.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

using Kind = CheckMode::Kind;

// The usual one first.
constexpr CheckMode kModes[] = {
    {Kind::kPosting, kAuditPostCheck, "Posting", "Post Checks - ", "", kRightPostChecks, ""},
    {Kind::kViewing, kAuditPostCheck, "Viewing", "View Checks - ", "", 0, ""},
    {Kind::kClearing, kAuditPostCheck, "Clearing", "Clear Checks - ", "C", kRightClearChecks, "cleared"},
    {Kind::kVoiding, kAuditVoidCheck, "Voiding", "Void Checks - ", "V", kRightVoidChecks, "voided"},
    {Kind::kStopPayment, kAuditPostCheck, "Stop Payment", "Stop Payment - ", "S", kRightVoidChecks,
     "stopped"},
};

std::string NameOf(const CheckRecord& check) {
  return "Check " + check.number;
}

}  // namespace

const CheckMode* FindCheckMode(std::string_view name) {
  const auto* found = std::find_if(std::begin(kModes), std::end(kModes),
                                   [&](const CheckMode& mode) { return name.empty() || mode.name == name; });
  return found == std::end(kModes) ? nullptr : found;
}

const CheckMode& CheckModeOf(CheckMode::Kind kind) {
  return *std::find_if(std::begin(kModes), std::end(kModes),
                       [&](const CheckMode& mode) { return mode.kind == kind; });
}

std::string StatusWord(const CheckRecord& check) {
  return std::string(TrimRight(CheckStatusText(check.status)));
}

std::string StatusRefusal(const CheckRecord& check, std::string_view status, const BankRecord& bank) {
  if (std::string restricted = StatusRestriction(check, bank); !restricted.empty()) return restricted;
  if (status == "O") {
    if (IsOutstanding(check.status)) return NameOf(check) + " is outstanding already.";
    if (!IsVoidFile(check.file_number)) return {};
    return "File Number can NOT be " + Quoted(check.file_number) + " ...";
  }
  const std::string now = StatusWord(check);
  if (check.status == status) return NameOf(check) + " is marked " + Quoted(now) + " already.";
  // A stopped check may be voided for good; any other turn goes by way of outstanding.
  const bool stopped_to_void = check.status == "S" && status == "V";
  if (IsOutstanding(check.status) || stopped_to_void) return {};
  return NameOf(check) + " is marked " + Quoted(now) + ".  Set it outstanding first.";
}

std::string StatementRefusal(std::string_view status, const Period& accounting, const Period& statement) {
  const auto* mode = std::find_if(std::begin(kModes), std::end(kModes), [&](const CheckMode& one) {
    return !one.status.empty() && one.status == status;
  });
  if (mode == std::end(kModes) || MakeKey(statement) >= MakeKey(accounting)) return {};
  return "Check posted to Accounting Period " + ShortForm(accounting) + " can not be " +
         std::string(mode->done) + " in the Statement Period " + ShortForm(statement);
}

std::string RemovalRefusal(const CheckRecord& check, const BankRecord& bank) {
  if (std::string restricted = RestrictionOf(check, bank); !restricted.empty()) return restricted;
  if (check.status != "C") return {};
  return NameOf(check) + " has cleared the bank.  Set it outstanding first.";
}

}  // namespace tallwick
