// wire: posting through the wire screen, and looking at what is posted.
#include "cli/commands/posted.h"
#include "core/text.h"
#include "posting/entry_problems.h"
#include "posting/wire_validation.h"
#include "tables/status_text.h"
#include "tables/wire_table.h"

namespace tallwick::cli {

namespace {

constexpr std::string_view kScreen = "frmEditWiresPost";

struct WireArguments {
  std::string number;
  std::vector<TypedEntry> entries;
  std::string status;
};

// The number goes first: it decides whether the screen shows a posted wire.
std::vector<TypedEntry> WithNumber(const WireArguments& arguments) {
  std::vector<TypedEntry> entries = {{"txtWireNumber", arguments.number}};
  entries.insert(entries.end(), arguments.entries.begin(), arguments.entries.end());
  return entries;
}

int Post(Office& office, const WireArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<WireTable> wires = OpenPosted<WireTable>(office, &status);
  if (!wires) return status;
  const ScreenOutcome outcome =
      PostOnScreen(office, {.screen = kScreen, .only_new = true}, WithNumber(arguments));
  return ShowPosted(office, *wires, outcome, !outcome.key.empty() && wires->SeekNumber(outcome.key),
                    "Wire " + Quoted(arguments.number));
}

int Show(Office& office, const WireArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<WireTable> wires = OpenPosted<WireTable>(office, &status);
  if (!wires) return status;
  return ShowFields(office, *wires, wires->SeekNumber(arguments.number),
                    "Wire " + Quoted(arguments.number) + " is not posted");
}

int Clear(Office& office, const WireArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<WireTable> wires = OpenPosted<WireTable>(office, &status);
  if (!wires) return status;
  const std::string name = "Wire " + Quoted(arguments.number);
  if (!wires->SeekNumber(arguments.number)) return office.Refuse(name + " is not posted");
  if (const std::string why = ClearingRefusal(wires->Read()); !why.empty()) return office.Refuse(why);
  const ScreenOutcome outcome = PostOnScreen(office, {kScreen}, WithNumber(arguments));
  return ShowChanged(office, *wires, outcome, !outcome.key.empty() && wires->SeekNumber(outcome.key), name,
                     " was not cleared");
}

int Remove(Office& office, const WireArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<WireTable> wires = OpenPosted<WireTable>(office, &status);
  if (!wires) return status;
  return RemoveOnScreen(office, {kScreen, "Posting", "mnuEditRemoveWire"},
                        {"txtWireNumber", arguments.number}, "Wire " + Quoted(arguments.number),
                        wires->SeekNumber(arguments.number));
}

int List(Office& office, const WireArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<WireTable> wires = OpenPosted<WireTable>(office, &status);
  if (!wires) return status;
  const std::string wanted = ToUpper(arguments.status);
  Output& out = office.Out();
  out.StartList("wires");
  for (bool on = wires->Top("WIRENUMBER"); on; on = wires->Skip()) {
    const WireRecord wire = wires->Read();
    if (!wanted.empty() && wire.status != wanted) continue;
    out.Item(out.IsJson() ? FieldsJson(*wires) : Json(),
             PadRight(wire.number, 12) + "  " + PadRight(DisplayDate(wire.dated), 10) + "  " +
                 PadLeft(AmountText(wire.amount), 14) + "  " + PadRight(wire.file_number, 14) + "  " +
                 PadRight(WireStatusText(wire.status), 11) + "  " + wire.payee);
  }
  out.EndList();
  return kDone;
}

constexpr EntryOption kPostOptions[] = {
    {"--dated", "txtWireDated", true, "Date of the wire, MM/DD/YYYY"},
    {"--payee", "txtWirePayee", true, "Payee"},
    {"--amount", "txtWireAmount", true, "Amount"},
    {"--file", "txtWireFileNumber", true, "Escrow file number"},
    {"--period", "txtWireAcctPeriod", true, "Accounting period in the bank's form"},
    {"--stmt", "txtWireStmtPeriod", false, "Statement period: the wire is cleared at once"},
    {"--control", "txtWireControl", false, "Control number"},
};
constexpr EntryOption kClearOptions[] = {
    {"--stmt", "txtWireStmtPeriod", true, "Statement period"},
};

void AddWithNumber(CLI::App& wire, Action& chosen, const char* name, const char* what,
                   std::span<const EntryOption> options, int (*run)(Office&, const WireArguments&)) {
  CLI::App* command = wire.add_subcommand(name, what);
  auto arguments = std::make_shared<WireArguments>();
  command->add_option("NUMBER", arguments->number, "Number of the wire")->required();
  AddEntryOptions(*command, options, arguments->entries);
  Choose(command, chosen, arguments, run);
}

}  // namespace

void AddWireCommands(CLI::App& app, Action& chosen) {
  CLI::App* wire = app.add_subcommand("wire", "Outgoing wires of the selected bank");
  wire->require_subcommand(1);
  AddWithNumber(*wire, chosen, "post", "Posts a wire through the wire screen", kPostOptions, Post);
  AddWithNumber(*wire, chosen, "show", "A wire's fields", {}, Show);
  AddWithNumber(*wire, chosen, "clear", "Marks a wire cleared", kClearOptions, Clear);
  AddWithNumber(*wire, chosen, "remove", "Removes an outstanding wire and its cross-reference", {}, Remove);
  CLI::App* list = wire->add_subcommand("list", "Posted wires");
  auto arguments = std::make_shared<WireArguments>();
  list->add_option("--status", arguments->status, "Only those with this status: O or C")
      ->check(CLI::IsMember({"O", "C"}, CLI::ignore_case));
  Choose(list, chosen, arguments, List);
}

}  // namespace tallwick::cli
