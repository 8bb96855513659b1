// A posting screen whose records go by one number: wires and vouchers. The number entry looks the record up,
// the others hold it, cmdOk writes it.
//
// Invariant: loaded_ is the posted record that the entries show, as it was read; without it the entries are a
// new one.
#pragma once

#include <algorithm>
#include <optional>

#include "audit/audit_trail.h"
#include "posting/item_register.h"
#include "posting/payee_posting_form.h"

namespace tallwick {

// What a screen is about.
template <class Record, class Table>
struct ItemScreen {
  PostingScreen screen;
  std::string_view name;  // "Wire", as a sentence about one begins
  const TableLayout& layout;
  std::span<const EntryField<Record>> fields;  // the first is the number's
  Table BankTables::*table;
  std::string Record::*number;
  std::string_view payee;  // controls
  std::string_view file;
  std::string_view list;
};

template <class Record, class Table>
class ItemPostingForm : public PayeePostingForm {
 protected:
  // Adds the controls of the entries. `rows` is what the register lists.
  ItemPostingForm(Session& session, ScreenOpener* opener, const ItemScreen<Record, Table>& item,
                  const ItemRows<Record>& rows)
      : PayeePostingForm(session, item.screen, opener, PayeeEntries{item.payee}),
        item_(item),
        layout_(item.layout),
        fields_(item.fields),
        register_(std::make_shared<ItemRegister<Table, Record>>(session.Home(), rows)) {
    for (const EntryField<Record>& entry : fields_) {
      Add(entry.kind, std::string(entry.control), std::string(entry.caption)).max_length =
          TypedWidth(entry.kind, layout_, entry.field);
    }
  }

  // --- What a screen has of its own ---

  // The number that a new item gets unless another is typed, and the next one that is free.
  virtual std::string ProposedNumber() { return {}; }
  // Sets what is entered otherwise than as a text, for the record or a new one (null).
  virtual void ShowMarks(const Record*) {}
  // Shows what the screen says about the record, or about a new one (null).
  virtual void ShowBeside(const Record* record) = 0;
  // What the screen sets in a record beside the entries.
  virtual void Complete(Record* record) = 0;
  // True when the entries may be posted; else the refusal has been shown.
  virtual bool MayPost() = 0;
  virtual PostOutcome WriteNew(const Record& record) = 0;
  virtual PostOutcome WriteChanged(const Record& before, const Record& after) = 0;
  virtual std::string NotAdded(const PostOutcome& outcome, const std::string& number) const = 0;

  // --- For the screen ---

  // Adds the register, the buttons and the look-up of payees.
  void AddRegister(std::string_view heading, std::string_view ok) {
    Add(ControlKind::kGrid, std::string(item_.list), std::string(heading));
    Add(ControlKind::kButton, "cmdOk", std::string(ok));
    Add(ControlKind::kButton, "cmdDone", "Do&ne");
    Add(ControlKind::kButton, "cmdListAll", "&List All");
    Add(ControlKind::kButton, "cmdListOutstanding", "&List Outstanding");
    Add(ControlKind::kButton, "cmdListCleared", "&List Cleared");
    AddPayeeLookUp();
    AddRoutes({kLedgerCommand});
  }
  bool OpenRegister() override { return register_->Open(bank_code_); }
  void OnOpen() override {
    PayeePostingForm::OnOpen();
    SetSource(item_.list, register_);
    BeginNew(ProposedNumber());
  }
  void OnChoose(Control& control) override {
    PayeePostingForm::OnChoose(control);
    if (control.name != item_.list || control.selected == 0) return;
    OpenChosen(register_->NumberAt(static_cast<std::size_t>(control.selected) - 1));
  }
  void OnClick(Control& control) override {
    if (control.name == "cmdOk") Post();
    if (control.name == "cmdDone") Close();
    if (control.name.starts_with("cmdList")) {
      register_->ShowStatus(control.name == "cmdListAll" ? "" : control.name == "cmdListCleared" ? "C" : "O");
      RowsChanged(item_.list);
    }
    PayeePostingForm::OnClick(control);
  }
  void RefreshRegister() override {
    register_->Refresh();
    RowsChanged(item_.list);
  }
  std::string CurrentFile() override { return std::string(Trim(Text(item_.file))); }

  std::optional<Record> FindPosted(const std::string& number) {
    Table& table = tables_.*item_.table;
    if (number.empty() || !table.SeekNumber(number)) return std::nullopt;
    return table.Read();
  }
  const std::string& NumberOf(const Record& record) const { return record.*item_.number; }
  // "Wire 4711", as a sentence begins with it.
  std::string ItemName(const std::string& number) const { return std::string(item_.name) + " " + number; }

  const std::string& NumberControl() const { return number_control_; }
  bool IsEntry(const Control& control) const override {
    return control.name != number_control_ &&
           std::any_of(fields_.begin(), fields_.end(),
                       [&](const EntryField<Record>& entry) { return entry.control == control.name; });
  }
  bool IsPosted() const override { return loaded_.has_value(); }
  void RestoreKey() override { SetText(number_control_, looked_up_number_); }

  void OnLeave(Control& control) override {
    for (const EntryField<Record>& entry : fields_) {
      if (entry.control != control.name) continue;
      SetText(control.name, FormattedEntry(entry.kind, control.text, bank_.accounting.day));
    }
    if (control.name == number_control_) LookUpNumber();
    if (control.name == item_.file) ShowLedgerCommand();
  }

