#include "posting/screen_routes.h"

#include <algorithm>

#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr bool kOfFile = true;

constexpr ScreenRoute kRoutes[] = {
    {"mnuFilePrintChecks", "Print Se&veral Checks...", "frmPrintChecks", "", kRightPostChecks},
    {"mnuEditPostDeposits", "Post &Deposits...", "frmEditDepositsPost", "Posting", kRightPostDeposits},
    {"mnuEditVouchers", "V&ouchers...", "frmEditVouchersPost", "Posting", kRightPostChecks},
    {"mnuEditWireTransfers", "&Wire Transfers...", "frmEditWiresPost", "Posting", kRightWires},
    {"mnuEditReconcileAccount", "Reco&ncile Account...", "frmReconcileAccount", "", kRightReconcile},
    {"mnuViewFileLedgers", "File &Ledger...", "frmViewFileLedgers", "", 0, kOfFile},
    {"mnuReportsChecks", "&Checks...", "frmReports", "Checks", kRightEscrowReports},
    {"mnuReportsDeposits", "&Deposits...", "frmReports", "Deposits", kRightEscrowReports},
    {"mnuReportsVouchers", "&Vouchers...", "frmReports", "Vouchers", kRightEscrowReports},
    {"mnuReportsEscrowAnalysis", "&Escrow Analysis...", "frmReports", "Escrow Analysis", kRightEscrowReports},
    {"mnuToolsCalculator", "Ca&lculator...", "frmCalculator", ""},
};

}  // namespace

const ScreenRoute* FindRoute(std::string_view command) {
  const auto* found = std::find_if(std::begin(kRoutes), std::end(kRoutes),
                                   [&](const ScreenRoute& route) { return route.command == command; });
  return found == std::end(kRoutes) ? nullptr : found;
}

}  // namespace tallwick
