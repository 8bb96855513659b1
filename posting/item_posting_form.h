// A posting screen whose records go by one number: wires and vouchers. The number entry looks the record up,
// the others hold it, cmdOk writes it.
//
// Invariant: loaded_ is the posted record that the entries show, as it was read; without it the entries are a
// new one.
#pragma once

#include <algorithm>
#include <optional>
#include <utility>

#include "audit/audit_trail.h"
#include "posting/item_number.h"
#include "posting/item_register.h"
#include "posting/payee_posting_form.h"

namespace tallwick {

// What a screen is about.
template <class Record, class Table>
struct ItemScreen {
  PostingScreen screen;
  std::string_view name;  // "Wire", as a sentence about one begins
  bool counted;           // its numbers are counted (item_number.h), not given by the bank
  const TableLayout& layout;
  std::span<const EntryField<Record>> fields;  // the first is the number's
  Table BankTables::*table;
  std::string Record::*number;
  std::string_view payee;  // controls
  std::string_view file;
  std::string_view list;
  std::string_view remove;  // the command that removes a posted record
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
      Add(entry.kind, std::string(entry.control), std::string(entry.caption));
    }
  }

  // --- What a screen has of its own ---

  // The number that a new item gets unless another is typed, and the next one that is free.
  virtual std::string ProposedNumber() { return {}; }
  // Sets what is entered otherwise than as a text, for the record or a new one (null).
  virtual void ShowMarks(const Record*) {}
  // Shows what the screen says about the record, or about a new one (null), and closes what may not be
  // changed; lblEditMessage says why.
  virtual void ShowBeside(const Record* record) = 0;
  // What the screen sets in a record beside the entries.
  virtual void Complete(Record* record) = 0;
  // True when the entries may be posted; else the refusal has been shown.
  virtual bool MayPost() = 0;
  // What is asked when every test is passed. False where the answer keeps the entry.
  virtual bool MayGoOn() { return true; }
  virtual PostOutcome WriteNew(const Record& record) = 0;
  virtual PostOutcome WriteChanged(const Record& before, const Record& after) = 0;
  // Why the record cannot be removed; "" when it can.
  virtual std::string RemovalRefusal(const Record& record) const = 0;
  virtual PostOutcome WriteRemoved(const Record& record) = 0;
  virtual std::string NotAdded(const PostOutcome& outcome, const std::string& number) const = 0;

  // --- For the screen ---

  // Adds the register, the buttons, the commands and the look-up of payees.
  void AddRegister(std::string_view heading, std::string_view ok, bool viewing) {
    Add(ControlKind::kGrid, std::string(item_.list), std::string(heading));
    Add(ControlKind::kButton, "cmdOk", std::string(ok));
    Add(ControlKind::kButton, "cmdDone", "Do&ne");
    Add(ControlKind::kButton, "cmdListAll", "&List All");
    Add(ControlKind::kButton, "cmdListOutstanding", "&List Outstanding");
    Add(ControlKind::kButton, "cmdListCleared", "&List Cleared");
    AddPayeeLookUp();
    AddFileLookUp(item_.file);
    Add(ControlKind::kMenu, std::string(item_.remove), "&Remove " + std::string(item_.name)).enabled =
        !viewing;
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
  void OnMenu(Control& control) override {
    if (control.name == item_.remove) return RemovePosted();
    GoTo(control.name);
  }
  std::string CurrentFile() override { return std::string(Trim(Text(item_.file))); }

  std::optional<Record> FindPosted(const std::string& number) {
    Table& table = tables_.*item_.table;
    if (number.empty()) return std::nullopt;
    const bool found = item_.counted ? SeekCounted(table, number) : table.SeekNumber(number);
    return found ? std::optional(table.Read()) : std::nullopt;
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
  bool IsKey(const Control& control) const override { return control.name == number_control_; }
  void RestoreKey() override {
    SetText(number_control_, key_.Get());
    key_.PutBack();
  }

  void OnLeave(Control& control) override {
    for (const EntryField<Record>& entry : fields_) {
      if (entry.control != control.name) continue;
      SetText(control.name, FormattedEntry(entry.kind, control.text, bank_.accounting.day));
    }
    if (control.name == number_control_) LookUpNumber();
    if (control.name == item_.file) ShowLedgerCommand();
  }

  // The number that the typed one stands for: a posted one, or as a new one is stored.
  std::string TypedNumber() {
    std::string typed = Text(number_control_);
    if (!item_.counted || key_.Stands(typed)) return typed;
    const std::optional<Record> posted = FindPosted(typed);
    return posted ? NumberOf(*posted) : CountedNumber(typed);
  }

  bool EnterGoesOn() override {
    const bool at_number = Focus() != nullptr && Focus()->name == number_control_;
    return at_number && !key_.Stands(Text(number_control_));
  }

  // An item is seen before it is changed: the key that posts shows it where its number was typed just now.
  bool OnKey(std::string_view key) override {
    const bool typed = ItemPostingForm::EnterGoesOn();
    if (typed && (key == "Enter" || (key == "Ctrl+Enter" && ShowsOther(Text(number_control_))))) {
      Leave();
      GoToFirstEntry(number_control_);
      return true;
    }
    return PayeePostingForm::OnKey(key);
  }

  // A new item keeps its entries under another free number; anything else shows other entries.
  bool ShowsOther(const std::string& number) { return loaded_ || FindPosted(number); }

  void LookUpNumber() {
    const std::string number = TypedNumber();
    SetText(number_control_, number);
    if (key_.Stands(number)) return;
    const bool shows_other = ShowsOther(number);
    if (shows_other && !MayDropChanges()) {
      RestoreKey();
      // A refused post has put the cursor into the field that it names.
      if (Focus() == Find(number_control_)) SetFocus(number_control_);
      return;
    }
    if (shows_other) {
      SetSelected(item_.list, 0);
      return OpenNumber(number);
    }
    key_.Set(number);
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
    key_.Set(NumberOf(record));
    ShowMarks(&*loaded_);
    ShowBeside(&*loaded_);
    ShowLedgerCommand();
    KeepState();
    Audit(kAuditSnapshot, {});
  }

  // The register marks the item that is shown, where it led to it.
  void BeginNew(const std::string& number) {
    loaded_.reset();
    SetSelected(item_.list, 0);
    const Record blank = BlankRecord();
    for (const EntryField<Record>& entry : fields_) {
      const bool amount = entry.kind == ControlKind::kAmount;
      SetText(entry.control, amount ? "" : ShownEntry(entry, blank));
    }
    key_.Set(number);
    SetText(number_control_, number);
    ShowMarks(nullptr);
    ShowBeside(nullptr);
    ShowLedgerCommand();
    KeepState();
  }

  // What the entries of a new item hold at first: today, and the bank's accounting period.
  virtual Record BlankRecord() = 0;

  bool Post() override {
    return MayWrite() && MayChange() && MayPost() && MayBeNumber() &&
           Passes(FirstEntryProblem(fields_, layout_, Entries())) && DateIsGood() && MayGoOn() && Write();
  }

  std::optional<Record> loaded_;

 private:
  void ShowLedgerCommand() {
    const std::string file = CurrentFile();
    SetCaption(kLedgerCommand, file.empty() ? "File &Ledger..." : "File " + file + " &Ledger");
  }

  // What is closed now stands as it was loaded.
  bool MayChange() {
    if (!loaded_) return true;
    ShowBeside(&*loaded_);
    return ClosedEntriesStand(At("lblEditMessage").caption);
  }

  bool MayBeNumber() {
    const EntryField<Record>& number = fields_.front();
    const bool is_new = !loaded_ && item_.counted;
    return !is_new || Passes({number.control, NumberProblem(number.label, Text(number.control))});
  }

  bool DateIsGood() {
    const auto date = std::find_if(fields_.begin(), fields_.end(), [](const EntryField<Record>& entry) {
      return entry.kind == ControlKind::kDate;
    });
    return PayeePostingForm::DateIsGood(date->control, date->label);
  }

  // Writes the entries, which have passed their tests.
  bool Write() {
    Record record = loaded_.value_or(Record{});
    ApplyEntries(fields_, Entries(), bank_.accounting.day, &record);
    if (item_.counted && !loaded_) record.*item_.number = CountedNumber(NumberOf(record));
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
    if (outcome.code == kReconciledElsewhere) return Post();
    const bool taken = !loaded_ && outcome.code == engine::kUnique;
    const std::string next = taken ? ProposedNumber() : "";
    if (!next.empty() && TakesNext(ItemName(number), next)) {
      key_.Set(next);
      SetText(number_control_, next);
      return Write();
    }
    if (taken) key_.Lose();
    if (next.empty()) {
      TellFailure(outcome, FailureText(outcome, NotAdded(outcome, number)),
                  ControlOfField(fields_, outcome.field), number_control_);
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
    if (!ReadBank()) return false;
    const std::optional<Record> before = loaded_;
    const std::string not_over = RestrictionOf(*theirs, bank_);
    switch (SettleChange(
        ItemName(number), [&] { ShowPosted(*theirs); }, not_over)) {
      case Settled::kMine:
        return Post();
      case Settled::kBack:
        loaded_ = before;
        ShowBeside(&*loaded_);
        return false;
      case Settled::kTheirs:
        break;
    }
    return false;
  }

  void RemovePosted() {
    if (!loaded_) return Refuse("Look up the posted record that is to be removed first.", number_control_);
    const Record record = *loaded_;
    if (!MayWrite() || !Passes({number_control_, RemovalRefusal(record)})) return;
    const std::string question = "Remove " + ItemName(NumberOf(record)) + " to " + Quoted(record.payee) +
                                 " of " + AmountText(record.amount) + " ?";
    if (Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) !=
        BoxAnswer::kYes) {
      return;
    }
    const PostOutcome outcome = WriteRemoved(record);
    if (!outcome.Done()) return TellNotRemoved(outcome, record);
    last_posted_ = NumberOf(record);
    Audit(kAuditDelete, last_posted_);
    AfterWriting();
  }

  void TellNotRemoved(const PostOutcome& outcome, const Record& record) {
    const std::optional<Record> theirs = FindPosted(NumberOf(record));
    if (outcome.code == kChangedElsewhere && theirs) {
      return ShowChanged(ItemName(NumberOf(record)), "removed", [&] { ShowPosted(*theirs); });
    }
    TellFailure(outcome, FailureText(outcome, NotAdded(outcome, NumberOf(record))), {}, number_control_);
  }

  void AfterWriting() {
    TellPosted();
    BeginNew(ProposedNumber());
    // A number that is proposed needs no typing.
    SetFocus(key_.Get().empty() ? std::string_view(number_control_) : fields_[1].control);
  }

  const ItemScreen<Record, Table> item_;
  const TableLayout& layout_;
  const std::span<const EntryField<Record>> fields_;
  std::shared_ptr<ItemRegister<Table, Record>> register_;
  const std::string number_control_{fields_.front().control};
};

}  // namespace tallwick
