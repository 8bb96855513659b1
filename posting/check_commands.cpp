// The commands of the check screen: its modes, the order and the choice of the list, other screens, and the
// commands on one check.
#include <algorithm>

#include "core/text.h"
#include "posting/check_posting.h"
#include "posting/entry_problems.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

struct CommandText {
  std::string_view name;
  std::string_view caption;
  int value = 0;  // 1 = checked at first
};
constexpr CommandText kCommands[] = {
    {"mnuFilePrint", "&Print Check"},
    {"mnuEditPostChecks", "&Post Checks"},
    {"mnuEditClearChecks", "&Clear Checks"},
    {"mnuEditVoidChecks", "&Void Checks"},
    {"mnuEditStopPaymentChecks", "&Stop Payment Checks"},
    {"mnuEditRenumberCheck", "&Renumber Check"},
    {"mnuEditRemoveCheck", "Re&move Check"},
    {"mnuEditUseNextHigherCheckNumber", "Use Next &Higher Check Number"},
    {"mnuEditAddressBook", "&Address Book"},
    {"mnuViewNumber", "By &Number", 1},
    {"mnuViewPayee", "By &Payee"},
    {"mnuViewAmount", "By &Amount"},
    {"mnuOptionsAll", "&All", 1},
    {"mnuOptionsOutstanding", "&Outstanding"},
    {"mnuOptionsCleared", "&Cleared"},
    {"mnuOptionsVoids", "&Voids"},
    {"mnuOptionsStopPayment", "&Stop Payment"},
};

using Kind = CheckMode::Kind;
struct ModeCommand {
  std::string_view command;
  Kind mode;
};
constexpr ModeCommand kModeCommands[] = {
    {"mnuEditPostChecks", Kind::kPosting},
    {"mnuEditClearChecks", Kind::kClearing},
    {"mnuEditVoidChecks", Kind::kVoiding},
    {"mnuEditStopPaymentChecks", Kind::kStopPayment},
};

using Order = CheckRegister::Order;
struct OrderChoice {
  std::string_view command;
  Order order;
};
constexpr OrderChoice kOrders[] = {
    {"mnuViewNumber", Order::kNumber}, {"mnuViewPayee", Order::kPayee}, {"mnuViewAmount", Order::kAmount}};

using Only = CheckRegister::Only;
struct ListChoice {
  std::string_view button;
  std::string_view command;
  Only only;
};
constexpr ListChoice kLists[] = {{"cmdListAll", "mnuOptionsAll", Only::kAll},
                                 {"cmdListOutstanding", "mnuOptionsOutstanding", Only::kOutstanding},
                                 {"cmdListCleared", "mnuOptionsCleared", Only::kCleared},
                                 {"cmdListVoids", "mnuOptionsVoids", Only::kVoided},
                                 {"cmdListStopPayment", "mnuOptionsStopPayment", Only::kStopped}};

}  // namespace

void FrmEditChecksPost::AddCommands() {
  for (const CommandText& command : kCommands) {
    Add(ControlKind::kMenu, std::string(command.name), std::string(command.caption)).value = command.value;
  }
  Add(ControlKind::kMenu, "mnuToolsCalendar", "&Calendar");
  AddRoutes({"mnuFilePrintChecks", "mnuEditPostDeposits", "mnuEditVouchers", "mnuEditWireTransfers",
             "mnuEditReconcileAccount", kLedgerCommand, "mnuReportsChecks", "mnuReportsDeposits",
             "mnuReportsVouchers", "mnuReportsEscrowAnalysis", "mnuToolsCalculator"});
  AddOption("mnuOptionsWarnHigherNumber", "&Warn of Higher Number", true);
  AddOption("mnuOptionsUsePrintPreview", "Use Print P&review", false);
  AddOption("mnuOptionsDefaultPeriod", "Fill Blank Accounting &Periods", session_.Run().default_period);
  session_.Run().default_period = IsOn("mnuOptionsDefaultPeriod");
  for (const ModeCommand& one : kModeCommands) {
    const int right = CheckModeOf(one.mode).right;
    At(one.command).enabled = session_.MayUse(right);
  }
}

