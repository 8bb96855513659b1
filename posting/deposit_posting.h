// frmEditDepositsPost, the deposit screen: entry of deposits of one bank, and changes to posted ones. A
// deposit is one slip with up to 15 lines, each credited to an escrow file; a line whose money came by wire
// has the wire-in mark.
//
// Controls, in order: txtDepositDated and txtDateSequence, which select the deposit; txtDepositAcctPeriod;
// for each line 1 to 15 lblItemNumbers, txtFileNumbers, txtSources, txtAmounts, chkWireIn and lblItemStatus;
// the labels lblDepositTotal, lblItemCount, lblDepositStatus, lblEditMessage, lblLastReconciled and
// lblPasteBuffer; the register lstDepositDates; buttons and commands.
//
// Invariants: loaded_ is the posted deposit that the entries show, as it was read; without it the entries are
// a new one. origin_ says for every line where it comes from, also after lines have moved. Lines that were
// cut stand in buffer_ until a deposit with them is posted, or the user gives them up.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "posting/deposit_register.h"
#include "posting/deposit_validation.h"
#include "posting/posting_form.h"

namespace tallwick {

enum class DepositMode { kPosting, kViewing };

class FrmEditDepositsPost : public PostingForm {
 public:
  // In the mode "Viewing" nothing can be changed.
  explicit FrmEditDepositsPost(Session& session, ScreenOpener* opener = nullptr,
                               DepositMode mode = DepositMode::kPosting);

 protected:
  void OnOpen() override;
  void OnEnter(Control& control) override;
  void OnLeave(Control& control) override;
  void OnChange(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool EnterGoesOn() override;
  bool OnClose() override;

  bool OpenRegister() override;
  void RefreshRegister() override;
  bool Post() override;
  void RestoreKey() override;
  bool IsEntry(const Control& control) const override;
  bool IsKey(const Control& control) const override {
    return control.name == "txtDepositDated" || control.name == "txtDateSequence";
  }
  bool IsPosted() const override { return loaded_.has_value(); }
  // That of the line that held the cursor last.
  std::string CurrentFile() override { return RowAt(current_row_).file_number; }

 private:
  void AddControls();
  void AddRow(int row);
  void AddCommands();

  // Which deposit: date and sequence (deposit_posting.cpp).
  std::optional<Date> TypedDate();
  std::string TypedKey();  // stored date and sequence; "" while one is missing
  void LeaveDate();
  void LookUpDeposit();
  void OpenDeposit(const std::string& dated, const std::string& sequence);
  std::optional<DepositRecord> FindPosted(std::string_view dated, std::string_view sequence);
  void ShowDeposit(const DepositRecord& deposit);
  void BeginNew(const Date& date);
  void ProposeSequence();
  void KeepKey();
  void ShowState();
  void LeavePeriod();
  // A posted deposit does not leave a reconciled period.
  bool PeriodIsClosed();
  bool PeriodStands();
  // What is worth saying about the sequence of a new deposit, and which deposit was the last.
  std::string NewDepositNote();
  std::string ClearedEarlier(const Period& accounting);
  std::string UnsavedQuestion();
  void ToggleFreeFormat();
  std::string ShownDate(const Date& date);
  void ListItems(std::string_view status);
  void ListDeposits();

  bool GoOnFrom(const Control& control);
  bool EnterPosts(const Control& control);

  // The lines (deposit_posting_rows.cpp).
  DepositRow RowAt(int row);
  std::vector<DepositRow> Rows();
  void PutRow(const DepositRow& values, int row);
  void ClearRow(int row);
  void CloseGaps();
  void ShowRows();
  void ShowTotals();
  void CloseEntries();
  void LeaveFileNumber(int row);
  void InsertCurrentFile();
  void CutRows();
  void PasteRows();
  bool MayGiveUpBuffer();
  bool GiveUpBuffer();
  void TakePostedFromBuffer();
  // Asks about changes that are not posted. True when a posted deposit stands as it is stored, or a new one.
  bool ShowsWhatIsStored();

  // Posting (deposit_posting_save.cpp).
  bool MayPost();
  bool Accepts(const DepositFinding& finding);
  DepositRecord Record();
  bool Write(const DepositRecord& deposit);
  bool MayChangeReconciled();
  bool RemovePosted();
  std::string FailureText(const PostOutcome& outcome, const DepositRecord& deposit);
  bool SettleFailure(const PostOutcome& outcome, const DepositRecord& deposit);
  bool SettleElsewhere(const DepositRecord& deposit);
  void AfterWriting();
  void BeginNext();
  void PrintSlip();

  const bool viewing_;
  std::shared_ptr<DepositRegister> deposits_;
  std::shared_ptr<DepositItemRegister> items_;
  bool shows_items_ = false;  // the register lists items
  std::optional<DepositRecord> loaded_;
  struct Origin {
    int item = 0;  // of loaded_, from 1; 0 = none
    int cut = 0;   // line of buffer_ that was pasted, from 1; 0 = none
  };
  using Origins = std::array<Origin, kDepositItems + 1>;  // by line, from 1
  int ItemOf(int row) const { return origin_[static_cast<std::size_t>(row)].item; }
  bool HaveMoved();
  Origins origin_{};
  std::vector<DepositRow> buffer_;  // lines that were cut
  bool pasted_ = false;             // the entries hold the buffer's lines
  std::string kept_date_;           // of the deposit that the entries belong to, as shown
  std::string kept_sequence_;
  bool sequence_typed_ = false;   // since the date was typed
  std::string warned_date_;       // the date whose year was looked at
  std::string looked_at_period_;  // the period that was warned of
  int current_row_ = 1;           // the line that held the cursor last
};

}  // namespace tallwick
