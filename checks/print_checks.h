// frmPrintChecks: prints several posted checks of the selected bank in one go.
//
// Controls, in order: txtNumbers (numbers and ranges, "10452-10460, 10470"), cmdList, grdChecks (what they
// name, and when each was printed before), lblCount (how many, or what is wrong), chkPreview, cmdPrint,
// cmdDone; mnuViewFileLedgers, for the file of the row chosen. Invariant: what is printed is read again at
// that moment; the grid only shows it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "checks/check_batch.h"
#include "checks/stock_check_printer.h"
#include "shell/routed_form.h"

namespace tallwick {

class FrmPrintChecks : public RoutedForm {
 public:
  // `opener` opens the ledger of a check's file; null where nobody can.
  explicit FrmPrintChecks(Session& session, ScreenOpener* opener = nullptr);
  // False after a message when the tables of the bank cannot be opened.
  bool OpenTables() { return tables_.Open(bank_code_); }

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;
  std::string CurrentFile() override { return FileOfChosenRow(At("grdChecks")); }

 private:
  // The numbers behind the last one printed; "" where none was printed, or the check table ends there.
  std::string Proposal();
  CheckBatch Collect();
  void List();
  void Print();

  const std::string bank_code_;
  BankTables tables_;
  std::string listed_;  // the numbers that the grid shows
};

}  // namespace tallwick
