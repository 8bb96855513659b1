// frmEditDepositsClear, the screen that marks the items of a posted deposit cleared on a bank statement, or
// sets them outstanding again.
//
// Controls, in order: txtDepositDated and txtDateSequence, which select the deposit; txtStmtPeriod; for each
// item 1 to 15 chkCleared, lblItems (file, source), lblItemAmounts and lblItemPeriods (of the statement); the
// labels lblDepositStatus and lblLastReconciled; the register lstDepositDates; the buttons cmdOk, cmdMarkAll
// and cmdClose; mnuViewFileLedgers, for the file of the item that held the cursor last.
//
// Invariants: loaded_ is the deposit that is shown, as it was read. An item of a statement period that has
// been reconciled is not changed.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "posting/deposit_register.h"
#include "posting/posting_form.h"

namespace tallwick {

class FrmEditDepositsClear : public PostingForm {
 public:
  // `opener` opens the ledger of an item's file; null where nobody can.
  explicit FrmEditDepositsClear(Session& session, ScreenOpener* opener = nullptr);

 protected:
  void OnOpen() override;
  void OnEnter(Control& control) override;
  void OnLeave(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool EnterGoesOn() override;

  bool OpenRegister() override { return deposits_->Open(bank_code_); }
  void RefreshRegister() override;
  bool Post() override;
  void RestoreKey() override { ShowKey(); }
  bool IsEntry(const Control& control) const override { return control.name == "chkCleared"; }
  bool IsPosted() const override { return loaded_.has_value(); }
  std::string CurrentFile() override;

 private:
  void ShowKey();
  void GoToItemBehind(int item);  // the next that can be marked
  void LookUpDeposit();
  void ShowDeposit(const DepositRecord& deposit);
  void ShowNothing();
  void ShowItem(int item);
  // The stored statement period of the item, in a hidden control: for the audit trail, which looks at entries.
  void KeepItemPeriod(const DepositRecord& deposit, int item);
  void AuditMarks(const DepositRecord& marked, const std::string& name);
  bool MayMark(const DepositItem& item) const;
  bool MayChange();
  void MarkAll();
  // The deposit with the marks of the screen, the newly cleared items in the period.
  DepositRecord Marked(const Period& statement);
  bool ClearsAny();
  bool MayPost(Period* statement);
  bool SettleFailure(const PostOutcome& outcome);

  std::shared_ptr<DepositRegister> deposits_;
  std::optional<DepositRecord> loaded_;
  int current_item_ = 1;  // that held the cursor last
};

}  // namespace tallwick
