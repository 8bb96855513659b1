// frmViewFileLedgers: the ledger of one escrow file on screen, with the sections and totals of the printed
// one, the file's notes beside it, and the way from an item to the screen that it was posted with.
//
// Controls, in order: the commands of report_form.h and mnuFileRefresh; txtFileNumber, cmdShow; lstBanks (the
// banks with transactions of the file, one of which is shown); the grids grdChecks, grdWires, grdDeposits,
// grdVouchers and grdTotals; cmdOpenItem; the labels lblFileBalance, lblCondition, lblStatus,
// lblMultipleBanks, lblVouchered, lblMessage (why there is no ledger) and lblNotes. Invariant: everything but
// txtFileNumber shows reading_, which is of one moment.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "reports/ledger_reader.h"
#include "reports/ledger_report.h"
#include "reports/report_form.h"

namespace tallwick {

class FrmViewFileLedgers : public ReportForm {
 public:
  // `file_number` is shown at once; "" leaves the choice to the user.
  FrmViewFileLedgers(Session& session, ScreenOpener& opener, std::string_view file_number);

  std::optional<ReportDocument> Report() override;

 protected:
  void OnOpen() override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool OnMode(std::string_view file_number) override;

 private:
  void ShowFile();
  void ShowHead();
  void ShowBank();
  void ShowNotes();
  const BankLedger* Bank();

  // The item marked in a grid.
  struct Marked {
    LedgerSection section;
    std::size_t row;
  };
  void Mark(std::optional<Marked> item);
  void OpenMarked();
  bool MaySelect(const BankLedger& bank);

  LedgerReading reading_{FileLedger(""), {}, true};
  std::optional<Marked> marked_;
};

}  // namespace tallwick
