#include "shell/screen_routes.h"

#include <algorithm>

#include "core/text.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr bool kOfFile = true;
constexpr std::string_view kFileHeading = "File";

constexpr ScreenRoute kRoutes[] = {
    {"mnuFilePrintChecks", "Print Se&veral Checks...", "frmPrintChecks", "", kRightPostChecks},
    {"mnuEditPostDeposits", "Post &Deposits...", "frmEditDepositsPost", "Posting", kRightPostDeposits},
    {"mnuEditVouchers", "V&ouchers...", "frmEditVouchersPost", "Posting", kRightPostChecks},
    {"mnuEditWireTransfers", "&Wire Transfers...", "frmEditWiresPost", "Posting", kRightWires},
    {"mnuEditReconcileAccount", "Reco&ncile Account...", "frmReconcileAccount", "", kRightReconcile},
    {kLedgerCommand, "File &Ledger...", "frmViewFileLedgers", "", 0, kOfFile},
    {"mnuReportsChecks", "&Checks...", "frmReports", "Checks", kRightEscrowReports},
    {"mnuReportsDeposits", "&Deposits...", "frmReports", "Deposits", kRightEscrowReports},
    {"mnuReportsVouchers", "&Vouchers...", "frmReports", "Vouchers", kRightEscrowReports},
    {"mnuReportsEscrowAnalysis", "&Escrow Analysis...", "frmReports", "Escrow Analysis", kRightEscrowReports},
    {"mnuToolsCalculator", "Ca&lculator...", "frmCalculator", ""},
};

// "(no file)" and "3 files" name none.
bool IsFileNumber(std::string_view text) {
  return !text.starts_with('(') && !text.ends_with(" files");
}

}  // namespace

const ScreenRoute* FindRoute(std::string_view command) {
  const auto* found = std::find_if(std::begin(kRoutes), std::end(kRoutes),
                                   [&](const ScreenRoute& route) { return route.command == command; });
  return found == std::end(kRoutes) ? nullptr : found;
}

ItemRoute RouteToItem(std::string_view kind, std::string_view number, std::string_view dated) {
  const std::string text(number);
  if (kind == "Check") return {"frmEditChecksPost", {{"txtCheckNumber", text}}};
  if (kind == "Wire") return {"frmEditWiresPost", {{"txtWireNumber", text}}};
  if (kind == "Voucher") return {"frmEditVouchersPost", {{"txtVCHRNumber", text}}};
  return {"frmEditDepositsPost", {{"txtDepositDated", std::string(dated)}, {"txtDateSequence", text}}};
}

std::string FileOfChosenRow(const Control& grid) {
  if (!grid.source || grid.selected == 0) return {};
  const std::vector<std::string> headings = grid.source->Headings();
  const auto column = std::find(headings.begin(), headings.end(), kFileHeading) - headings.begin();
  const std::vector<std::string> cells = grid.source->Row(static_cast<std::size_t>(grid.selected) - 1);
  if (static_cast<std::size_t>(column) >= cells.size()) return {};
  const std::string file(Trim(cells[static_cast<std::size_t>(column)]));
  return IsFileNumber(file) ? file : std::string();
}

}  // namespace tallwick