  void LookUpNumber() {
    const std::string number = Text(number_control_);
    if (number == looked_up_number_) return;
    // A new item keeps its entries under another free number; anything else shows other entries.
    const bool shows_other = loaded_ || FindPosted(number);
    if (shows_other && !MayDropChanges()) {
      SetText(number_control_, looked_up_number_);
      // A refused post has put the cursor into the field that it names.
      if (Focus() == Find(number_control_)) SetFocus(number_control_);
      return;
    }
    if (shows_other) return OpenNumber(number);
    looked_up_number_ = number;
  }

  void OpenNumber(const std::string& number) {
    if (const std::optional<Record> posted = FindPosted(number)) return ShowPosted(*posted);
    BeginNew(number);
  }

  // A register's row was chosen.
  void OpenChosen(const std::string& number) {
    if (number.empty()) return RefreshRegister();
    if (MayDropChanges()) OpenNumber(number);
  }

  void ShowPosted(const Record& record) {
    loaded_ = record;
    for (const EntryField<Record>& entry : fields_) SetText(entry.control, ShownEntry(entry, record));
    looked_up_number_ = NumberOf(record);
    ShowMarks(&*loaded_);
    ShowBeside(&*loaded_);
    ShowLedgerCommand();
    KeepState();
    Audit(kAuditSnapshot, {});
  }

  void BeginNew(const std::string& number) {
    loaded_.reset();
    const Record blank = BlankRecord();
    for (const EntryField<Record>& entry : fields_) {
      const bool amount = entry.kind == ControlKind::kAmount;
      SetText(entry.control, amount ? "" : ShownEntry(entry, blank));
    }
    looked_up_number_ = number;
    SetText(number_control_, number);
    ShowMarks(nullptr);
    ShowBeside(nullptr);
    ShowLedgerCommand();
    KeepState();
  }

  // What the entries of a new item hold at first: today, and the bank's accounting period.
  virtual Record BlankRecord() = 0;

  bool Post() override {
    return MayWrite() && MayPost() && Passes(FirstEntryProblem(fields_, layout_, Entries())) && Write();
  }

  std::optional<Record> loaded_;

 private:
  void ShowLedgerCommand() {
    const std::string file = CurrentFile();
    SetCaption(kLedgerCommand, file.empty() ? "File &Ledger..." : "File " + file + " &Ledger");
  }

  // Writes the entries, which have passed their tests.
  bool Write() {
    Record record = loaded_.value_or(Record{});
    ApplyEntries(fields_, Entries(), bank_.accounting.day, &record);
    Complete(&record);
    if (loaded_ && record == *loaded_) {
      Boxes().Inform(Caption(), ItemName(NumberOf(record)) + " was not added or updated.");
      return false;
    }
    const PostOutcome outcome = loaded_ ? WriteChanged(*loaded_, record) : WriteNew(record);
    if (!outcome.Done()) return SettleFailure(outcome, NumberOf(record));
    last_posted_ = NumberOf(record);
    Audit(loaded_ ? kAuditSave : kAuditAdd, last_posted_);
    AfterWriting();
    return true;
  }

  // True when the item was posted after all.
  bool SettleFailure(const PostOutcome& outcome, const std::string& number) {
    if (outcome.code == kChangedElsewhere) return SettleElsewhere(number);
    const bool taken = !loaded_ && outcome.code == engine::kUnique;
    const std::string next = taken ? ProposedNumber() : "";
    if (!next.empty() && TakesNext(ItemName(number), next)) {
      looked_up_number_ = next;
      SetText(number_control_, next);
      return Write();
    }
    const std::string_view field = ControlOfField(fields_, outcome.field);
    const std::string message = FailureText(outcome, NotAdded(outcome, number));
    if (next.empty()) {
      Refuse(message, field.empty() ? std::string_view(number_control_) : field);
    } else {
      MarkRefused(number_control_);
    }
    return false;
  }

  bool SettleElsewhere(const std::string& number) {
    const std::optional<Record> theirs = FindPosted(number);
    if (!theirs) {
      loaded_.reset();
      ShowBeside(nullptr);
      Refuse(ItemName(number) +
                 " was removed on another workstation since it was loaded.  Nothing was saved: post it to "
                 "enter it anew.",
             number_control_);
      return false;
    }
    const std::optional<Record> before = loaded_;
    switch (SettleChange(ItemName(number), [&] { ShowPosted(*theirs); })) {
      case Settled::kMine:
        return Post();
      case Settled::kBack:
        loaded_ = before;
        return false;
      case Settled::kTheirs:
        break;
    }
    return false;
  }

  void AfterWriting() {
    RefreshRegister();
    session_.NotifyChanged(SessionChange::kPosted);
    BeginNew(ProposedNumber());
    // A number that is proposed needs no typing.
    SetFocus(looked_up_number_.empty() ? std::string_view(number_control_) : fields_[1].control);
  }

  const ItemScreen<Record, Table> item_;
  const TableLayout& layout_;
  const std::span<const EntryField<Record>> fields_;
  std::shared_ptr<ItemRegister<Table, Record>> register_;
  const std::string number_control_{fields_.front().control};
  std::string looked_up_number_;  // the number that the entries belong to
};

}  // namespace tallwick
