// A screen without a face: an ordered list of controls and the events that matter to its rules.
// The desktop binds each control to the widget of the same object name, the command line to a script, and the
// audit trail walks them. A face never changes a control itself: it calls the event functions and is told
// what changed.
//
// Order of events. A control is left (OnLeave) before another is entered (OnEnter). OnLeave may refuse: it
// shows its box and moves the focus, mostly back to the control it was called for; then what the face asked
// for does not happen. Disabled and invisible controls, labels and frames take no events, and a closed form
// takes none.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/message_boxes.h"

namespace tallwick {

enum class ControlKind {
  kText,       // text box
  kCombo,      // text with a list of offers
  kList,       // list box; its text is the selected row's
  kCheck,      // value 0 unchecked, 1 checked, 2 grayed
  kOption,     // value 0 or 1
  kCheckList,  // rows with a check mark each, in one list or as a tree
  // Formatted input: the form shows the text in one form after leaving.
  kAmount,
  kDate,
  kPeriod,
  kNumber,
  kMasked,
  kGrid,  // rows of cells from a RowSource
  kLabel,
  kButton,
  kMenu,  // menu command or toolbar button; value 1 = checked
  kFrame,
};

// Rows behind a grid or a register, read as they are needed.
class RowSource {
 public:
  virtual ~RowSource() = default;
  virtual std::vector<std::string> Headings() const = 0;
  virtual std::size_t RowCount() = 0;
  // The cells of one row, from 0; empty when it is gone.
  virtual std::vector<std::string> Row(std::size_t row) = 0;
  // A word for the look of a row ("cleared", "voided", "stopped", ""), beside its status column.
  virtual std::string RowStyle(std::size_t) { return {}; }
  // True when the column holds numbers, which stand on the right.
  virtual bool IsNumeric(std::size_t) const { return false; }
  // A text as wide as any that the column may come to hold; "" where its rows tell.
  virtual std::string WidestText(std::size_t) const { return {}; }
  // The row that a typed text names, found without reading the rows before it; nullopt where only a look at
  // the rows themselves can tell.
  virtual std::optional<std::size_t> FindRow(std::string_view) { return std::nullopt; }

  // A source that reads many records gives its first rows at once and the others in steps: RowCount reads to
  // the end, RowsKnown does not. Rows are added at the end, so that those known stay where they are.
  virtual std::size_t RowsKnown() { return RowCount(); }
  // Reads on for about this long; false when there is nothing more to read.
  virtual bool ReadOn(std::chrono::milliseconds) { return false; }
  virtual int PercentRead() { return 100; }
  // What is said where there are no rows; "" leaves it to the view.
  virtual std::string EmptyText() const { return {}; }
  // What the rows add up to, as a person reads it; "" while it is not known, or where there is nothing to
  // add.
  virtual std::string Total() { return {}; }
};

struct Control {
  std::string name;
  ControlKind kind = ControlKind::kText;
  int index = 0;  // member of a control array, from 1; 0 = not in an array
  std::string text;
  int value = 0;
  std::string caption;
  std::string tag;  // parks the value before editing; the audit trail compares against it
  bool enabled = true;
  bool visible = true;
  bool refused = false;           // the last refusal named this control; cleared when its text changes
  bool month_only = false;        // of a period: it is a month and a year, without a day
  std::vector<std::string> rows;  // of a list or combo
  int selected = 0;               // row of a list or grid, from 1; 0 = none
  std::vector<bool> marks;        // of a check list: whether each row is checked
  std::vector<int> levels;        // of a check list shown as a tree: how deep each row stands, from 0
  std::shared_ptr<RowSource> source;
};

class Form {
 public:
  // What a face wants to know. Every call comes from within an event function or a member function of the
  // form.
  class Face {
   public:
    virtual ~Face() = default;
    // Something of the control differs from before, or from what the face holds after a change that was not
    // taken.
    virtual void ControlChanged(const Control& control) = 0;
    // The form moved the focus; a face's own moves are not told back.
    virtual void FocusMoved(const Control& control) = 0;
    virtual void CaptionChanged() = 0;
    virtual void Closed() = 0;
    // Called again and again while long work runs within an event: draws what has changed, and says whether
    // the person has asked to stop since the work began. Nothing else that the person does gets through.
    virtual bool StopAsked() { return false; }
    // Long work waits that may be done in slices. True when the face will call WorkOn until it gives false,
    // and lets the person do other things in between; false when the form is to do all of it now.
    virtual bool TakesWork() { return false; }
    // True where a person types. A script has what it types and needs no question before that is thrown away.
    virtual bool IsTypedByHand() { return false; }
  };

