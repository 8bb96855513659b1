#include "posting/wire_posting.h"

#include <algorithm>
#include <iterator>

#include "posting/file_number.h"
#include "posting/post_wire.h"
#include "posting/wire_register.h"
#include "posting/wire_validation.h"
#include "shell/company_tables.h"
#include "shell/rights.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr PostingScreen kScreen{
    "frmEditWiresPost", "Post Wire Transfers - ", "Bank ID Code no longer valid.", kAuditPostWire,
    kRightWires,        "lblWireStatus"};

constexpr EntryField<WireRecord> kFields[] = {
    {"txtWireNumber", ControlKind::kText, "Confir&mation Number", "Wire Confirmation", "WIRENUMBER",
     &WireRecord::number},
    {"txtWireDated", ControlKind::kDate, "&Dated", "Wire Date", "WIREDATED", &WireRecord::dated},
    {"txtWirePayee", ControlKind::kCombo, "&Payee", "Payee", "WIREPAYEE", &WireRecord::payee},
    {"txtWireAmount", ControlKind::kAmount, "&Amount", "Wire Amount", "WIREAMOUNT", &WireRecord::amount},
    {"txtWireFileNumber", ControlKind::kText, "File Num&ber", "File Number", "WIREFILENO",
     &WireRecord::file_number},
    {"txtWireControl", ControlKind::kText, "&Control", "Control Number", "WIRECNTLNO", &WireRecord::control},
    {"txtWireAcctPeriod", ControlKind::kPeriod, "Acco&unting Period", "Accounting Period", "",
     &WireRecord::accounting},
    {"txtWireStmtPeriod", ControlKind::kPeriod, "&Statement Period", "Statement Period", "",
     &WireRecord::statement},
};

const ItemScreen<WireRecord, WireTable> kItem{kScreen,
                                              "Wire",
                                              false,
                                              kWireLayout,
                                              kFields,
                                              &BankTables::wires,
                                              &WireRecord::number,
                                              "txtWirePayee",
                                              "txtWireFileNumber",
                                              "lstWireNumbers",
                                              "mnuEditRemoveWire"};

// Of a wire whose accounting period alone is reconciled.
std::string WhatIsOpen(const WireRecord& wire) {
  return wire.statement.IsEmpty() ? "\r\nIt can be cleared: type its statement period."
                                  : "\r\nIts statement period can be changed, or taken out.";
}

}  // namespace

FrmEditWiresPost::FrmEditWiresPost(Session& session, ScreenOpener* opener, bool viewing)
    : ItemPostingForm(session, opener, kItem, WireRows()), viewing_(viewing) {
  for (std::string_view label : {"lblWireStatus", "lblEditMessage", "lblLastReconciled"}) {
    Add(ControlKind::kLabel, std::string(label));
  }
  Add(ControlKind::kLabel, "lblWireIn", "Wires in are posted as deposits, with the wire-in mark.");
  AddRegister("Wires", "P&ost Wire", viewing_);
}

void FrmEditWiresPost::OnOpen() {
  if (viewing_) SetFormCaption("View Wire Transfers - " + session_.BankName());
  ItemPostingForm::OnOpen();
  SetFocus("txtWireNumber");
}

void FrmEditWiresPost::OnLeave(Control& control) {
  ItemPostingForm::OnLeave(control);
  const bool period = control.name == "txtWireAcctPeriod" || control.name == "txtWireStmtPeriod";
  if (period && !loaded_) ShowDestination();
}

// A new wire is cleared at once where a statement period is typed: Enter passes that entry before it posts.
std::string_view FrmEditWiresPost::EntryBehind() const {
  if (Focus() == nullptr || loaded_) return {};
  const auto* entry = std::find_if(std::begin(kFields), std::end(kFields),
                                   [&](const auto& field) { return field.control == Focus()->name; });
  const bool has_next = entry != std::end(kFields) && std::next(entry) != std::end(kFields);
  return has_next ? std::next(entry)->control : std::string_view();
}

bool FrmEditWiresPost::EnterGoesOn() {
  return ItemPostingForm::EnterGoesOn() || !EntryBehind().empty();
}

