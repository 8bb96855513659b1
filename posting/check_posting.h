// frmEditChecksPost, the check screen, in mode "Posting": entry of new checks of one bank, and changes to
// posted ones.
//
// Controls, in order: the entries of check_entry.cpp (txtCheckNumber … txtRemittanceAdvice), chkHandwritten;
// the labels lblLastCheckNumber (last or next number), lblHighestCheckNumber (gap warning), lblCheckStatus,
// lblVoucherInformation, lblEditMessage; the register lstCheckNumbers; the buttons cmdOk and cmdDone; the
// commands mnuEditUseNextHigherCheckNumber and mnuOptionsWarnHigherNumber (a check mark).
//
// Invariant: loaded_ is the posted check that the entries show, as it was read; without it the entries are a
// new check. Nothing is written but by Post, and there only when every test is passed.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "posting/check_entry.h"
#include "posting/check_numbering.h"
#include "posting/check_register.h"
#include "posting/post_check.h"
#include "posting/posting_form.h"

namespace tallwick {

class FrmEditChecksPost : public PostingForm {
 public:
  // Works on the session's selected bank, also when another is selected later.
  explicit FrmEditChecksPost(Session& session);

 protected:
  void OnOpen() override;
  void OnEnter(Control& control) override;
  void OnLeave(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  void OnMenu(Control& control) override;
  bool OpenRegister() override { return register_->Open(bank_code_); }
  bool Post() override;
  void RestoreKey() override;
  bool IsEntry(const Control& control) const override;
  bool IsPosted() const override { return loaded_.has_value(); }

 private:
  void AddControls();

  // The number: which check it names, and what is said about it (check_posting.cpp).
  void LookUpNumber();
  void OpenNumber(const std::string& number);
  void ShowCheck(const CheckRecord& check);
  void ClearEntries();
  void BeginNewCheck();
  void OfferRemovalOfZero();
  void ReadNumbering();
  void WarnOfNumber();
  void ShowState();
  void ShowRestrictions();
  void LookUpVoucher();
  void FillAmountFrom(const VoucherRecord& voucher);

  // Posting (check_posting_save.cpp). True when the check was written.
  bool MayPost(Period* accounting);
  CheckRecord Record(const Period& accounting);
  bool WriteNew(const CheckRecord& check);
  bool WriteChanged(const CheckRecord& check);
  void ReportFailure(const PostOutcome& outcome, std::string_view number);
  void AfterWriting();

  std::shared_ptr<CheckRegister> register_;
  CheckNumbering numbering_;
  std::optional<CheckRecord> loaded_;
  std::string looked_up_number_;  // the number that the entries belong to
  std::string warned_number_;     // the number that was measured against the stock
  std::string looked_up_voucher_;
};

}  // namespace tallwick