  Form(std::string name, MessageBoxes& boxes);
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& Caption() const { return caption_; }
  bool IsOpen() const { return open_; }
  // In the form's own control order.
  const std::deque<Control>& Controls() const { return controls_; }
  std::deque<Control>& Controls() { return controls_; }
  // nullptr where there is none. Names are compared exactly.
  Control* Find(std::string_view name, int index = 0);
  // The control that was entered and not yet left; nullptr where there is none.
  const Control* Focus() const { return focus_; }
  // nullptr detaches.
  void Attach(Face* face) { face_ = face; }

  // Events, called by a face. Change, SetCheck, Choose, Mark and Click enter their control first where it has
  // not the focus; Menu and Close leave the current one.
  void Opened();                                     // after the face stands
  void Enter(std::string_view name, int index = 0);  // leaves the current control first
  void Leave();                                      // leaves the current control; none has the focus then
  void Change(std::string_view name, std::string text, int index = 0);
  void SetCheck(std::string_view name, int value, int index = 0);
  void Choose(std::string_view name, int row, int index = 0);  // rows from 1; others are ignored
  void Mark(std::string_view name, int row, bool checked);     // of a check list; rows from 1
  void Click(std::string_view name, int index = 0);            // a button; refused while disabled
  void Menu(std::string_view name);                            // a command; refused while disabled
  bool Key(std::string_view key);  // "Esc", "F1", "F4", "Ctrl+F"; true when the form used it
  // Whether Enter leads on from the control that has the focus, however much is filled: a face that tells
  // what the keys do asks for it.
  virtual bool EnterGoesOn() { return false; }
  // Asked for in a mode of the screen while it is open; "" is the usual one. False for a screen that keeps
  // the mode it was opened in.
  bool UseMode(std::string_view mode);
  // Does the work that waits for about this long; true while there is more.
  bool WorkOn(std::chrono::milliseconds budget) { return open_ && OnWork(budget); }
  // Asks what must be asked and closes. False when the user or a refusal kept it open.
  bool Close();

 protected:
  Control& Add(ControlKind kind, std::string name, std::string caption = {}, int index = 0);
  Control& At(std::string_view name, int index = 0);  // must exist

  // Setters that tell the face. They do nothing when nothing changes, and call no event function.
  void SetText(std::string_view name, std::string text, int index = 0);
  void SetCaption(std::string_view name, std::string caption, int index = 0);
  void SetValue(std::string_view name, int value, int index = 0);
  void SetEnabled(std::string_view name, bool enabled, int index = 0);
  void SetVisible(std::string_view name, bool visible, int index = 0);
  void SetRows(std::string_view name, std::vector<std::string> rows, int selected = 0);
  // The rows of a check list with their marks; `levels` may be empty.
  void SetMarkedRows(std::string_view name, std::vector<std::string> rows, std::vector<bool> marks,
                     std::vector<int> levels = {});
  void SetMark(std::string_view name, int row, bool checked);  // rows from 1
  void SetSource(std::string_view name, std::shared_ptr<RowSource> source);
  // The source is the same, its rows are others.
  void RowsChanged(std::string_view name);
  void SetSelected(std::string_view name, int row);
  void SetFormCaption(std::string caption);
  // Moves the focus as a face does, but within OnLeave without leaving the current control again: that
  // refuses the leave. A control that takes no events is not entered.
  void SetFocus(std::string_view name, int index = 0);
  // Critical box titled with the form's caption, cursor into the named control, which is marked as refused.
  // The current control is not left.
  void Refuse(std::string_view text, std::string_view control, int index = 0);
  // The same without a box, for a refusal whose message has been shown already.
  void MarkRefused(std::string_view control, int index = 0);
  MessageBoxes& Boxes() { return boxes_; }
  bool IsTypedByHand() { return face_ != nullptr && face_->IsTypedByHand(); }
  bool StopAsked() { return face_ != nullptr && face_->StopAsked(); }
  const std::string& Text(std::string_view name, int index = 0);
  // Has the face call OnWork until it gives false, or does so at once where the face does not.
  void LetWork();

