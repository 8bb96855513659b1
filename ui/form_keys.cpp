// The keys of a screen: what Enter, Esc and the function keys do in the field that holds the cursor.
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWhatsThis>

#include "shell/screen_routes.h"
#include "ui/calendar_popup.h"
#include "ui/form_binder.h"

namespace tallwick {
namespace {

bool HasCalendar(const Control& control) {
  return control.kind == ControlKind::kDate || control.kind == ControlKind::kPeriod;
}

bool IsRegister(const Control* control) {
  return control != nullptr && control->kind == ControlKind::kGrid;
}

bool CanBeEntered(const QWidget& widget) {
  return widget.isEnabled() && widget.isVisible() && (widget.focusPolicy() & Qt::TabFocus) != 0;
}

bool IsRequired(const QWidget& widget) {
  return widget.property("required").toBool();
}

// In which Enter goes on or posts: a field of one line or a mark.
bool IsEntry(const QWidget& widget) {
  const bool mark = qobject_cast<const QAbstractButton*>(&widget) != nullptr &&
                    qobject_cast<const QPushButton*>(&widget) == nullptr;
  return mark || qobject_cast<const QLineEdit*>(&widget) != nullptr;
}

// A screen whose rows lead to other screens has a button for that.
bool OpensRows(Form& form) {
  return form.Find("cmdOpenItem") != nullptr || form.Find("cmdOpenLedger") != nullptr;
}

// What Enter does in a filled entry: the work of the main button.
QString EnterText(const QPushButton& main) {
  if (main.objectName() == "cmdOk") return QObject::tr("Enter posts");
  return "Enter " + main.text().remove('&').toLower();
}

}  // namespace

QString FormBinder::KeysOf(const QWidget& widget) const {
  const Control* control = ControlOf(&widget);
  QStringList keys;
  if (widget.property("finds").isValid()) {
    keys << tr("Enter next match") << tr("Down takes the row");
  } else if (widget.property("searches").toBool()) {
    keys << tr("Up Down other row") << tr("Enter takes the row");
  } else if (qobject_cast<const QPlainTextEdit*>(&widget) != nullptr) {
    keys << tr("Tab next field") << tr("Ctrl+Enter post");
  } else if (IsEntry(widget)) {
    const bool posts = MainButton() != nullptr && IsFilled() && !form_.EnterGoesOn();
    keys << (posts ? EnterText(*MainButton()) : tr("Enter next field"));
    if (control != nullptr && control->index != 0) {
      keys << tr("Up Down other line");
      if (!posts) keys << tr("Ctrl+Enter post");
    }
  } else if (IsRegister(control)) {
    keys << (OpensRows(form_) ? tr("Enter opens it") : tr("Enter to the entry")) << tr("Ctrl+F find");
    if (form_.Find(kLedgerCommand) != nullptr) keys << tr("Ctrl+L file ledger");
  }
  const bool marks = control != nullptr &&
                     (control->kind == ControlKind::kCheckList || control->kind == ControlKind::kCheck);
  if (marks) keys << tr("Space check or clear");
  if (control != nullptr && HasCalendar(*control)) keys << tr("F2 calendar");
  if (widget.property("lookUp").toBool()) keys << tr("F4 look-up");
  if (!widget.whatsThis().isEmpty()) keys << tr("F1 help");
  keys << tr("Esc back");
  return keys.join("     ");
}

bool FormBinder::HandleKey(QWidget& widget, const QKeyEvent& key) {
  const Control* control = ControlOf(&widget);
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return HandleEnter(widget, key);
    case Qt::Key_F1:  // the key goes on to the window where the field has no help
      return key.modifiers() == Qt::NoModifier && ShowFieldHelp(widget);
    case Qt::Key_F2:
      if (control == nullptr || !HasCalendar(*control)) return false;
      ShowCalendar(widget, *control);
      return true;
    case Qt::Key_Up:
      return MoveInColumn(control, -1) || PassKey("Up");
    case Qt::Key_Down:
      return MoveInColumn(control, 1) || PassKey("Down");
    case Qt::Key_F4:
      PassKey("F4");
      return true;
    default:
      return TypesWithAlt(key);
  }
}

