// frmReconcileAccount, the screen that balances a bank account against a bank statement.
//
// Controls, in order: the labels lblSteps 1 to 5 and lblInformation; the entries txtStatementDate (with the
// label lblStatementNote), txtBankStatementBalance, txtAdjustmentsinTransit, txtBeginningCheckBookBalance,
// txtPlusBankCredits and txtLessBankCharges; the results, which nobody types into:
// txtPlusOutstandingDeposits, txtLessOutstandingChecks, txtLessOutstandingWires, txtAdjustedBalance,
// txtPlusDeposits, txtPlusVoidedChecks, txtLessDisbursements, txtEndingCheckBookBalance,
// txtDifferenceBalances, txtClearedChecksThisBankStmt, txtClearedWiresThisBankStmt,
// txtClearedDepositsThisBankStmt, and txtFileLedgersTotal; the counts lblClearedChecksCount and
// lblClearedWiresCount; lblProof; a button for each list behind a figure (see kReconLists), cmdFiles, and
// with them lblItems, the register grdItems and cmdOpenItem, which opens the screen of the row that is
// chosen; prgProgress with lblProgress; lblStatus; txtReconciledThrough, txtTakeBackReason and cmdTakeBack;
// the buttons cmdCompute, cmdUpdateBankRecord and cmdClose; the commands and buttons of report_form.h, and
// mnuViewFileLedgers for the file of the row chosen.
//
// Invariants: results are shown only while findings_ holds what they were computed from, and they follow the
// entries; a bank record is written only right after a computation that left no difference. Once it is, the
// entries are closed and the results stay, until another statement date begins the next reconciliation.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "recon/recon_items.h"
#include "recon/recon_pass.h"
#include "recon/recon_report.h"
#include "reports/report_form.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"

namespace tallwick {

class FrmReconcileAccount : public ReportForm {
 public:
  // Works on the session's selected bank, also when another is selected later. `opener` opens the screen of
  // an item, and outlives the form; null where nobody can.
  FrmReconcileAccount(Session& session, ScreenOpener* opener);

  // False after a message when the bank is gone or its tables cannot be opened; the form is of no use then.
  bool OpenTables();
  std::optional<ReportDocument> Report() override;
  // The results, for other faces than a screen; null before a computation.
  const ReconResults* Results() const { return findings_ ? &results_ : nullptr; }
  // What every escrow file holds on the statement date; null before a computation.
  const FileTotals* Files() const { return findings_ ? &findings_->files : nullptr; }
  bool IsUpdated() const { return updated_; }

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnChange(Control& control) override;
  void OnClick(Control& control) override;
  void OnChoose(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool OnClose() override;
  void Sent() override { printed_ = true; }
  std::string CurrentFile() override { return FileOfChosenRow(At("grdItems")); }

 private:
  bool ReadBank();
  void ShowBank();
  bool ReadEntries();  // false after a refusal
  bool ReadStatementDate();
  bool Compute();  // false where nothing has been computed, after what was to be said
  bool RunPasses();
  bool ShowProgress(std::string_view what, std::int64_t done, std::int64_t total);
  void Forget();
  void ChangeStatement();  // the date was changed
  void SetEntriesOpen(bool open);
  void ClearEntries();                                  // to those that a reconciliation begins with
  std::string FirstText(std::string_view entry) const;  // of one that was cleared
  bool MayDropEntries();  // asks about what was typed; false when the person wants to go on with it
  void ShowResults();
  void ShowList(std::string_view control);
  void ShowFiles();
  void OpenShown();
  void SetWorking(bool working);

  bool MayWrite();
  bool Update();
  bool FiguresStand();  // whether the tables still come to the results
  void TakeBack();
  void ShowTakeBack();
  void Audit(int action);
  bool AskOnLeaving(std::string_view warning, std::string_view question, bool* yes);
  bool MayLeaveReport();  // asks about one that was not printed; false when the person or the printer says no

  const std::string bank_code_;
  const std::string bank_name_;
  BankRecord bank_;  // as it was read last
  BankTables tables_;
  bool charges_allowed_ = true;  // bank charges and credits may be entered

  Period statement_;
  ReconEntries entries_;
  std::unique_ptr<ReconFindings> findings_;
  ReconResults results_;
  ReportOrigin origin_;  // when they were computed
  bool updated_ = false;
  bool printed_ = false;
  bool working_ = false;
};

}  // namespace tallwick
