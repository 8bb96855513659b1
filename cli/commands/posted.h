// What the commands on checks, deposits, wires and vouchers share: the bank's table, typing into the posting
// screen, and showing what is posted. ShowFields serves the bank commands too.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "core/form.h"
#include "tables/table_base.h"

namespace tallwick::cli {

// A text to be typed into a control; a check box is marked, a button pressed, a command given.
struct TypedEntry {
  std::string control;
  std::string text;
  int index = 0;
};

// An option whose text is typed into a control.
struct EntryOption {
  const char* option;
  const char* control;
  bool required;
  const char* what;
};
// Adds the options; what is given for them goes to the end of `entries`, which must outlive the parsing.
void AddEntryOptions(CLI::App& command, std::span<const EntryOption> options,
                     std::vector<TypedEntry>& entries);

// Opens the table of the selected bank; false after a message, with the exit status.
bool OpenOfBank(Office& office, TableBase& table, int* status);

// A table of the selected bank, open; null after a message.
template <class Table>
std::unique_ptr<Table> OpenPosted(Office& office, int* status) {
  Session* session = office.OpenBank();
  *status = session == nullptr ? office.Status() : kDone;
  if (session == nullptr) return nullptr;
  auto table = std::make_unique<Table>(session->Home());
  return OpenOfBank(office, *table, status) ? std::move(table) : nullptr;
}

// Which of a screen's modes, and the button or command at the end; "" only leaves the last field.
struct ScreenUse {
  std::string_view screen;
  std::string_view mode = {};
  std::string_view press = "cmdOk";
  // Nothing is done where the key shows a posted record: the screen would change it, and a command that posts
  // must not. The entries of the key stand first.
  bool only_new = false;
  // Nobody named a number: one that another workstation takes meanwhile gives way to the next.
  bool any_number = false;
  // The question that the button at the end asks is answered with Yes, behind the answers of the command
  // line.
  bool confirmed = false;
};
struct ScreenOutcome {
  std::string key;     // of what was posted; "" when the screen refused or could not be opened
  bool taken = false;  // only_new: the key is that of a posted record
};
// Types the entries into a posting screen in their order and presses the posting button.
ScreenOutcome PostOnScreen(Office& office, const ScreenUse& use, const std::vector<TypedEntry>& entries);

// The fields of the current record.
Json FieldsJson(const TableBase& table);

// Prints the current record under "fields"; kDone.
int ShowFields(Office& office, const TableBase& table);
// The same where it was found, else says that it was not. The exit status.
int ShowFields(Office& office, const TableBase& table, bool found, const std::string& not_found);

// Ends a command that changes a posted item on its screen: the fields of the current record where it was
// `found` behind the change, which stands also where it was not, else that the item of the `name` was
// `not_done`. The exit status.
int ShowChanged(Office& office, const TableBase& table, const ScreenOutcome& outcome, bool found,
                const std::string& name, std::string_view not_done);
// The same for a command that posts an item, with `posted`.
int ShowPosted(Office& office, const TableBase& table, const ScreenOutcome& outcome, bool found,
               const std::string& name);

// Has a screen look up the posted record that `number` names and remove it. `name` begins what is said where
// it is not `posted`, or was not removed. The exit status.
int RemoveOnScreen(Office& office, ScreenUse use, const TypedEntry& number, const std::string& name,
                   bool posted);

}  // namespace tallwick::cli
