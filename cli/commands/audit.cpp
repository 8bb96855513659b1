// audit: reads and searches the selected bank's audit log, and proves that it stands as it was written.
#include "audit/audit_search.h"
#include "audit/audit_trail.h"
#include "audit/bank_proof.h"
#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick::cli {

namespace {

struct AuditArguments {
  AuditCriteria criteria;
  std::vector<std::string> kinds;
  std::string from;
  std::string to;
  bool any = false;
  bool prove = false;
  std::string seal;
};

// A day as scripts or as people write it.
std::optional<Date> DayOf(const std::string& text) {
  const std::optional<Date> day = ParseIsoDate(text);
  return day ? day : ParseDisplayDate(text);
}

std::string ReadableDay(const std::string& text) {
  return DayOf(text) ? "" : "a day is written YYYY-MM-DD or MM/DD/YYYY";
}

std::string KnownKind(const std::string& text) {
  for (AuditEventKind kind : kAuditEventKinds)
    if (EqualsIgnoreCase(AuditEventKindName(kind), text)) return "";
  return "a kind is Add, Add Void, Void, Set Outstanding, Delete, Edit or Grid";
}

AuditCriteria CriteriaOf(const AuditArguments& arguments) {
  AuditCriteria criteria = arguments.criteria;
  if (!arguments.from.empty()) criteria.from = *DayOf(arguments.from);
  if (!arguments.to.empty()) criteria.to = *DayOf(arguments.to);
  for (const std::string& name : arguments.kinds)
    for (AuditEventKind kind : kAuditEventKinds)
      if (EqualsIgnoreCase(AuditEventKindName(kind), name)) criteria.kinds.push_back(kind);
  criteria.meet_all = !arguments.any;
  return criteria;
}

// The lines of an event, a grid's rows among them.
std::vector<std::string> EventLines(const AuditLog& log, const AuditEvent& event) {
  std::vector<std::string> lines{FromWindows1252(event.line)};
  if (event.kind != AuditEventKind::kGrid) return lines;
  const AuditGrid& grid = log.Grid(event);
  for (const auto& [caption, rows] :
       {std::pair("Old Grid Value: ", &grid.old_rows), std::pair("New Grid Value: ", &grid.new_rows)})
    for (const std::vector<std::string_view>& row : *rows) {
      std::string cells;
      for (std::string_view cell : row) cells += (cells.empty() ? "" : " | ") + FromWindows1252(cell);
      lines.push_back(caption + cells);
    }
  return lines;
}

void ListEntry(const AuditLog& log, const AuditEntry& entry, Output& out) {
  std::vector<std::string> events;
  for (const AuditEvent& event : log.Events(entry))
    for (std::string& line : EventLines(log, event)) events.push_back(std::move(line));
  if (out.IsJson()) {
    const std::string time = entry.dated ? FormatDateTime(entry.when, "hh:nn:ss") : std::string();
    out.Item({{"date", entry.dated ? IsoDate(entry.when.date) : ""},
              {"time", time},
              {"tx", FromWindows1252(entry.tx)},
              {"reference", FromWindows1252(entry.reference)},
              {"login", FromWindows1252(entry.login)},
              {"computer", FromWindows1252(entry.computer)},
              {"events", events}},
             "");
    return;
  }
  std::string text = FromWindows1252(entry.header);
  for (const std::string& event : events) text += "\n  " + event;
  out.Item(Json(), text);
}

int Prove(Office& office, Session& session, const std::string& seal) {
  const AuditProof proof = ProveBankLog(session, session.BankCode(), seal);
  Output& out = office.Out();
  out.Set("proved", proof.proven);
  out.Set("records", proof.records);
  out.Set("since", proof.since);
  out.Set("recordedFrom", proof.recorded_from);
  Json unrecorded = Json::array();
  for (const UnrecordedLines& lines : proof.unrecorded)
    unrecorded.push_back({{"from", lines.first}, {"to", lines.last}});
  out.Set("unrecorded", unrecorded);
  out.Set("seal", proof.seal);
  out.Set("problems", proof.problems);
  out.Set("notes", proof.notes);
  const std::string summary = ProofSummary(proof);
  if (proof.proven) out.Line(summary);
  for (const std::string& note : proof.notes)
    if (!proof.proven || note != summary) out.Line(note);
  if (!proof.seal.empty()) out.Line("Seal: " + proof.seal);
  if (!proof.proven) out.Line("NOT proven:");
  for (const std::string& problem : proof.problems) out.Fail(problem);
  return proof.proven ? kDone : kRefused;
}

int Audit(Office& office, const AuditArguments& arguments) {
  Session* session = office.OpenBank();
  if (session == nullptr) return office.Status();
  if (arguments.prove || !arguments.seal.empty()) return Prove(office, *session, arguments.seal);
  const std::string path = AuditLogPath(session->DataPath(), session->BankCode());
  std::optional<std::string> bytes = office.Files().ReadIfThere(path);
  if (!bytes)
    return office.Refuse("The audit log " + office.Files().PlatformPath(path) +
                         " cannot be read.  Make sure that you may read it");
  const AuditLog log(std::move(*bytes));
  const AuditCriteria criteria = CriteriaOf(arguments);
  Output& out = office.Out();
  if (const std::string problem = CriteriaProblem(log, criteria); !problem.empty())
    return office.Refuse(problem);
  out.StartList("entries");
  for (std::uint32_t place : SearchAuditLog(log, criteria)) ListEntry(log, log.Entries()[place], out);
  out.EndList();
  if (log.Entries().empty()) {
    out.Set("message", std::string(kNoAuditEntries));
    out.Line(kNoAuditEntries);
  }
  return kDone;
}

}  // namespace

void AddAuditCommand(CLI::App& app, Action& chosen) {
  auto arguments = std::make_shared<AuditArguments>();
  AuditCriteria& criteria = arguments->criteria;
  CLI::App* audit = app.add_subcommand("audit", "Reads, searches and proves the bank's audit log");
  audit->add_option("--reference", criteria.reference, "Entries whose reference holds this text");
  audit->add_option("--login", criteria.login, "Entries whose login holds this text");
  audit->add_option("--computer", criteria.computer, "Entries whose computer's name holds this text");
  audit->add_option("--tx", criteria.tx_names, "Transaction, such as \"Post Check\"; may be repeated")
      ->allow_extra_args(false);
  audit->add_option("--kind", arguments->kinds, "Add, Add Void, Void, Set Outstanding, Delete, Edit or Grid")
      ->allow_extra_args(false)
      ->check(CLI::Validator(KnownKind, "KIND"));
  audit->add_option("--control", criteria.controls, "Entries that changed this control; may be repeated")
      ->allow_extra_args(false);
  audit->add_option("--grid", criteria.grids, "Entries that changed this grid; may be repeated")
      ->allow_extra_args(false);
  audit->add_option("--from", arguments->from, "First day, YYYY-MM-DD or MM/DD/YYYY")
      ->check(CLI::Validator(ReadableDay, "DAY"));
  audit->add_option("--to", arguments->to, "Last day")->check(CLI::Validator(ReadableDay, "DAY"));
  audit->add_flag("--any", arguments->any, "Any one criterion is enough");
  audit->add_flag("--newest-first", criteria.newest_first, "Latest entries first");
  audit->add_flag("--prove", arguments->prove, "Whether every line stands as it was written; exit 1 if not");
  audit->add_option("--seal", arguments->seal, "With --prove: a seal that an earlier proof gave");
  Choose(audit, chosen, arguments, Audit);
}

}  // namespace tallwick::cli
