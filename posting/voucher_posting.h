// frmEditVouchersPost, the voucher screen: entry of new vouchers of one bank, and changes to posted ones.
//
// Controls, in order: the entries (txtVCHRNumber … txtVCHRCheckNumber), chkVCHRCleared; the labels
// lblVCHRStatus and lblEditMessage; the register lstVCHRNumbers; the buttons cmdOk, cmdNextVCHRNumber,
// cmdDone, cmdListAll, cmdListOutstanding and cmdListCleared.
#pragma once

#include <memory>
#include <string>

#include "posting/item_posting_form.h"
#include "posting/voucher_register.h"

namespace tallwick {

class FrmEditVouchersPost : public ItemPostingForm<VoucherRecord> {
 public:
  // In the mode "Viewing" nothing can be changed.
  explicit FrmEditVouchersPost(Session& session, bool viewing = false);

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;

  std::string FileNumber() override { return Text("txtVCHRFileNumber"); }
  bool OpenRegister() override { return register_->Open(bank_code_); }
  bool IsEntry(const Control& control) const override;
  std::optional<VoucherRecord> FindPosted(const std::string& number) override;
  const std::string& NumberOf(const VoucherRecord& voucher) const override { return voucher.number; }
  std::string ItemName(const std::string& number) const override { return "Voucher Number " + number; }
  std::string ProposedNumber() override;
  void ShowMarks(const VoucherRecord* voucher) override;
  void ShowBeside(const VoucherRecord* voucher) override;
  VoucherRecord BlankRecord() override;
  void Complete(VoucherRecord* voucher) override;
  bool MayPost() override;
  PostOutcome WriteNew(const VoucherRecord& voucher) override;
  PostOutcome WriteChanged(const VoucherRecord& before, const VoucherRecord& after) override;
  std::string NotAdded(const PostOutcome& outcome, const std::string& number) const override;
  std::string NothingChanged(const std::string& number) const override;
  void RefreshRegister() override;

 private:
  void TakeNextNumber();

  const bool viewing_;
  std::shared_ptr<VoucherRegister> register_;
};

}  // namespace tallwick
