// frmEditWiresPost, the screen of outgoing wires: entry of new wires of one bank, and changes to posted ones.
// Money that comes in by wire is a deposit with the wire-in mark; this screen says so.
//
// Controls, in order: the entries (txtWireNumber … txtWireStmtPeriod); the labels lblWireStatus,
// lblEditMessage, lblLastReconciled and lblWireIn (where incoming wires go); the register lstWireNumbers; the
// buttons cmdOk, cmdDone, cmdListAll, cmdListOutstanding and cmdListCleared.
#pragma once

#include <memory>
#include <string>

#include "posting/item_posting_form.h"
#include "posting/wire_register.h"

namespace tallwick {

class FrmEditWiresPost : public ItemPostingForm<WireRecord> {
 public:
  // In the mode "Viewing" nothing can be changed.
  explicit FrmEditWiresPost(Session& session, bool viewing = false);

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;

  std::string FileNumber() override { return Text("txtWireFileNumber"); }
  bool OpenRegister() override { return register_->Open(bank_code_); }
  std::optional<WireRecord> FindPosted(const std::string& number) override;
  const std::string& NumberOf(const WireRecord& wire) const override { return wire.number; }
  std::string ItemName(const std::string& number) const override { return "Wire " + number; }
  void ShowBeside(const WireRecord* wire) override;
  WireRecord BlankRecord() override;
  void Complete(WireRecord* wire) override;
  bool MayPost() override;
  PostOutcome WriteNew(const WireRecord& wire) override;
  PostOutcome WriteChanged(const WireRecord& before, const WireRecord& after) override;
  std::string NotAdded(const PostOutcome& outcome, const std::string& number) const override;
  std::string NothingChanged(const std::string& number) const override;
  void RefreshRegister() override;

 private:
  std::string Restriction(const WireRecord& wire) const;
  void ShowDestination();

  const bool viewing_;
  std::shared_ptr<WireRegister> register_;
};

}  // namespace tallwick
