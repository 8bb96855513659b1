// What the posting screens have in common: the bank that they work on and its tables, the tests before a
// post, the question about changes that are not posted yet, and the way back after another workstation was
// quicker.
//
// Invariant: the entries are changed when they differ from what KeepState saw last. A screen writes nothing
// but in Post.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "posting/bank_settings.h"
#include "posting/entry_fields.h"
#include "posting/entry_key.h"
#include "posting/file_rows.h"
#include "posting/look_up_form.h"
#include "posting/post_unit.h"
#include "posting/reconciled_rule.h"
#include "shell/session.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"

namespace tallwick {

// By what the screens differ.
struct PostingScreen {
  std::string_view name;       // "frmEditWiresPost"
  std::string_view caption;    // before the bank's name
  std::string_view bank_gone;  // what is said when the bank is not in the bank table any more
  int audit_tx;                // the audit trail's transaction; 0 = the trail has none for this screen
  int right;                   // that a post asks for, see rights.h; 0 = none
  std::string_view status;     // label that says how the record stands
};

class PostingForm : public LookUpForm {
 public:
  // False after a message when the bank is gone or its tables cannot be opened; the form is of no use then.
  bool OpenTables();
  // The key of what was written last: a number, or the stored date and sequence of a deposit. "" until then.
  const std::string& LastPosted() const { return last_posted_; }
  // Whether the entries show a record of the table.
  virtual bool IsPosted() const = 0;
  // Whether the control is the record's key, or a part of it, that key_ holds.
  virtual bool IsKey(const Control&) const { return false; }
  // Nobody chose the number of the new item: one that was taken since it was proposed gives way to the next
  // without a question.
  void TakeAnyNumber() { any_number_ = true; }

 protected:
  // Works on the session's selected bank, also when another is selected later. `opener` opens the screens to
  // which this one leads; it may be null where it leads to none.
  PostingForm(Session& session, const PostingScreen& screen, ScreenOpener* opener = nullptr);

  // Opens what the list shows.
  virtual bool OpenRegister() = 0;
  // The list looks at its table again.
  virtual void RefreshRegister() = 0;
  // Tests the entries and writes them. True when they were written.
  virtual bool Post() = 0;
  // Puts the key back that the entries belong to, after another one was typed.
  virtual void RestoreKey() = 0;
  // Whether the control is part of the entry; keys of the record are not.
  virtual bool IsEntry(const Control& control) const = 0;
  // What a post asks for now.
  virtual int Right() const { return screen_.right; }

  // Reads the bank anew; false after a message when it is gone. Shows lblLastReconciled where there is one.
  bool ReadBank();
  // Asked before every write: false after a message when, since the screen was opened, the user's right was
  // withdrawn, transactions have been locked, or the bank is gone. Reads the bank anew.
  bool MayWrite();
  EntryText Entries();
  // The text of a control as a period, and whether it is one of the bank's form.
  Period PeriodIn(std::string_view control, bool* valid);
  // True for a text that is blank or a period of the bank's form; else the message has been shown.
  bool PeriodIsReadable(std::string_view control);
  bool IsReconciled(const Period& period) const { return tallwick::IsReconciled(period, bank_); }
  // What a new entry gets as its period: the bank's accounting period.
  Period ProposedPeriod() const { return AsProposed(bank_.accounting); }
  // Entries that are closed now stand as they were loaded; true when all did. Where one was changed before it
  // was closed, they are put back, and both states are shown with `why` they are closed.
  bool ClosedEntriesStand(std::string_view why);
  // For a post: fails where the bank's last reconciliation is not the one by which the entries were tested.
  PostGuard SameReconciliation();
  // Refuses a date that is missing, or of a year that no period has. One that another program has stored
  // stays.
  bool DateIsGood(std::string_view control, std::string_view label);
  // Refuses with the finding; true when there is none.
  bool Passes(const EntryRefusal& finding);
  // Runs the tests in order; false when one has refused.
  template <class Case>
  bool PassesTests(std::span<const EntryTest<Case>> tests, const Case& facts) {
    for (const EntryTest<Case>& test : tests) {
      std::string message = test.message(facts);
      if (!test.refuses && !message.empty()) {
        Boxes().Inform(Caption(), message);
      } else if (!Passes({test.control, std::move(message)})) {
        return false;
      }
    }
    return true;
  }

