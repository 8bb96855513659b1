// Choosing the bank account to work on: which banks are offered, and the dialog frmBankSelect.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

struct BankRecord;

// Codes in "Inactive Banks.dat", one a line, without blanks behind them, empty lines skipped; none when the
// file is missing.
std::vector<std::string> InactiveBanks(const Session& session);

// The banks in which the current user may work, in name order: all of them while security is off.
std::vector<BankRecord> UserBanks(Session& session);
// What must stand beside figures over the user's banks where the company has others; "" where it has not.
std::string OtherBanksNote(Session& session);

// The banks that the current user may choose, in name order: those not inactive and, while security is on,
// among the user's.
std::vector<BankRecord> OfferedBanks(Session& session);

// Selects a bank by its code as the dialog does, the date advance included. False after a message when there
// is no such bank or it is not offered.
bool SelectBank(Session& session, std::string_view code);

// The critical message for a bank that is gone.
std::string BankGoneMessage(std::string_view code);

// Controls: lstBankNames, lblBankName, lblAcctStmtDates, cmdOk, cmdCancel.
class FrmBankSelect : public Form {
 public:
  explicit FrmBankSelect(Session& session);

 protected:
  void OnOpen() override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;

 private:
  void ShowBank();
  void Confirm();

  Session& session_;
  std::vector<std::string> codes_;  // the bank code of each list line
};

}  // namespace tallwick
