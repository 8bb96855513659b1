// frmEditVouchersPost, the voucher screen: entry of new vouchers of one bank, and changes to posted ones.
//
// Controls, in order: the entries (txtVCHRNumber … txtVCHRCheckNumber), chkVCHRCleared; the labels
// lblVCHRStatus and lblEditMessage; cmdNextVCHRNumber; the register and buttons of item_posting_form.h;
// mnuEditRemoveVoucher.
#pragma once

#include <string>

#include "posting/item_posting_form.h"
#include "tables/voucher_table.h"

namespace tallwick {

class FrmEditVouchersPost : public ItemPostingForm<VoucherRecord, VoucherTable> {
 public:
  // In the mode "Viewing" nothing can be changed.
  explicit FrmEditVouchersPost(Session& session, ScreenOpener* opener = nullptr, bool viewing = false);

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnClick(Control& control) override;

  bool IsEntry(const Control& control) const override;
  std::string ProposedNumber() override;
  void ShowMarks(const VoucherRecord* voucher) override;
  void ShowBeside(const VoucherRecord* voucher) override;
  VoucherRecord BlankRecord() override;
  void Complete(VoucherRecord* voucher) override;
  bool MayPost() override;
  bool MayGoOn() override;
  PostOutcome WriteNew(const VoucherRecord& voucher) override;
  PostOutcome WriteChanged(const VoucherRecord& before, const VoucherRecord& after) override;
  std::string RemovalRefusal(const VoucherRecord& voucher) const override;
  PostOutcome WriteRemoved(const VoucherRecord& voucher) override;
  std::string NotAdded(const PostOutcome& outcome, const std::string& number) const override;

 private:
  void TakeNextNumber();
  // Whether its check is posted and uses it: that check's number is no matter of typing then.
  bool IsHeldByCheck(const VoucherRecord& voucher);
  // The warning of a new number that leaves a gap; "" for none.
  std::string Gap();

  const bool viewing_;
};

}  // namespace tallwick
