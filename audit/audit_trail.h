// The audit trail's writer: one text log per bank, "Logs\<bank>\Audit_Trail.log" in the data path, 8-bit text
// with CR LF line ends.
//
// An entry is a header line and its event lines, with an empty line before it unless it is the file's first:
//   [DATE: Mar 04, 2024 @ 02:07:31 PM][TX: Post Check][REFERENCE: 10452][LOGIN: jdoe][COMPUTER: FRONTDESK2]
//   [ADD] 10452
// An edit has one line per changed control: "[EDIT] txtPayee was: SMITH now: SMITH CO", with " (2)" behind
// the name of member 2 of a control array.
//
// Invariants: an entry reaches the file in one write, so that entries of two workstations never mix; no
// failure here ever reaches the caller. What was written is recorded in the log's companion (audit_chain.h).
//
// What is compared: the snapshot parks the values of seven kinds of entry (text, combo, list, amount, date,
// period, number) and of check boxes and options in the controls' tags; the comparison looks at those and at
// masked entries too, which are therefore compared against whatever their tag holds.
#pragma once

#include <string>
#include <string_view>

#include "core/form.h"
#include "shell/session.h"
#include "store/engine/file.h"

namespace tallwick {

enum AuditAction : int {
  kAuditAdd = 1,
  kAuditSnapshot = 2,  // a record has been loaded into the form for editing
  kAuditSave = 3,      // the edited record was saved, voided or set outstanding
  kAuditDelete = 4,
};

enum AuditTx : int {
  kAuditAccountEdit = 1,
  kAuditPostDeposit = 2,
  kAuditClearDeposit = 3,
  kAuditPostCheck = 4,
  kAuditVoidCheck = 5,
  kAuditPostWire = 6,
  kAuditSetOutstanding = 7,
};

// Where and as whom an entry is written.
struct AuditTarget {
  bool on = false;  // the bank keeps an audit trail; when false nothing at all happens, not even a snapshot
  FileSystem& files;
  Clock& clock;
  std::string data_path;  // ends with "\"
  std::string bank_code;  // trimmed
  std::string login;
  std::string computer;
  engine::FileLayer& disk = engine::SystemFiles();  // holds the log's companion
};

// The target for a bank of the session's company, which has its audit trail on or off.
AuditTarget AuditTargetOf(const Session& session, std::string_view bank_code, bool on);

// Writes what the action, the transaction and (for an edit) the form's controls say. `reference` is the
// caller's key of the record; an addition without one writes nothing.
void WriteAuditTrail(const AuditTarget& target, Form& form, int action, int tx, std::string_view reference);

// "Post Check"; "Undefined" for an unknown number.
std::string_view AuditTxName(int tx);

// The first line of an entry, as the log holds it (Windows-1252, with its line end).
std::string WriteAuditHeader(const AuditTarget& target, int tx, std::string_view reference);

// Appends a whole entry in the log's bytes, in one write, after an empty line where the log has entries.
// False when the log did not take it.
bool AppendAuditEntry(const AuditTarget& target, std::string_view entry);

// The text in the log's bytes: a character that its code page lacks becomes "?".
std::string AuditBytes(std::string text);

// Where the log of a bank lies; the code is trimmed.
std::string AuditLogPath(std::string_view data_path, std::string_view bank_code);
// The log's path in the held form; makes the missing folders.
std::string AuditLogPath(const AuditTarget& target);

}  // namespace tallwick
