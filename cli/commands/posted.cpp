#include "cli/commands/posted.h"

#include <algorithm>

#include "posting/posting_form.h"

namespace tallwick::cli {

void AddEntryOptions(CLI::App& command, std::span<const EntryOption> options,
                     std::vector<TypedEntry>& entries) {
  for (const EntryOption& entry : options) {
    const std::function<void(const std::string&)> type = [&entries,
                                                          control = entry.control](const std::string& text) {
      entries.push_back({control, text});
    };
    command.add_option_function(entry.option, type, entry.what)->required(entry.required);
  }
}

bool OpenOfBank(Office& office, TableBase& table, int* status) {
  Session* session = office.Open();
  if (table.Open(session->BankCode()) > 0) return true;
  const bool held = session->Data().OpenErrorCode() == engine::kErrorOpenRefused;
  office.Out().Fail("The table " + table.Name() + " could not be opened" +
                    (held ? ": " + std::string(kTableIsHeld) : ""));
  *status = kNoTables;
  return false;
}

namespace {

// Types or presses; false when a command was refused.
bool Use(Form& form, const TypedEntry& entry) {
  const Control* control = form.Find(entry.control, entry.index);
  if (control == nullptr) return false;
  switch (control->kind) {
    case ControlKind::kCheck:
      form.SetCheck(entry.control, 1, entry.index);
      return true;
    case ControlKind::kButton:
      form.Click(entry.control);
      return true;
    case ControlKind::kMenu:
      form.Menu(entry.control);
      return form.Focus() == nullptr || !form.Focus()->refused;
    default:
      form.Change(entry.control, entry.text, entry.index);
      return true;
  }
}

// A screen says in a label why nothing can be done to what it shows.
void TellWhyClosed(Office& office, Form& form) {
  form.Leave();
  const Control* why = form.Find("lblEditMessage");
  if (why != nullptr && !why->caption.empty()) {
    office.Boxes().Critical(form.Caption(), why->caption);
  }
}

bool UseAll(Form& form, std::span<const TypedEntry> entries) {
  return std::all_of(entries.begin(), entries.end(),
                     [&](const TypedEntry& entry) { return Use(form, entry); });
}

}  // namespace

ScreenOutcome PostOnScreen(Office& office, const ScreenUse& use, const std::vector<TypedEntry>& entries) {
  const std::unique_ptr<Form> form = office.MakeScreen(use.screen, use.mode);
  auto* posting = dynamic_cast<PostingForm*>(form.get());
  if (posting == nullptr) return {};
  if (use.any_number) posting->TakeAnyNumber();
  form->Opened();
  const auto behind_key = std::find_if_not(entries.begin(), entries.end(), [&](const TypedEntry& entry) {
    const Control* control = form->Find(entry.control, entry.index);
    return control != nullptr && posting->IsKey(*control);
  });
  if (!UseAll(*form, {entries.begin(), behind_key})) return {};
  if (use.only_new) {
    form->Leave();  // the screen looks the key up
    if (posting->IsPosted()) return {.key = {}, .taken = true};
  }
  if (!UseAll(*form, {behind_key, entries.end()})) return {};
  const Control* press = form->Find(use.press);
  if (use.press.empty()) {
    form->Leave();
  } else if (press != nullptr && !press->enabled) {
    TellWhyClosed(office, *form);
  } else {
    // Whatever was asked until here was another question, and took no answer from this.
    if (use.confirmed) office.Boxes().QueueAnswer(BoxAnswer::kYes);
    Use(*form, {std::string(use.press), {}});
  }
  return {.key = posting->LastPosted()};
}

Json FieldsJson(const TableBase& table) {
  return RecordJson(table.Data(), table.Handle(), table.Data().FieldList(table.Handle()), Trimming::kBoth);
}

int ShowFields(Office& office, const TableBase& table) {
  const Json fields = FieldsJson(table);
  office.Out().Set("fields", fields);
  office.Out().Line(FieldLines(fields));
  return kDone;
}

int ShowFields(Office& office, const TableBase& table, bool found, const std::string& not_found) {
  return found ? ShowFields(office, table) : office.Refuse(not_found);
}

int ShowPosted(Office& office, const TableBase& table, const ScreenOutcome& outcome, bool found,
               const std::string& name) {
  const bool posted = !outcome.key.empty();
  office.Out().Set("posted", posted);
  if (!posted) return office.Refuse(name + (outcome.taken ? " is posted already" : " was not posted"));
  office.Out().Line("posted");
  return ShowChanged(office, table, outcome, found, name, {});
}

int ShowChanged(Office& office, const TableBase& table, const ScreenOutcome& outcome, bool found,
                const std::string& name, std::string_view not_done) {
  if (outcome.key.empty()) return office.Refuse(name + std::string(not_done));
  if (found) return ShowFields(office, table);
  office.Stands(name + " could not be shown: " + table.Name() +
                " can not be read now.  What was written stands: do not repeat it.");
  return kDone;
}

int RemoveOnScreen(Office& office, ScreenUse use, const TypedEntry& number, const std::string& name,
                   bool posted) {
  // Who gives the command has answered whether it shall be removed. Only a number zero, which the screen
  // offers for removal as soon as it is looked up, is asked about.
  use.confirmed = true;
  const bool removed = posted && !PostOnScreen(office, use, {number}).key.empty();
  office.Out().Set("removed", removed);
  if (removed) {
    office.Out().Line("removed");
    return kDone;
  }
  return office.Refuse(name + (posted ? " was not removed" : " is not posted"));
}

}  // namespace tallwick::cli
