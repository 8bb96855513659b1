// What the check screen lets enter: a check that the bank has paid, or whose period or status has been
// reconciled, keeps what stands on the statement.
#include <algorithm>

#include "posting/check_posting.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

// Entries that a reconciled period closes, and the bank's payment of the check.
constexpr std::string_view kRestricted[] = {"txtCheckDated",         "txtCheckAmount",
                                            "txtCheckFileNumber",    "txtCheckAcctPeriod",
                                            "txtCheckVoucherNumber", "chkHandwritten"};
// Entries that are closed once the bank has paid the check, or its void or stop has been reconciled.
constexpr std::string_view kOfPayee[] = {"txtCheckPayee", "txtCheckAddr1", "txtCheckAddr2",
                                         "txtCheckCityState"};

bool IsAmong(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::string FrmEditChecksPost::WhatIsClosed() const {
  if (!loaded_) return {};
  if (std::string restriction = RestrictionOf(*loaded_, bank_); !restriction.empty()) return restriction;
  if (loaded_->status != "C" || !Is(CheckMode::Kind::kPosting)) return {};
  return "Check " + loaded_->number +
         " has cleared the bank.\r\nSet it outstanding to change what was paid, to whom, and for which file.";
}

void FrmEditChecksPost::ShowWhatMayBeEntered() {
  const bool restricted = loaded_ && (loaded_->status == "C" || !RestrictionOf(*loaded_, bank_).empty());
  if (!renumbering_) SetCaption("lblEditMessage", WhatIsClosed());
  for (const Control& control : Controls()) {
    const bool beside = control.name == "txtRemittanceAdvice" || control.name == "txtCheckStmtPeriod" ||
                        control.name == "txtCheckReason";
    if (IsEntry(control) || beside) {
      SetEnabled(control.name, MayEnter(control, restricted));
    }
  }
  SetEnabled("cmdOk", !Is(CheckMode::Kind::kViewing));
  SetEnabled("cmdRolodex", At("txtCheckPayee").enabled);
  SetEnabled("cmdCalendar", At("txtCheckDated").enabled);
  const bool prints = ports_.printer != nullptr && ports_.printer->WhyNot().empty();
  SetEnabled("cmdPrint", prints && Is(CheckMode::Kind::kPosting));
  SetEnabled("mnuFilePrint", At("cmdPrint").enabled);
  SetEnabled("mnuEditRenumberCheck", Is(CheckMode::Kind::kPosting));
  SetEnabled("mnuEditRemoveCheck", Is(CheckMode::Kind::kPosting));
}

bool FrmEditChecksPost::MayEnter(const Control& control, bool restricted) const {
  if (control.name == "txtCheckStmtPeriod" || control.name == "txtCheckReason") return SetsStatus();
  const bool new_void = Is(CheckMode::Kind::kVoiding) && !loaded_ && EntersNew();
  if (!Is(CheckMode::Kind::kPosting)) return new_void && control.name != "chkHandwritten";
  if (control.name == "chkHandwritten" && loaded_ && !IsOutstanding(loaded_->status)) return false;
  if (IsAmong(kOfPayee, control.name) && loaded_) {
    return loaded_->status != "C" && StatusRestriction(*loaded_, bank_).empty();
  }
  return !(restricted && IsAmong(kRestricted, control.name));
}

}  // namespace tallwick