  // The entries now are those of the table, or of a new item.
  void KeepState();
  bool IsChanged();
  // Puts the cursor into the first entry that takes one, else into `key_control`; nothing where something has
  // put it already.
  void GoToFirstEntry(std::string_view key_control);
  // Asks `question` where there are changes; Yes posts them. True when the screen may show something else.
  bool MayDropChanges(std::string_view question = "Save Changes?");

  // Behind every write of a record: the list and the other screens look again, and the user is told where the
  // tables wait for what was written.
  void TellPosted();
  // What a post that failed says: `not_added` for a new item, or why a value does not fit.
  std::string FailureText(const PostOutcome& outcome, std::string_view not_added) const;
  // Shows the message of a failed post, with the cursor in the entry that is to blame, where one is: `field`,
  // whose value was refused, or `number`, which is taken.
  void TellFailure(const PostOutcome& outcome, const std::string& message, std::string_view field,
                   std::string_view number);

  // The number was taken by another workstation since it was proposed: asks whether to post under `next`,
  // where any number will not do.
  bool TakesNext(std::string_view taken, std::string_view next);
  // The record was changed elsewhere since it was loaded: `show_theirs` puts what is stored now into the
  // entries, and the user is shown both. Of one's own only what was changed is saved over it; that is not
  // offered where `not_over` says why.
  enum class Settled { kMine, kTheirs, kBack };
  Settled SettleChange(std::string_view item, const std::function<void()>& show_theirs,
                       std::string_view not_over = {});

  // The same where nothing can be saved over it: what is stored now is shown. `not_done` is what was to be
  // done ("removed").
  void ShowChanged(std::string_view item, std::string_view not_done,
                   const std::function<void()>& show_theirs);

  // Adds the look-up of escrow files, whose controls are txtFindFile, lstFiles, cmdUseFile and cmdCloseFiles.
  void AddFileLookUp(std::string_view entry);

  // --- Commands that screens share ---

  // A command that is on or off, as this user left it the last time.
  void AddOption(std::string_view command, std::string_view caption, bool at_first);
  bool IsOn(std::string_view option) { return At(option).value == 1; }
  // False where the command is no option.
  bool ToggleOption(std::string_view command);

  void Audit(int action, std::string_view reference) { AuditAs(screen_.audit_tx, action, reference); }
  // The same under another transaction than the screen's.
  void AuditAs(int audit_tx, int action, std::string_view reference);
  void OnChange(Control& control) override;
  void OnRetype(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool OnClose() override;

  std::string bank_code_;
  BankRecord bank_;  // as it was read last
  BankTables tables_;
  std::string last_posted_;
  EntryKey key_;

 private:
  // Text and check value of every entry, in the order of the controls.
  using Values = std::vector<std::pair<std::string, int>>;
  struct Picture {
    Values values;
    std::string status;
    Values as_loaded;
  };
  Values TakeValues();
  bool StandsAsLoaded(const Control& wanted);  // its text, of an entry
  void PutValues(const Values& values);
  Picture TakePicture() { return {TakeValues(), At(screen_.status).caption, unchanged_}; }
  // Of two pictures of one record: what was changed in `mine` since it was loaded, the rest from `theirs`.
  static Values Merged(const Picture& mine, const Values& theirs);
  // A line for each difference; `other` names what is compared with mine ("theirs"). What was not changed in
  // mine is told as a change of the other.
  std::string Differences(const Picture& mine, const Picture& theirs, std::string_view other = "theirs");
  BankSettings Options();

  bool FilesAreKnown();

  const PostingScreen screen_;
  std::vector<std::string> options_;
  Values unchanged_;
  bool any_number_ = false;
  std::shared_ptr<FileRows> files_ = std::make_shared<FileRows>(session_);
};

}  // namespace tallwick