void FrmEditChecksPost::OnMenu(Control& control) {
  const std::string_view command = control.name;
  if (ToggleOption(command)) session_.Run().default_period = IsOn("mnuOptionsDefaultPeriod");
  if (command == "mnuToolsCalendar") SetFocus("txtCheckDated");
  if (command == "mnuFilePrint") Print();
  if (command == "mnuEditUseNextHigherCheckNumber") UseNextNumber();
  if (command == "mnuEditRenumberCheck") BeginRenumbering();
  if (command == "mnuEditRemoveCheck") RemovePosted();
  if (command == "mnuEditAddressBook") OpenPayees();
  for (const ModeCommand& one : kModeCommands) {
    if (one.command == command) OnMode(CheckModeOf(one.mode).name);
  }
  if (!ListCommand(command) && !OrderCommand(command)) GoTo(command);
}

bool FrmEditChecksPost::ListCommand(std::string_view command) {
  const auto* chosen = std::find_if(std::begin(kLists), std::end(kLists), [&](const ListChoice& one) {
    return one.command == command || one.button == command;
  });
  if (chosen == std::end(kLists)) return false;
  for (const ListChoice& one : kLists) SetValue(one.command, &one == chosen ? 1 : 0);
  register_->ShowOnly(chosen->only);
  RowsChanged("lstCheckNumbers");
  return true;
}

bool FrmEditChecksPost::OrderCommand(std::string_view command) {
  const auto* chosen = std::find_if(std::begin(kOrders), std::end(kOrders),
                                    [&](const OrderChoice& one) { return one.command == command; });
  if (chosen == std::end(kOrders)) return false;
  for (const OrderChoice& one : kOrders) SetValue(one.command, &one == chosen ? 1 : 0);
  register_->ShowOrder(chosen->order);
  RowsChanged("lstCheckNumbers");
  return true;
}

// --- Modes ---

bool FrmEditChecksPost::OnMode(std::string_view mode) {
  const CheckMode* wanted = FindCheckMode(mode);
  if (wanted == nullptr || wanted == mode_) return true;
  if ((wanted->right != 0 && !session_.MayUse(wanted->right)) || !MayLeaveCheck()) return true;
  SwitchTo(*wanted);
  return true;
}

void FrmEditChecksPost::SwitchTo(const CheckMode& mode) {
  const std::string shown = loaded_ ? loaded_->number : "";
  mode_ = &mode;
  SetFormCaption(std::string(mode.caption) + bank_.name);
  for (const ModeCommand& one : kModeCommands) SetValue(one.command, one.mode == mode.kind ? 1 : 0);
  for (std::string_view control : {"txtCheckStmtPeriod", "txtCheckReason"}) {
    const bool has_reason = control != "txtCheckReason" || !Is(Kind::kClearing);
    SetVisible(control, !Is(Kind::kPosting) && has_reason);
  }
  SetVisible("cmdSetOutstanding", SetsStatus());
  if (shown.empty()) return BeginNext();
  OpenNumber(shown);
  GoToFirst();
}

// --- Commands on one check ---

void FrmEditChecksPost::UseNextNumber() {
  ReadNumbering();
  SetText("txtCheckNumber", numbering_.Proposal());
  if (!renumbering_) LookUpNumber();
}

void FrmEditChecksPost::BeginRenumbering() {
  if (!loaded_) return Refuse("Look up the posted check that is to be renumbered first.", "txtCheckNumber");
  if (!MayWrite() || !Passes({"txtCheckNumber", RemovalRefusal(*loaded_, bank_)})) return;
  ReadNumbering();
  ShowRenumbering();
  SetFocus("txtCheckNumber");
}

void FrmEditChecksPost::ShowRenumbering() {
  renumbering_ = true;
  SetCaption("lblEditMessage", "Check " + loaded_->number +
                                   " gets another number: type it and press Ok.  Esc leaves it as it is.");
}

void FrmEditChecksPost::RemovePosted() {
  if (!loaded_) return Refuse("Look up the posted check that is to be removed first.", "txtCheckNumber");
  if (!MayWrite() || !Passes({"txtCheckNumber", RemovalRefusal(*loaded_, bank_)})) return;
  const std::string question = "Remove check " + loaded_->number + " to " + Quoted(loaded_->payee) + " of " +
                               AmountText(loaded_->amount) + " ?\r\nIts number is free afterwards.";
  if (Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) !=
      BoxAnswer::kYes) {
    return;
  }
  if (Remove(*loaded_)) AfterWriting();
}

}  // namespace tallwick
