// frmMainEscrowAccounting: the one window that stays open for the whole run. It names the selected bank,
// shows the bank's figures and opens every other screen.
//
// Controls, in order:
//   menu commands  mnuFileOpen, mnuFileClose, mnuFileExit, mnuEditChecksPost, mnuViewRefresh,
//                  mnuToolsUsers, mnuHelpAuditTrailViewer
//   status panels  BankName, Printer, Version (labels)
//   main area      lblBankName, lblBankAddress, lblAccountNumber, lblAcctPeriod, lblLastReconciliation,
//   lblBookBalance,
//                  lblOutstandingChecks, lblOutstandingDeposits (labels), grdLatestPostings (grid)
// A command that the user may not use, or that needs a bank while none is selected, is disabled.
#pragma once

#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

class FrmMainEscrowAccounting : public Form, private SessionWatcher {
 public:
  FrmMainEscrowAccounting(Session& session, ScreenOpener& opener);
  ~FrmMainEscrowAccounting() override;

 protected:
  void OnOpen() override;
  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;

 private:
  void SessionChanged(SessionChange change) override;
  void ShowStatus();
  void ShowCommands();
  void ShowFigures();

  Session& session_;
  ScreenOpener& opener_;
};

}  // namespace tallwick
