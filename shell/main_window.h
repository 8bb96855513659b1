// frmMainEscrowAccounting: the one window that stays open for the whole run. It names the selected bank,
// shows the bank's figures and opens every other screen.
//
// Controls, in order:
//   menu commands  those of main_commands.h; mnuFileLockTransactions is checked while transactions are locked,
//                  mnuViewToolBar and mnuViewStatusBar while their bar is seen
//   bars           tbToolBar, sbStatusBar (frames)
//   status panels  BankName, Login, Printer, Version (labels)
//   main area      lblBankName, lblBankAddress, lblAccountNumber, lblAcctPeriod, lblLastReconciliation,
//                  lblBookBalance, lblOutstandingChecks, lblOutstandingDeposits, lblFilesOverdrawn (labels),
//                  txtFindFile (combo: a file number, with the branch's latest files on offer), cmdFindFile,
//                  grdLatestPostings (grid; its chosen row is the file at hand of mnuViewFileLedgers)
// A command is disabled that the user may not use, that needs a bank while none is selected, that enters
// transactions while they are locked, or whose screen there is not.
#pragma once

#include <optional>
#include <vector>

#include "core/form.h"
#include "shell/bank_figures.h"
#include "shell/main_commands.h"
#include "shell/session.h"

namespace tallwick {

class FrmMainEscrowAccounting : public Form, private SessionWatcher {
 public:
  FrmMainEscrowAccounting(Session& session, ScreenOpener& opener);
  ~FrmMainEscrowAccounting() override;

 protected:
  void OnOpen() override;
  void OnMenu(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool OnWork(std::chrono::milliseconds budget) override;

 private:
  void SessionChanged(SessionChange change) override;
  void ShowStatus();
  void ShowCommands();
  void TellUserProblem();
  bool IsOffered(const MainCommand& command, bool security_on, bool open) const;
  bool IsKeptOut() const;
  void ShowFigures();
  void ShowSums(const BankOverview& overview);
  void ReadAnew();
  void ShowRecentFiles();
  void CarryOut(std::string_view command);
  void ShowBar(std::string_view command, std::string_view bar, bool seen);
  void SwitchTransactions();
  void FindFile();
  // None: no bank is open.
  void ShowLatest(std::optional<std::vector<LatestPosting>> latest);
  void OpenPosting();
  void RememberFile(std::string_view file_number);

  Session& session_;
  ScreenOpener& opener_;
  BankFigures figures_;
  std::optional<std::vector<LatestPosting>> latest_;  // as shown
};

}  // namespace tallwick
