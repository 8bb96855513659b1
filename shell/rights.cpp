#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr RightKind kHeading = RightKind::kHeading;
constexpr RightKind kCommand = RightKind::kCommand;

constexpr Right kCatalogue[] = {
    {1, kHeading, "Main Screen"},
    {2, kCommand, "File Number"},
    {3, kCommand, "File Transfer"},
    {4, kCommand, "Order Entry"},
    {5, kCommand, "Title Insurance"},
    {6, kCommand, "Policies"},
    {7, kCommand, "Required Items"},
    {8, kCommand, "Settlement"},
    {9, kCommand, "Escrow Accounting"},
    {10, kCommand, "Check Workup"},
    {11, kCommand, "Document Maintenance"},
    {12, kCommand, "Invoicing"},
    {13, kHeading, "File Menu"},
    {14, kCommand, "Select Branch Office"},
    {15, kHeading, "Edit Menu"},
    {16, kCommand, "Office / Branch Options"},
    {19, kHeading, "Lists Menu"},
    {20, kCommand, "Address Book"},
    {21, kCommand, "Batch IDs"},
    {22, kCommand, "Escrow Bank Accounts"},
    {23, kCommand, "Government Recording Fees"},
    {24, kCommand, "MailBoxes"},
    {25, kCommand, "Manners of Title"},
    {26, kCommand, "Marketing Representatives"},
    {27, kCommand, "Mortgage / Judgement Attachments"},
    {28, kCommand, "Name Joining Phrases"},
    {29, kCommand, "Operation Staff"},
    {30, kCommand, "Paragraphs"},
    {31, kCommand, "Payoff and Required Items"},
    {32, kCommand, "Recorded Instruments"},
    {33, kCommand, "Salutation Prefixes"},
    {34, kCommand, "Search Types"},
    {35, kCommand, "Services"},
    {36, kCommand, "Subdivision / Condominium Index"},
    {37, kCommand, "Taxing Authorities"},
    {38, kCommand, "Templates"},
    {39, kCommand, "Tracking Activities"},
    {40, kCommand, "Underwriters"},
    {41, kCommand, "User Variable Prompts"},
    {42, kCommand, "Zip Codes"},
    {43, kHeading, "Reports"},
    {44, kCommand, "All Reports"},
    {45, kHeading, "Updates Menu"},
    {46, kCommand, "Updates"},
    {47, kHeading, "Escrow Accounting Options"},
    {48, kCommand, "Account Info"},
    {49, kCommand, "Clear Checks"},
    {50, kCommand, "Clear Deposits"},
    {51, kCommand, "Escrow Office"},
    {52, kCommand, "Print / Post Checks"},
    {53, kCommand, "Post Deposits"},
    {54, kCommand, "Purge Files"},
    {55, kCommand, "Reconciliation"},
    {56, kCommand, "Void Checks"},
    {57, kCommand, "Wire Transfers"},
    {60, kCommand, "Escrow Reports"},
    {58, kHeading, "Activity Tracking"},
    {59, kCommand, "Editing"},
    {61, kHeading, "File Numbers"},
    {62, kCommand, "Prevent Deleting"},
};

struct GatedCommand {
  std::string_view control;
  int right;
};

// Stopping a check goes with voiding, vouchers go with checks.
constexpr GatedCommand kGatedCommands[] = {
    {"mnuEditPostChecks", kRightPostChecks},        {"mnuEditChecksPost", kRightPostChecks},
    {"mnuEditClearChecks", kRightClearChecks},      {"mnuEditChecksClear", kRightClearChecks},
    {"mnuEditVoidChecks", kRightVoidChecks},        {"mnuEditChecksVoid", kRightVoidChecks},
    {"mnuEditStopPaymentChecks", kRightVoidChecks}, {"mnuEditChecksStopPayment", kRightVoidChecks},
    {"mnuEditPostDeposits", kRightPostDeposits},    {"mnuEditDepositsPost", kRightPostDeposits},
    {"mnuEditClearDeposits", kRightClearDeposits},  {"mnuEditDepositsClear", kRightClearDeposits},
    {"mnuEditWireTransfers", kRightWires},          {"mnuEditVouchers", kRightPostChecks},
    {"mnuEditReconcileAccount", kRightReconcile},   {"mnuToolsUsers", kAdministrator},
};

}  // namespace

std::span<const Right> RightsCatalogue() {
  return kCatalogue;
}

std::string RightKey(const Right& right) {
  return (right.kind == RightKind::kHeading ? "P" : "C") + std::to_string(right.number);
}

int RightOfCommand(std::string_view control) {
  for (const GatedCommand& command : kGatedCommands) {
    if (command.control == control) return command.right;
  }
  return 0;
}

}  // namespace tallwick