  virtual void OnOpen() {}
  virtual void OnEnter(Control&) {}
  virtual void OnLeave(Control&) {}
  virtual void OnChange(Control&) {}
  // The user has typed the text that stood there already.
  virtual void OnRetype(Control&) {}
  virtual void OnChoose(Control&) {}
  virtual void OnMark(Control&, int /*row*/) {}
  virtual void OnClick(Control&) {}
  virtual void OnMenu(Control&) {}
  // True when the key was used.
  virtual bool OnKey(std::string_view) { return false; }
  // The screen changes to a mode in place; false where it does not.
  virtual bool OnMode(std::string_view) { return false; }
  // A slice of the work that waits, of about this length; true while there is more.
  virtual bool OnWork(std::chrono::milliseconds) { return false; }
  // False keeps the form open.
  virtual bool OnClose() { return true; }

 private:
  void Tell(const Control& control);
  bool TakesEvents(const Control* control) const;
  // False when OnLeave refused.
  bool LeaveCurrent();
  // The control when it is, or has become, the one with the focus; nullptr where it takes no event or a leave
  // was refused, after which the face is told what the control still holds.
  Control* EnterFor(std::string_view name, int index);
  void TakeFocus(Control& control);
  // Takes the focus without leaving the current control; within OnLeave that refuses the leave.
  void PutFocus(Control& control);
  // Nothing where an OnEnter has moved the focus on.
  void TellFocus(const Control& control);
  void Select(Control& control, int row);

  std::string name_;
  std::string caption_;
  MessageBoxes& boxes_;
  std::deque<Control> controls_;
  Control* focus_ = nullptr;
  Face* face_ = nullptr;
  bool open_ = true;
  bool leaving_ = false;        // OnLeave runs
  bool leave_refused_ = false;  // it moved the focus
};

// What a control holds, in words for a log: "Checked", "Unchecked" or "Grayed" (else "") of a check box,
// "True" or "False" of an option, the text of the kinds that hold one; "" for the others.
std::string ControlValue(const Control& control);

// "Dated" for "&Dated".
std::string WithoutMnemonic(std::string caption);

// A control and the text that it is to hold.
struct KeyText {
  std::string control;
  std::string text;
};

// Enters the texts as a person does who looks an item up, and leaves the last control.
void EnterTexts(Form& form, const std::vector<KeyText>& texts);

// What a form calls to have another screen opened ("frmEditChecksPost", "Posting").
class ScreenOpener {
 public:
  virtual ~ScreenOpener() = default;
  virtual void OpenScreen(std::string_view screen, std::string_view mode) = 0;
  // The same, and shows the item that these texts look up.
  virtual void OpenItem(std::string_view screen, std::string_view mode, const std::vector<KeyText>& /*key*/) {
    OpenScreen(screen, mode);
  }
  // Whether there is such a screen, and it opens in this mode.
  virtual bool Offers(std::string_view /*screen*/, std::string_view /*mode*/) const { return true; }
};

}  // namespace tallwick
