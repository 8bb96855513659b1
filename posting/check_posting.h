// frmEditChecksPost, the check screen, in its modes: "Posting" enters new checks of one bank and changes
// posted ones, "Viewing" shows them, "Clearing", "Voiding" and "Stop Payment" give a posted check another
// status. "Voiding" also enters checks that are void from the first, such as spoiled stock.
//
// Controls, in order: the entries of check_entry.cpp (txtCheckNumber … txtRemittanceAdvice), chkHandwritten,
// txtCheckStmtPeriod and txtCheckReason (of a change of status), txtCheckStatus (the status as the audit
// trail sees it, never shown); the labels lblLastCheckNumber (last or next number), lblHighestCheckNumber
// (gap warning), lblCheckStatus, lblVoucherInformation, lblEditMessage; the register lstCheckNumbers with the
// buttons that choose what it lists; the payee look-up of payee_posting_form.h; the buttons cmdOk,
// cmdSetOutstanding, cmdPrint, cmdDone; the commands of check_commands.cpp.
//
// Invariant: loaded_ is the posted check that the entries show, as it was read; without it the entries are a
// new check. Nothing is written but by Post and the two commands that say so, and there only when every test
// is passed.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "posting/check_entry.h"
#include "posting/check_mode.h"
#include "posting/check_numbering.h"
#include "posting/check_ports.h"
#include "posting/check_register.h"
#include "posting/payee_posting_form.h"
#include "posting/post_check.h"

namespace tallwick {

class FrmEditChecksPost : public PayeePostingForm {
 public:
  // Works on the session's selected bank, also when another is selected later.
  FrmEditChecksPost(Session& session, ScreenOpener& opener, CheckMode::Kind mode = CheckMode::Kind::kPosting,
                    const CheckPorts& ports = {});

 protected:
  void OnOpen() override;
  void OnEnter(Control& control) override;
  void OnLeave(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool EnterGoesOn() override;
  bool OnClose() override { return MayLeaveCheck(); }
  // Goes on in another mode with the posted check that is shown.
  bool OnMode(std::string_view mode) override;
  bool OpenRegister() override { return register_->Open(bank_code_); }
  void RefreshRegister() override;
  bool Post() override;
  void RestoreKey() override;
  bool IsEntry(const Control& control) const override;
  bool IsKey(const Control& control) const override { return control.name == "txtCheckNumber"; }
  bool IsPosted() const override { return loaded_.has_value(); }
  int Right() const override { return mode_->right; }
  std::string CurrentFile() override { return std::string(Trim(Text("txtCheckFileNumber"))); }

 private:
  void AddControls();
  void AddCommands();
  bool Is(CheckMode::Kind kind) const { return mode_->kind == kind; }
  bool SetsStatus() const { return !mode_->status.empty(); }

  // Commands (check_commands.cpp).
  bool ListCommand(std::string_view command);
  bool OrderCommand(std::string_view command);
  void SwitchTo(const CheckMode& mode);
  void UseNextNumber();
  void BeginRenumbering();
  // The number entry is the new number from here on.
  void ShowRenumbering();
  void RemovePosted();

  // The number: which check it names, and what is said about it (check_number.cpp).
  void LookUpNumber();
  bool ShowsOther(const std::string& number);
  void GoToFirst();
  std::string TypedNumber();
  void OpenNumber(const std::string& number);
  void ShowCheck(const CheckRecord& check);
  void ClearEntries();
  void BeginNewCheck();
  // A new check, or a blank number where the mode has none to propose.
  void BeginNext();
  void OfferRemovalOfZero();
  // True when the check was removed; what failed has been shown.
  bool Remove(const CheckRecord& check);
  void ReadNumbering();
  void WarnOfNumber();
  void ShowState();
  bool EntersNew() const;

  // What may be entered (check_closed_entries.cpp).
  void ShowWhatMayBeEntered();
  // Why entries of the posted check are closed; "" where none is.
  std::string WhatIsClosed() const;
  bool MayEnter(const Control& control, bool restricted) const;

  // The voucher that the check names (check_voucher_entry.cpp).
  // As it concerns this check: without its own number.
  std::optional<VoucherRecord> FindVoucher(const std::string& number);
  std::string OwnNumber();
  void LookUpVoucher();
  // Says again what a look-up says, where the voucher has changed since.
  void WarnOfChangedVoucher();
  void TellVoucher(const std::optional<VoucherRecord>& voucher);
  void OfferVoucher();
  void FillFrom(const VoucherRecord& voucher);
  void Fill(std::string_view entry, std::string* filled, const std::string& now);
  bool MayLeaveCheck();

  // Posting (check_posting_save.cpp). True when the check was written.
  bool PostEntry();
  bool PostStatus(std::string_view status);
  bool MayChange();
  bool MayTakeNumber(std::string* number);
  bool MayPost(Period* accounting);
  // Reads the statement period into the check, whose accounting period is known.
  bool MayUseStatement(CheckRecord* check);
  CheckRecord Record(const Period& accounting);
  bool WriteNew(const CheckRecord& check);
  bool WriteChanged(const CheckRecord& check, int audit_tx);
  std::optional<bool> SettleTaken(CheckRecord check);
  bool GivesUpPaper(const std::string& taken, const std::string& next);
  // `status`: the one that was to be given; "" for an entry.
  bool SettleElsewhere(std::string_view status);
  void ReportFailure(const PostOutcome& outcome, std::string_view number);
  void RefuseTaken(const std::string& number);
  // `is_gone`: no check has its number any more.
  void TellPositivePay(const CheckRecord& check, bool is_gone = false);
  void AfterWriting();
  void Print();
  bool PostedCheckStands();  // as it is shown; false after a message

  const CheckMode* mode_;
  const CheckPorts ports_;
  std::shared_ptr<CheckRegister> register_;
  CheckNumbering numbering_;
  std::optional<CheckRecord> loaded_;
  bool renumbering_ = false;   // the number entry is the new number of loaded_
  bool printed_ = false;       // the new check went to paper and is not posted yet
  std::string warned_number_;  // the number that was measured against the stock
  std::string looked_up_voucher_;
  // As it was when its warnings were last looked at; none where no voucher had the number.
  std::optional<VoucherRecord> seen_voucher_;
  std::string filled_amount_;  // by a voucher, into a new check
  std::string filled_payee_;
};

}  // namespace tallwick
