#include "shell/main_commands.h"

#include <algorithm>
#include <array>

#include "shell/rights.h"
#include "shell/start_up.h"

namespace tallwick {
namespace {

constexpr bool kBank = true;
constexpr bool kNoBank = false;
constexpr bool kTransactions = true;

constexpr auto kCommands = std::to_array<MainCommand>({
    {"mnuFileOpen", "&Open Bank Account...", "frmBankSelect", ""},
    {"mnuFileClose", "&Close Bank Account", "", "", 0, kBank},
    {"mnuFileSave", "&Save", "", "", 0, kBank},
    {"mnuFileCopyDatabases", "Copy &Databases...", "frmCopyDatabases", "", kRightEscrowOffice},
    {"mnuFileRestoreDatabases", "&Restore Databases...", "frmRestoreDatabases", "", kRightEscrowOffice},
    {"mnuFileRebuildReindexTransactions", "Re&build && Reindex Transactions...", "frmMaintenance",
     "Rebuild & Reindex", kRightEscrowOffice},
    {"mnuFileUpdateDatabaseVersions", "&Update Database Versions...", "frmMaintenance",
     "Update Database Versions", kRightEscrowOffice},
    {"mnuFilePack", "&Pack...", "frmMaintenance", "Pack Databases", kRightEscrowOffice},
    {"mnuFilePurge", "Pur&ge...", "frmPurgeFiles", "", kRightPurgeFiles},
    {"mnuFileCheckXReference", "Check &X-Reference...", "frmCheckXReference", "", kRightEscrowOffice, kBank},
    {"mnuFileLockTransactions", "&Lock Transactions", "", "", kRightEscrowOffice},
    {"mnuFileExit", "E&xit", "", ""},

    {"mnuEditChecksPost", "Post &Checks...", "frmEditChecksPost", "Posting", kRightPostChecks, kBank,
     kTransactions, "mnuEditPostChecks"},
    {"mnuEditChecksClear", "C&lear Checks...", "frmEditChecksPost", "Clearing", kRightClearChecks, kBank,
     kTransactions, "mnuEditClearChecks"},
    {"mnuEditChecksVoid", "&Void Checks...", "frmEditChecksPost", "Voiding", kRightVoidChecks, kBank,
     kTransactions, "mnuEditVoidChecks"},
    {"mnuEditChecksStopPayment", "&Stop Payment...", "frmEditChecksPost", "Stop Payment", kRightVoidChecks,
     kBank, kTransactions, "mnuEditStopPaymentChecks"},
    {"mnuEditPostDeposits", "Post &Deposits...", "frmEditDepositsPost", "Posting", kRightPostDeposits, kBank,
     kTransactions, "mnuEditDepositsPost"},
    {"mnuEditClearDeposits", "Cl&ear Deposits...", "frmEditDepositsClear", "Clearing", kRightClearDeposits,
     kBank, kTransactions, "mnuEditDepositsClear"},
    {"mnuEditWireTransfers", "&Wire Transfers...", "frmEditWiresPost", "Posting", kRightWires, kBank,
     kTransactions, "mnuEditWiresPost"},
    {"mnuEditVouchers", "V&ouchers...", "frmEditVouchersPost", "Posting", kRightPostChecks, kBank,
     kTransactions, "mnuEditVouchersPost"},
    {"mnuEditReconcileAccount", "&Reconcile Account...", "frmReconcileAccount", "", kRightReconcile, kBank,
     kTransactions},
    {"mnuCheckClearingInterfacesProcess", "&Process Cleared Transactions...", "frmProcessClearedTransactions",
     "", kRightClearChecks, kBank, kTransactions},

    {"mnuViewFileLedgers", "File &Ledgers...", "frmViewFileLedgers", ""},
    {"mnuViewReportHeadings", "Name in Report &Headings...", "frmViewReportHeadings", "",
     kRightEscrowReports},
    {"mnuViewRefresh", "&Refresh", "", "", 0, kBank},
    {"mnuViewToolBar", "&Toolbar", "", ""},
    {"mnuViewStatusBar", "&Status Bar", "", ""},
    {"mnuReports", "&Escrow Reports...", "frmReports", "", kRightEscrowReports, kBank},
    {"mnuReportsTrialBalance", "&Trial Balance...", "frmViewTrialBalance", "", kRightEscrowReports},
    {"mnuToolsUsers", "&Users and Rights...", "frmEditUsers", "", kAdministrator},

    {"mnuHelpContents", "&Contents", "", ""},
    {"mnuHelpIndex", "&Index", "", ""},
    {"mnuHelpTallwick", "&Tallwick Help", "", ""},
    {"mnuHelpAuditTrailViewer", "&Audit Trail Viewer...", "frmViewLog", "", 0, kBank},
    {"mnuHelpCheckDatabaseVersion", "Check Database &Version...", "frmCheckDatabaseVersion", ""},
    {"mnuHelpAbout", "A&bout Escrow Accounting", "frmAbout", "", 0, kNoBank},
});

}  // namespace

std::span<const MainCommand> MainCommands() {
  return kCommands;
}

int RightOfCommand(std::string_view control) {
  const auto* found = std::find_if(kCommands.begin(), kCommands.end(), [&](const MainCommand& command) {
    return command.control == control || command.other_name == control;
  });
  return found == kCommands.end() ? 0 : found->right;
}

bool MayCarryOut(Session& session, std::string_view control) {
  if (session.MayUse(RightOfCommand(control))) return true;
  session.Boxes().Critical(kProgramName, kCommandNotGranted);
  return false;
}

bool EntersTransactions(std::string_view screen, std::string_view mode) {
  return std::any_of(kCommands.begin(), kCommands.end(), [&](const MainCommand& command) {
    return command.transactions && command.screen == screen && (mode.empty() || command.mode == mode);
  });
}

}  // namespace tallwick
