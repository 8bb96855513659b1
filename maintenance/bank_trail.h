// What the audit trail says of a bank's own record: one "Account Edit" entry for each change of it, in the
// log of that bank, with an "[EDIT]" line per field and the bank's code as the reference.
//
// The controls of the lines: "chkGenAuditTrail" is the switch of the trail, the other switches are "chk" and
// the field's name ("chkPPUSEPP"), all other fields "txt" and the name ("txtBANKNAME").
//
// Invariant: who switches the trail on or off stands in the trail. An entry is written when the trail was on
// before the change or is on after it. A deleted bank's entry is "[DELETE]" and the code.
#pragma once

#include <memory>

#include "audit/audit_trail.h"
#include "core/message_boxes.h"
#include "store/clsKVRData.h"

namespace tallwick {

class BankTrail {
 public:
  // Remembers the current record of the open table ESCROW_BANKS, which should be locked. `target` says where
  // and as whom entries are written; its bank and its switch are the record's.
  BankTrail(const AuditTarget& target, MessageBoxes& boxes, clsKVRData& store, DataHandle banks);
  ~BankTrail();
  BankTrail(const BankTrail&) = delete;
  BankTrail& operator=(const BankTrail&) = delete;

  // After the record was changed or deleted, with the table still on it.
  void Write();

 private:
  class RecordForm;

  bool IsOn() const;  // what the record's switch says now

  AuditTarget target_;
  clsKVRData& store_;
  DataHandle banks_;
  bool was_deleted_;  // then it is nobody's account any more
  std::unique_ptr<RecordForm> form_;
};

}  // namespace tallwick