bool FrmEditWiresPost::OnKey(std::string_view key) {
  if (ItemPostingForm::OnKey(key)) return true;
  const std::string_view behind = key == "Enter" ? EntryBehind() : "";
  if (behind.empty()) return false;
  SetFocus(behind);
  return true;
}

WireRecord FrmEditWiresPost::BlankRecord() {
  WireRecord wire;
  wire.dated = session_.TheClock().Now().date;
  wire.accounting = ProposedPeriod();
  return wire;
}

void FrmEditWiresPost::ShowBeside(const WireRecord* wire) {
  const std::string restriction = wire != nullptr ? RestrictionOf(*wire, bank_) : "";
  SetCaption("lblWireStatus", wire != nullptr ? WireStatusText(wire->status) : "Not Posted");
  SetCaption("cmdOk", wire != nullptr ? "&Ok" : "P&ost Wire");
  const bool open = restriction.empty() && !viewing_;
  for (const EntryField<WireRecord>& entry : kFields) {
    if (entry.control != NumberControl()) SetEnabled(entry.control, open);
  }
  SetEnabled("cmdRolodex", open);
  // A reconciliation carries an outstanding wire on: a later statement shows it, and until that is reconciled
  // it may turn out to be another one.
  const bool clears = open || (!viewing_ && !StatementIsReconciled(*wire, bank_));
  SetEnabled("txtWireStmtPeriod", clears);
  SetEnabled("cmdOk", clears);
  SetCaption("lblEditMessage", wire != nullptr ? restriction + (clears && !open ? WhatIsOpen(*wire) : "")
                               : viewing_      ? "Choose a posted wire in the list, or type its number."
                                          : "\r\nTransaction will be posted to and cleared in the period " +
                                                Text("txtWireAcctPeriod") + " .");
}

// Once the periods have been typed it is known whether the wire will be cleared.
void FrmEditWiresPost::ShowDestination() {
  const std::string& statement = Text("txtWireStmtPeriod");
  SetCaption("lblEditMessage",
             statement.empty()
                 ? "\r\nTransaction will be posted to the Accounting Period " + Text("txtWireAcctPeriod") +
                       " and stay outstanding."
                 : "\r\nTransaction will be posted to and cleared in the period " + statement + " .");
}

void FrmEditWiresPost::Complete(WireRecord* wire) {
  if (loaded_ && wire->statement == loaded_->statement) return;
  wire->status = wire->statement.IsEmpty() ? "O" : "C";
}

bool FrmEditWiresPost::MayPost() {
  if (viewing_) return false;
  WireCase wire{Entries(), bank_, {}, {}, At("txtWireAcctPeriod").enabled, [this] {
                  return IsOnFile(session_, Text("txtWireFileNumber"));
                }};
  wire.accounting.period = PeriodIn("txtWireAcctPeriod", &wire.accounting.valid);
  wire.statement.period = PeriodIn("txtWireStmtPeriod", &wire.statement.valid);
  return PassesTests(WireTests(), wire) && PeriodIsReadable("txtWireAcctPeriod") &&
         PeriodIsReadable("txtWireStmtPeriod");
}

PostOutcome FrmEditWiresPost::WriteNew(const WireRecord& wire) {
  return PostWire(tables_, session_.Company().xrefs, bank_code_, wire, SameReconciliation());
}

PostOutcome FrmEditWiresPost::WriteChanged(const WireRecord& before, const WireRecord& after) {
  return RewriteWire(tables_, session_.Company().xrefs, bank_code_, before, after, SameReconciliation());
}

std::string FrmEditWiresPost::RemovalRefusal(const WireRecord& wire) const {
  if (std::string restricted = RestrictionOf(wire, bank_); !restricted.empty()) return restricted;
  if (wire.status != "C") return {};
  return "Wire " + wire.number + " has cleared the bank.  Take its statement period out first.";
}

PostOutcome FrmEditWiresPost::WriteRemoved(const WireRecord& wire) {
  return RemoveWire(tables_, session_.Company().xrefs, bank_code_, wire, SameReconciliation());
}

std::string FrmEditWiresPost::NotAdded(const PostOutcome& outcome, const std::string& number) const {
  return WireFailureMessage(outcome, number);
}

}  // namespace tallwick
