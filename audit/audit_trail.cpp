#include "audit/audit_trail.h"

#include <optional>

#include "audit/audit_chain.h"
#include "audit/audit_log.h"
#include "core/encoding.h"

namespace tallwick {
namespace {

bool IsSwitch(const Control& control) {
  return control.kind == ControlKind::kCheck || control.kind == ControlKind::kOption;
}

bool IsSnapshotText(const Control& control) {
  switch (control.kind) {
    case ControlKind::kText:
    case ControlKind::kCombo:
    case ControlKind::kList:
    case ControlKind::kAmount:
    case ControlKind::kDate:
    case ControlKind::kPeriod:
    case ControlKind::kNumber:
      return true;
    default:
      return false;
  }
}

bool IsComparedText(const Control& control) {
  return IsSnapshotText(control) || control.kind == ControlKind::kMasked;
}

void Snapshot(Form& form) {
  for (Control& control : form.Controls()) {
    if (IsSwitch(control) || IsSnapshotText(control)) control.tag = ControlValue(control);
  }
}

// A value on one line: a line break inside it would look like the next event.
std::string OnOneLine(std::string text) {
  for (char& c : text) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return text;
}

std::string ChangedControls(const Form& form) {
  std::string events;
  for (const Control& control : form.Controls()) {
    if (!IsSwitch(control) && !IsComparedText(control)) continue;
    const std::string now = ControlValue(control);
    if (now == control.tag) continue;
    events += "[EDIT] " + control.name;
    if (control.index != 0) events += " (" + std::to_string(control.index) + ")";
    events += " was: " + OnOneLine(control.tag) + " now: " + OnOneLine(now) + "\r\n";
  }
  return events;
}

std::string EventLines(const Form& form, int action, int tx, const std::string& reference) {
  switch (action) {
    case kAuditAdd:
      if (reference.empty()) return {};
      return (tx == kAuditVoidCheck ? "[ADD VOID] " : "[ADD] ") + reference + "\r\n";
    case kAuditSave:
      if (tx == kAuditVoidCheck) return "[VOID] " + reference + "\r\n";
      if (tx == kAuditSetOutstanding) return "[SET OUTSTANDING] " + reference + "\r\n";
      return ChangedControls(form);
    case kAuditDelete:
      return "[DELETE] " + reference + "\r\n";
    default:
      return {};
  }
}

}  // namespace

AuditTarget AuditTargetOf(const Session& session, std::string_view bank_code, bool on) {
  return {on,
          session.Files(),
          session.TheClock(),
          session.DataPath(),
          std::string(bank_code),
          session.Login(),
          session.TheWorkstation().ComputerName()};
}

void WriteAuditTrail(const AuditTarget& target, Form& form, int action, int tx, std::string_view reference) {
  if (!target.on) return;
  if (action == kAuditSnapshot) {
    Snapshot(form);
    return;
  }
  const std::string key = OnOneLine(std::string(reference));
  const std::string events = EventLines(form, action, tx, key);
  if (events.empty()) return;
  // The work that calls is done: it goes on without its entry where the log does not take it.
  (void)AppendAuditEntry(target, WriteAuditHeader(target, tx, key) + AuditBytes(events));
}

std::string WriteAuditHeader(const AuditTarget& target, int tx, std::string_view reference) {
  std::string line = "[DATE: " + AuditMoment(target.clock.Now()) + "][TX: ";
  line += AuditTxName(tx);
  line += "][REFERENCE: " + OnOneLine(std::string(reference)) + "][LOGIN: " + OnOneLine(target.login);
  line += "][COMPUTER: " + OnOneLine(target.computer) + "]\r\n";
  return AuditBytes(std::move(line));
}

bool AppendAuditEntry(const AuditTarget& target, std::string_view entry) {
  const std::string path = AuditLogPath(target);
  ChainedAppend log({target.files, target.disk, target.clock, path, AuditBytes(target.computer)});
  std::string bytes = target.files.FileExists(path) ? "\r\n" : "";
  bytes += entry;
  return log.Append(bytes);
}

std::string AuditBytes(std::string text) {
  std::optional<std::string> bytes = ToWindows1252(text);
  while (!bytes) {
    const std::string foreign = FirstCharacterOutside1252(text);
    const std::size_t place = foreign.empty() ? std::string::npos : text.find(foreign);
    if (place == std::string::npos) return text;
    text.replace(place, foreign.size(), "?");
    bytes = ToWindows1252(text);
  }
  return *bytes;
}

std::string_view AuditTxName(int tx) {
  switch (tx) {
    case kAuditAccountEdit:
      return "Account Edit";
    case kAuditPostDeposit:
      return "Post Deposit";
    case kAuditClearDeposit:
      return "Clear Deposit";
    case kAuditPostCheck:
      return "Post Check";
    case kAuditVoidCheck:
      return "Void Check";
    case kAuditPostWire:
      return "Post Wire";
    case kAuditSetOutstanding:
      return "Set Outstanding";
    default:
      return "Undefined";
  }
}

std::string AuditLogPath(std::string_view data_path, std::string_view bank_code) {
  return std::string(data_path) + "Logs\\" + std::string(bank_code) + "\\Audit_Trail.log";
}

std::string AuditLogPath(const AuditTarget& target) {
  std::string path = AuditLogPath(target.data_path, target.bank_code);
  target.files.CreateFolder(path.substr(0, path.rfind('\\') + 1));
  return path;
}

}  // namespace tallwick
