// One control of a form tied to one widget or command, both ways. What the user does goes to the binder; what
// the form says is shown without echoing back.
#pragma once

#include <QObject>
#include <QWidget>
#include <memory>

#include "core/form.h"

class QKeyEvent;

namespace tallwick {

// Receives what the user did.
class WidgetEvents {
 public:
  virtual ~WidgetEvents() = default;
  virtual void TextTyped(const Control& control, const QString& text) = 0;
  virtual void CheckSet(const Control& control, int value) = 0;
  virtual void RowChosen(const Control& control, int row) = 0;  // from 1
  virtual void RowMarked(const Control& control, int row, bool checked) = 0;
  virtual void RowTaken(const Control& control) = 0;  // the row chosen was double-clicked
  virtual void Clicked(const Control& control) = 0;
  virtual void CommandGiven(const QString& control_name) = 0;
};

class BoundWidget {
 public:
  virtual ~BoundWidget() = default;
  // Brings the widget to the control's state; nothing happens to what is already so.
  virtual void Show(const Control& control) = 0;
  // Null for a command, which is no widget.
  virtual QWidget* Widget() const = 0;
  // Selects the whole text, where there is one.
  virtual void SelectText() {}
  // The same when the cursor comes in, where the next key is to replace the text.
  virtual void SelectForTyping() {}
};

// The binding that fits the object's class; null for an object that shows nothing. The control, the object
// and `events` must outlive it.
std::unique_ptr<BoundWidget> BindWidget(QObject& object, const Control& control, WidgetEvents& events);

// A sign pressed with Alt, and not with AltGr: a command. One that names nothing is not to be typed into the
// entry that holds the cursor, where it would replace what is selected.
bool TypesWithAlt(const QKeyEvent& key);

// A message's or a label's text with its line breaks ("\r", "\r\n") as Qt wants them.
QString ShownText(std::string_view text);

}  // namespace tallwick
