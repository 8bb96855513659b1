#include "app/screen_catalogue.h"

#include "audit/view_log.h"
#include "checks/print_checks.h"
#include "checks/stock_check_printer.h"
#include "clearing/deposit_clearing.h"
#include "maintenance/maintenance_screens.h"
#include "posting/check_posting.h"
#include "posting/deposit_posting.h"
#include "posting/voucher_posting.h"
#include "posting/wire_posting.h"
#include "recon/reconcile_account.h"
#include "reports/view_file_ledgers.h"
#include "reports/view_trial_balance.h"
#include "shell/about.h"
#include "shell/bank_select.h"
#include "shell/edit_users.h"
#include "shell/help.h"
#include "shell/main_commands.h"
#include "shell/main_window.h"
#include "shell/rights.h"
#include "shell/start_up.h"
#include "shell/transactions_switch.h"

namespace tallwick {
namespace {

using TopicMaker = std::unique_ptr<Form> (*)(Session&, ScreenOpener&, std::string_view topic);
using Maker = std::unique_ptr<Form> (*)(Session&, ScreenOpener&);

struct Screen {
  std::string_view name;
  std::string_view mode;  // "" where the screen has only one way to open
  bool needs_bank;
  int right;  // 0 = none
  Maker make;
  TopicMaker make_of_topic = nullptr;  // of a screen whose mode is free: what it is to show
};

std::unique_ptr<Form> MakeMain(Session& session, ScreenOpener& opener) {
  return std::make_unique<FrmMainEscrowAccounting>(session, opener);
}

std::unique_ptr<Form> MakeBankSelect(Session& session, ScreenOpener&) {
  return std::make_unique<FrmBankSelect>(session);
}

// The form, when its bank and tables are there.
template <class Posting>
std::unique_ptr<Form> WithTables(std::unique_ptr<Posting> form) {
  if (!form->OpenTables()) return nullptr;
  return form;
}

template <class Posting>
std::unique_ptr<Form> MakePosting(Session& session, ScreenOpener& opener) {
  return WithTables(std::make_unique<Posting>(session, &opener));
}

template <class ScreenForm>
std::unique_ptr<Form> MakePlain(Session& session, ScreenOpener&) {
  return std::make_unique<ScreenForm>(session);
}

std::unique_ptr<Form> MakeUsers(Session& session, ScreenOpener&) {
  return WithTables(std::make_unique<FrmEditUsers>(session));
}

// Made before the screen that prints with it, and gone behind it.
struct HeldPrinter {
  explicit HeldPrinter(Session& session) {
    if (session.Sheets() != nullptr)
      printer = std::make_unique<StockCheckPrinter>(session, session.BankCode());
  }
  std::unique_ptr<StockCheckPrinter> printer;
};

class CheckScreen : private HeldPrinter, public FrmEditChecksPost {
 public:
  CheckScreen(Session& session, ScreenOpener& opener, CheckMode::Kind mode)
      : HeldPrinter(session), FrmEditChecksPost(session, opener, mode, {printer.get(), nullptr}) {}
};

template <CheckMode::Kind kMode>
std::unique_ptr<Form> MakeChecks(Session& session, ScreenOpener& opener) {
  return WithTables(std::make_unique<CheckScreen>(session, opener, kMode));
}

std::unique_ptr<Form> MakeDepositViewing(Session& session, ScreenOpener& opener) {
  return WithTables(std::make_unique<FrmEditDepositsPost>(session, &opener, DepositMode::kViewing));
}

std::unique_ptr<Form> MakeHelp(Session& session, ScreenOpener&, std::string_view topic) {
  return std::make_unique<FrmHelp>(session, topic);
}

std::unique_ptr<Form> MakeWireViewing(Session& session, ScreenOpener& opener) {
  return WithTables(std::make_unique<FrmEditWiresPost>(session, &opener, true));
}

std::unique_ptr<Form> MakeVoucherViewing(Session& session, ScreenOpener& opener) {
  return WithTables(std::make_unique<FrmEditVouchersPost>(session, &opener, true));
}

std::unique_ptr<Form> MakeLedger(Session& session, ScreenOpener& opener, std::string_view file_number) {
  return std::make_unique<FrmViewFileLedgers>(session, opener, file_number);
}

std::unique_ptr<Form> MakeTrialBalance(Session& session, ScreenOpener& opener) {
  return std::make_unique<FrmViewTrialBalance>(session, opener);
}

template <MaintenanceOperation operation>
std::unique_ptr<Form> MakeMaintenance(Session& session, ScreenOpener&) {
  return std::make_unique<FrmMaintenance>(session, operation);
}

template <FrmDataCopy::Direction direction>
std::unique_ptr<Form> MakeDataCopy(Session& session, ScreenOpener&) {
  return std::make_unique<FrmDataCopy>(session, direction);
}

// Modes of one screen stand together, the usual one first.
constexpr Screen kScreens[] = {
    {"frmMainEscrowAccounting", "", false, 0, MakeMain},
    {"frmBankSelect", "", false, 0, MakeBankSelect},
    {"frmEditChecksPost", "Posting", true, kRightPostChecks, MakeChecks<CheckMode::Kind::kPosting>},
    {"frmEditChecksPost", "Viewing", true, 0, MakeChecks<CheckMode::Kind::kViewing>},
    {"frmEditChecksPost", "Clearing", true, kRightClearChecks, MakeChecks<CheckMode::Kind::kClearing>},
    {"frmEditChecksPost", "Voiding", true, kRightVoidChecks, MakeChecks<CheckMode::Kind::kVoiding>},
    {"frmEditChecksPost", "Stop Payment", true, kRightVoidChecks, MakeChecks<CheckMode::Kind::kStopPayment>},
    {"frmPrintChecks", "", true, kRightPostChecks, MakePosting<FrmPrintChecks>},
    {"frmEditDepositsPost", "Posting", true, kRightPostDeposits, MakePosting<FrmEditDepositsPost>},
    {"frmEditDepositsPost", "Viewing", true, 0, MakeDepositViewing},
    {"frmEditDepositsClear", "Clearing", true, kRightClearDeposits, MakePosting<FrmEditDepositsClear>},
    {"frmEditWiresPost", "Posting", true, kRightWires, MakePosting<FrmEditWiresPost>},
    {"frmEditWiresPost", "Viewing", true, 0, MakeWireViewing},
    {"frmEditVouchersPost", "Posting", true, kRightPostChecks, MakePosting<FrmEditVouchersPost>},
    {"frmEditVouchersPost", "Viewing", true, 0, MakeVoucherViewing},
    {"frmReconcileAccount", "", true, kRightReconcile, MakePosting<FrmReconcileAccount>},
    {"frmViewFileLedgers", "", false, 0, nullptr, MakeLedger},
    {"frmViewTrialBalance", "", false, kRightEscrowReports, MakeTrialBalance},
    {"frmAbout", "", false, 0, MakePlain<FrmAbout>},
    {"frmHelp", "", false, 0, nullptr, MakeHelp},
    {"frmEditUsers", "", false, kAdministrator, MakeUsers},
    {"frmViewLog", "", true, 0, MakePlain<FrmViewLog>},
    {"frmCopyDatabases", "", false, kRightEscrowOffice, MakeDataCopy<FrmDataCopy::Direction::kCopy>},
    {"frmRestoreDatabases", "", false, kRightEscrowOffice, MakeDataCopy<FrmDataCopy::Direction::kRestore>},
    {"frmMaintenance", "Rebuild & Reindex", false, kRightEscrowOffice,
     MakeMaintenance<MaintenanceOperation::kRebuild>},
    {"frmMaintenance", "Update Database Versions", false, kRightEscrowOffice,
     MakeMaintenance<MaintenanceOperation::kUpdateVersions>},
    {"frmMaintenance", "Pack Databases", false, kRightEscrowOffice,
     MakeMaintenance<MaintenanceOperation::kPack>},
    {"frmPurgeFiles", "", false, kRightPurgeFiles, MakePlain<FrmPurgeFiles>},
    {"frmCheckXReference", "", true, kRightEscrowOffice, MakePlain<FrmCheckXReference>},
    {"frmCheckDatabaseVersion", "", false, 0, MakePlain<FrmCheckDatabaseVersion>},
};

const Screen* FindScreen(std::string_view name, std::string_view mode) {
  for (const Screen& screen : kScreens) {
    if (screen.name == name && (mode.empty() || screen.mode == mode || screen.make_of_topic != nullptr))
      return &screen;
  }
  return nullptr;
}

}  // namespace

std::vector<std::string_view> ScreenCatalogue::Names() {
  std::vector<std::string_view> names;
  for (const Screen& screen : kScreens) {
    if (names.empty() || names.back() != screen.name) names.push_back(screen.name);
  }
  return names;
}

std::vector<std::string_view> ScreenCatalogue::Modes(std::string_view screen) {
  std::vector<std::string_view> modes;
  for (const Screen& one : kScreens) {
    if (one.name == screen && !one.mode.empty()) modes.push_back(one.mode);
  }
  return modes;
}

bool ScreenCatalogue::Knows(std::string_view screen, std::string_view mode) {
  return FindScreen(screen, mode) != nullptr;
}

std::unique_ptr<Form> ScreenCatalogue::Make(std::string_view screen, std::string_view mode) {
  const Screen* found = FindScreen(screen, mode);
  if (found == nullptr) return nullptr;
  if (found->right != 0 && !session_.MayUse(found->right)) {
    session_.Boxes().Critical(kProgramName,
                              "You do not have the right to use this screen.  Ask the administrator for it.");
    return nullptr;
  }
  if (found->needs_bank && session_.BankCode().empty()) {
    session_.Boxes().Critical(kProgramName, "No bank account is open.  Open a bank account first.");
    return nullptr;
  }
  if (found->needs_bank && !session_.MayUseBank(session_.BankCode())) {
    session_.Boxes().Critical(kProgramName,
                              "The open bank account is not among your banks.  Open another one, "
                              "or ask the administrator for it.");
    return nullptr;
  }
  if (EntersTransactions(screen, found->mode) && !TransactionsOpen(session_)) {
    session_.Boxes().Critical(
        kProgramName, "Transactions are locked.  Ask whoever locked them to unlock them, then try again.");
    return nullptr;
  }
  if (found->make_of_topic != nullptr) return found->make_of_topic(session_, opener_, mode);
  return found->make(session_, opener_);
}

}  // namespace tallwick