bool FormBinder::HandleEnter(QWidget& widget, const QKeyEvent& key) {
  const bool control_held = key.modifiers().testFlag(Qt::ControlModifier);
  if (auto* button = qobject_cast<QPushButton*>(&widget); button != nullptr && !control_held) {
    button->click();
    return true;
  }
  if (qobject_cast<QPlainTextEdit*>(&widget) != nullptr && !control_held) return false;
  if (PassKey(control_held ? "Ctrl+Enter" : "Enter")) return true;
  if (IsRegister(ControlOf(&widget))) {
    GoToFirstField();  // to what the row brought into the entry; a register never posts
    return true;
  }
  QPushButton* main = MainButton();
  if (main != nullptr && (control_held || IsFilled())) {
    ClickMain(widget, *main);
  } else {
    GoToNextField(widget);
  }
  return true;
}

// A key has not moved the cursor to the button: it stays in its field where the form has not moved it on.
void FormBinder::ClickMain(QWidget& from, QPushButton& main) {
  main.click();
  const bool at_button = form_.IsOpen() && form_.Focus() != nullptr && form_.Focus() == ControlOf(&main);
  if (at_button && CanBeEntered(from)) from.setFocus(Qt::OtherFocusReason);
}

bool FormBinder::PassKey(const char* key) {
  const Running running(*this);
  return form_.Key(key);
}

bool FormBinder::ShowFieldHelp(QWidget& widget) {
  if (PassKey("F1")) return true;
  if (widget.whatsThis().isEmpty()) return false;
  QWhatsThis::showText(widget.mapToGlobal(QPoint(0, widget.height())), widget.whatsThis(), &widget);
  return true;
}

// Up and down among the lines of a control array, as in a spreadsheet.
bool FormBinder::MoveInColumn(const Control* control, int lines) {
  if (control == nullptr || control->index == 0) return false;
  for (const Control* line = control; line != nullptr;) {
    line = form_.Find(line->name, line->index + lines);
    QWidget* widget = line != nullptr ? WidgetOf(*line) : nullptr;
    if (widget == nullptr || !CanBeEntered(*widget)) continue;
    widget->setFocus(Qt::TabFocusReason);
    break;
  }
  return true;
}

void FormBinder::ShowCalendar(QWidget& widget, const Control& control, const QString& title) {
  auto* edit = qobject_cast<QLineEdit*>(&widget);
  if (edit == nullptr || edit->isReadOnly()) return;
  auto* popup = new CalendarPopup(*edit, control);
  popup->setWindowTitle(title);
  popup->setAccessibleName(title);
  connect(popup, &CalendarPopup::Chosen, this, [this, &control](const QString& text) {
    TextTyped(control, text);
    FocusMoved(control);
  });
  popup->Open();
}

// In a register as Enter does, in a list what the main button does.
void FormBinder::RowTaken(const Control& control) {
  if (IsRegister(&control)) {
    PassKey("Enter");
  } else if (QPushButton* main = MainButton()) {
    main->click();
  }
}

QPushButton* FormBinder::MainButton() const {
  for (QPushButton* button : window_.findChildren<QPushButton*>()) {
    if (button->property("main").toBool() && button->isEnabled()) return button;
  }
  return nullptr;
}

bool FormBinder::IsFilled() const {
  return FirstEmptyRequired() == nullptr;
}

QWidget* FormBinder::FirstEmptyRequired() const {
  for (const Control& control : form_.Controls()) {
    QWidget* widget = WidgetOf(control);
    if (widget == nullptr || !IsRequired(*widget) || !CanBeEntered(*widget)) continue;
    if (QString::fromStdString(control.text).trimmed().isEmpty()) return widget;
  }
  return nullptr;
}

void FormBinder::GoToNextField(QWidget& from) {
  for (QWidget* next = from.nextInFocusChain(); next != nullptr && next != &from;
       next = next->nextInFocusChain()) {
    const bool is_button = qobject_cast<QPushButton*>(next) != nullptr;
    if (is_button && next->property("main").toBool()) break;  // the end of the entry
    if (!is_button && ControlOf(next) != nullptr && CanBeEntered(*next)) {
      return next->setFocus(Qt::TabFocusReason);
    }
  }
  if (QWidget* empty = FirstEmptyRequired()) empty->setFocus(Qt::TabFocusReason);
}

bool FormBinder::GoToFirstField() {
  for (const Control& control : form_.Controls()) {
    QWidget* widget = WidgetOf(control);
    if (qobject_cast<QLineEdit*>(widget) == nullptr || !CanBeEntered(*widget)) continue;
    widget->setFocus(Qt::TabFocusReason);
    return true;
  }
  return false;
}

}  // namespace tallwick
