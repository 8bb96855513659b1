#include "ui/screens.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

#include "ui/check_window.h"
#include "ui/ledger_window.h"
#include "ui/posting_windows.h"
#include "ui/print_checks_window.h"
#include "ui/reconcile_window.h"
#include "ui/register_view.h"
#include "ui/report_menu.h"
#include "ui/style.h"
#include "ui/trial_balance_window.h"
#include "ui/users_window.h"
#include "ui/view_log_window.h"
#include "ui_about.h"
#include "ui_bank_select.h"
#include "ui_check_x_reference.h"
#include "ui_copy_databases.h"
#include "ui_database_version.h"
#include "ui_help.h"
#include "ui_main_window.h"
#include "ui_maintenance.h"
#include "ui_purge_files.h"

namespace tallwick {
namespace {

template <class Window, class Layout>
std::unique_ptr<QWidget> Make() {
  auto window = std::make_unique<Window>();
  Layout().setupUi(window.get());
  return window;
}

struct Screen {
  std::string_view name;
  std::unique_ptr<QWidget> (*make)();
};

constexpr Screen kScreens[] = {
    {"frmMainEscrowAccounting", Make<QMainWindow, Ui::frmMainEscrowAccounting>},
    {"frmBankSelect", Make<QDialog, Ui::frmBankSelect>},
    {"frmAbout", Make<QDialog, Ui::frmAbout>},
    {"frmHelp", Make<QMainWindow, Ui::frmHelp>},
    {"frmEditChecksPost", MakeCheckWindow},
    {"frmPrintChecks", MakePrintChecksWindow},
    {"frmEditDepositsPost", MakeDepositWindow},
    {"frmEditDepositsClear", MakeDepositClearingWindow},
    {"frmEditWiresPost", MakeWireWindow},
    {"frmEditVouchersPost", MakeVoucherWindow},
    {"frmReconcileAccount", MakeReconcileWindow},
    {"frmViewFileLedgers", MakeLedgerWindow},
    {"frmViewTrialBalance", MakeTrialBalanceWindow},
    {"frmEditUsers", MakeUsersWindow},
    {"frmViewLog", MakeViewLogWindow},
    {"frmCopyDatabases", Make<QDialog, Ui::frmCopyDatabases>},
    {"frmRestoreDatabases", Make<QDialog, Ui::frmCopyDatabases>},
    {"frmMaintenance", Make<QDialog, Ui::frmMaintenance>},
    {"frmPurgeFiles", Make<QDialog, Ui::frmPurgeFiles>},
    {"frmCheckXReference", Make<QDialog, Ui::frmCheckXReference>},
    {"frmCheckDatabaseVersion", Make<QDialog, Ui::frmCheckDatabaseVersion>},
};

// A status bar's property "panels" lists its labels from left to right; the first takes the room that is
// left.
void AddPanels(QStatusBar& bar) {
  bar.setSizeGripEnabled(false);
  bool first = true;
  for (const QString& name : bar.property("panels").toStringList()) {
    auto* label = new QLabel(&bar);
    label->setObjectName(name);
    bar.addPermanentWidget(label, first ? 1 : 0);
    first = false;
  }
}

// Commands with the property "drawnIcon" get their drawn icon; a tool bar always shows the word beside it.
void AddIcons(QWidget& window) {
  for (QAction* action : window.findChildren<QAction*>()) {
    const QString icon = action->property("drawnIcon").toString();
    if (!icon.isEmpty()) action->setIcon(DrawnIcon(icon));
  }
  for (QToolBar* bar : window.findChildren<QToolBar*>()) {
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(20, 20));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
  }
}

// A box with the property "finds" searches the register that it names.
void ConnectFindBoxes(QWidget& window) {
  for (QLineEdit* box : window.findChildren<QLineEdit*>()) {
    const QString register_name = box->property("finds").toString();
    if (register_name.isEmpty()) continue;
    if (auto* view = window.findChild<RegisterView*>(register_name)) view->SearchFrom(box);
  }
}

}  // namespace

bool HasScreenWindow(std::string_view screen) {
  return std::any_of(std::begin(kScreens), std::end(kScreens),
                     [&](const Screen& known) { return known.name == screen; });
}

std::unique_ptr<QWidget> MakeScreenWindow(std::string_view screen) {
  for (const Screen& known : kScreens) {
    if (known.name != screen) continue;
    std::unique_ptr<QWidget> window = known.make();
    for (QStatusBar* bar : window->findChildren<QStatusBar*>()) AddPanels(*bar);
    AddIcons(*window);
    AddLedgerKey(*window);
    ConnectFindBoxes(*window);
    ApplyRoles(*window);
    return window;
  }
  return nullptr;
}

}  // namespace tallwick
