// Ties a form to a window: every control to the widgets and commands of the same object name (members of a
// control array to "name_index"; a widget with the dynamic property "control" stands for the control it
// names).
//
// The form decides everything. The binder turns focus, keys, typing and clicks into the form's events and
// shows what the form says. A field that is entered by a key or by the form has its text selected, so that
// typing replaces it. While an event runs, focus changes that message boxes and nested windows cause
// are not passed on; when it has ended, the cursor stands where the form wants it.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "core/form.h"
#include "ui/bound_widget.h"
#include "ui/stop_watch.h"

class QKeyEvent;
class QLabel;
class QPushButton;

namespace tallwick {

class FormBinder : public QObject, private Form::Face, private WidgetEvents {
  Q_OBJECT

 public:
  // Binds and shows every control. A field's caption goes to the label whose buddy it is. Commands of the
  // window ("mnu...") that the form does not know are hidden. A widget with the property "showWith" (or
  // "showWithout") is seen only while the control it names has a text (or has none). `form` and `window` must
  // outlive the binder.
  FormBinder(Form& form, QWidget& window);
  ~FormBinder() override;

  // Tells the form that its face stands; then the cursor is placed.
  void Open();
  // Asks the form to close; false when the user kept it open.
  bool Close();
  // A key that means the screen as a whole ("Esc", "F5"); true when the form used it.
  bool PassKey(const char* key);
  // The screen was asked for again, in this mode.
  bool UseMode(std::string_view mode);

  // Puts the cursor into the first field that can be entered; false where there is none.
  bool GoToFirstField();

  // What the keys do in a field or box of the window: "Enter next field   F2 calendar   Esc back".
  QString KeysOf(const QWidget& widget) const;

 signals:
  void CaptionSet(const QString& caption);
  void EventEnded();  // the form has dealt with something that the user did
  void FormClosed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Counts running events; the last one to end places the cursor.
  class Running {
   public:
    explicit Running(FormBinder& binder) : binder_(binder) { ++binder.running_; }
    ~Running() {
      if (--binder_.running_ > 0) return;
      binder_.PlaceCursor();
      emit binder_.EventEnded();
      if (binder_.work_waits_) binder_.work_timer_.start();
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    FormBinder& binder_;
  };

  void ControlChanged(const Control& control) override;
  void FocusMoved(const Control& control) override;
  void CaptionChanged() override;
  void Closed() override;
  bool StopAsked() override;
  bool TakesWork() override;
  bool IsTypedByHand() override { return true; }

  void TextTyped(const Control& control, const QString& text) override;
  void CheckSet(const Control& control, int value) override;
  void RowChosen(const Control& control, int row) override;
  void RowMarked(const Control& control, int row, bool checked) override;
  void RowTaken(const Control& control) override;
  void Clicked(const Control& control) override;
  void CommandGiven(const QString& control_name) override;

  void WorkSlice();

  void Bind();
  void BindOne(QObject& object, const Control& control);
  void HideUnknownCommands();
  void NameForScreenReaders();
  void Show(const Control& control);
  void ShowCaption(const Control& control);
  void ShowDependants(const Control& control);
  void MarkHeadings(const Control& control);
  void PlaceCursor();
  void WidgetEntered(QWidget* widget);
  void SelectForTyping(QWidget& widget);
  const Control* ControlOf(const QObject* widget) const;
  QWidget* WidgetOf(const Control& control) const;

  bool HandleKey(QWidget& widget, const QKeyEvent& key);
  bool HandleEnter(QWidget& widget, const QKeyEvent& key);
  void ClickMain(QWidget& from, QPushButton& main);
  bool ShowFieldHelp(QWidget& widget);  // false where the field has none
  void ShowCalendar(QWidget& widget, const Control& control, const QString& title = {});
  void ShowCalendarOf(const QObject* command);
  bool MoveInColumn(const Control* control, int lines);
  bool IsFilled() const;
  void GoToNextField(QWidget& from);
  QWidget* FirstEmptyRequired() const;
  QPushButton* MainButton() const;

  Form& form_;
  QWidget& window_;
  std::unordered_map<const Control*, std::vector<std::unique_ptr<BoundWidget>>> bound_;
  std::unordered_map<const QObject*, const Control*> controls_;
  std::unordered_map<const QWidget*, QLabel*> labels_;  // of fields
  struct Dependant {
    QWidget* widget;
    QString control;
    bool with_text;
  };
  std::vector<Dependant> dependants_;
  const Control* cursor_ = nullptr;  // where the form last put the cursor, until it stands there
  StopWatch stop_watch_;
  QTimer work_timer_;
  int running_ = 0;
  bool work_waits_ = false;  // of the form, for slices between events
  bool opened_ = false;
};

}  // namespace tallwick
