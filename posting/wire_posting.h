// frmEditWiresPost, the screen of outgoing wires: entry of new wires of one bank, and changes to posted ones.
// Money that comes in by wire is a deposit with the wire-in mark; this screen says so.
//
// Controls, in order: the entries (txtWireNumber … txtWireStmtPeriod); the labels lblWireStatus,
// lblEditMessage, lblLastReconciled and lblWireIn (where incoming wires go); the register and
// buttons of item_posting_form.h; mnuEditRemoveWire.
#pragma once

#include <string>

#include "posting/item_posting_form.h"
#include "tables/wire_table.h"

namespace tallwick {

class FrmEditWiresPost : public ItemPostingForm<WireRecord, WireTable> {
 public:
  // In the mode "Viewing" nothing can be changed.
  explicit FrmEditWiresPost(Session& session, ScreenOpener* opener = nullptr, bool viewing = false);

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool EnterGoesOn() override;

  void ShowBeside(const WireRecord* wire) override;
  WireRecord BlankRecord() override;
  void Complete(WireRecord* wire) override;
  bool MayPost() override;
  PostOutcome WriteNew(const WireRecord& wire) override;
  PostOutcome WriteChanged(const WireRecord& before, const WireRecord& after) override;
  std::string RemovalRefusal(const WireRecord& wire) const override;
  PostOutcome WriteRemoved(const WireRecord& wire) override;
  std::string NotAdded(const PostOutcome& outcome, const std::string& number) const override;

 private:
  void ShowDestination();
  // The entry behind the one that has the cursor, of a new wire; "" for the last one and for a posted wire.
  std::string_view EntryBehind() const;

  const bool viewing_;
};

}  // namespace tallwick
