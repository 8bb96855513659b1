// frmViewTrialBalance: every escrow file with what it received, paid and holds, in one bank or in all, and
// the lists cut from it. A chosen file opens its ledger.
//
// Controls, in order: the commands of report_form.h; lstBanks (all banks first), lstKinds, txtAsOf (blank:
// every item), txtDormantDays (seen for dormant files only), cmdCompute; lblProgress and prgProgress (whose
// value is the percentage; seen only while the tables are read); grdFiles, cmdOpenLedger and
// mnuViewFileLedgers; the labels lblMonthNote (what the day means for banks kept by the month), lblCount,
// lblReceipts, lblDisbursements and lblBalance. Invariant: the grid and the labels show the same computation,
// that of the terms that are entered, or nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/report_form.h"
#include "reports/trial_balance.h"

namespace tallwick {

class FrmViewTrialBalance : public ReportForm {
 public:
  FrmViewTrialBalance(Session& session, ScreenOpener& opener);

  std::optional<ReportDocument> Report() override;

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnChange(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;
  std::string CurrentFile() override { return FileOfChosenRow(At("grdFiles")); }

 private:
  const std::string& ChosenBank();
  TrialKind ChosenKind();
  // False after a refusal.
  bool TakeTerms();
  void Compute();
  void Forget();
  bool ShowProgress(std::string_view what, std::int64_t done, std::int64_t total);
  // `message`: why there are no files to show.
  void ShowResult(const std::string& message);
  void OpenLedger();

  std::vector<std::string> bank_codes_;  // of the list's lines; "" for all
  TrialTerms terms_;                     // of the computation shown
  TrialBalance balance_;
};

}  // namespace tallwick
