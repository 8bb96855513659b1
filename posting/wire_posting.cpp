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

constexpr PostingScreen kScreen{"frmEditWiresPost", "Post Wire Transfers - ", "Bank ID Code no longer valid.",
                                kAuditPostWire, kRightWires};

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
                                              kWireLayout,
                                              kFields,
                                              &BankTables::wires,
                                              &WireRecord::number,
                                              "txtWirePayee",
                                              "txtWireFileNumber",
                                              "lstWireNumbers"};

}  // namespace

FrmEditWiresPost::FrmEditWiresPost(Session& session, ScreenOpener* opener, bool viewing)
    : ItemPostingForm(session, opener, kItem, WireRows()), viewing_(viewing) {
  for (std::string_view label : {"lblWireStatus", "lblEditMessage", "lblLastReconciled"}) {
    Add(ControlKind::kLabel, std::string(label));
  }
  Add(ControlKind::kLabel, "lblWireIn", "Wires in are posted as deposits, with the wire-in mark.");
  AddRegister("Wires", "P&ost Wire");
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
bool FrmEditWiresPost::OnKey(std::string_view key) {
  if (ItemPostingForm::OnKey(key)) return true;
  if (key == "Enter" && Focus() != nullptr && !loaded_) {
    const auto* entry = std::find_if(std::begin(kFields), std::end(kFields),
                                     [&](const auto& field) { return field.control == Focus()->name; });
    const bool has_next = entry != std::end(kFields) && std::next(entry) != std::end(kFields);
    if (has_next) {
      SetFocus(std::next(entry)->control);
      return true;
    }
  }
  return false;
}

WireRecord FrmEditWiresPost::BlankRecord() {
  WireRecord wire;
  wire.dated = session_.TheClock().Now().date;
  wire.accounting = bank_.accounting;
  return wire;
}

std::string FrmEditWiresPost::Restriction(const WireRecord& wire) const {
  const bool statement = !wire.statement.IsEmpty() && IsReconciled(wire.statement);
  if (!statement && !IsReconciled(wire.accounting)) return {};
  return (statement ? "Statement period " + ShortForm(wire.statement)
                    : "Accounting period " + ShortForm(wire.accounting)) +
         " has been reconciled.\r\nChanges are restricted.";
}

void FrmEditWiresPost::ShowBeside(const WireRecord* wire) {
  const std::string restriction = wire != nullptr ? Restriction(*wire) : "";
  SetCaption("lblWireStatus", wire != nullptr ? WireStatusText(wire->status) : "Not Posted");
  SetCaption("cmdOk", wire != nullptr ? "&Ok" : "P&ost Wire");
  const bool open = restriction.empty() && !viewing_;
  SetEnabled("cmdOk", open);
  SetEnabled("cmdRolodex", open);
  for (const EntryField<WireRecord>& entry : kFields) {
    if (entry.control != NumberControl()) SetEnabled(entry.control, open);
  }
  SetCaption("lblEditMessage", wire != nullptr ? restriction
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
  return PostWire(tables_, session_.Company().xrefs, bank_code_, wire);
}

PostOutcome FrmEditWiresPost::WriteChanged(const WireRecord& before, const WireRecord& after) {
  return RewriteWire(tables_, session_.Company().xrefs, bank_code_, before, after);
}

std::string FrmEditWiresPost::NotAdded(const PostOutcome& outcome, const std::string& number) const {
  return WireFailureMessage(outcome, number);
}

}  // namespace tallwick
